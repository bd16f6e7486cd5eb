#include "platform/dao/ChangeRecording.h"

#include "platform/dao/Error.h"
#include "platform/dao/SqlText.h"

#include <QDir>
#include <QIODevice>
#include <QScopedValueRollback>

using namespace Qt::StringLiterals;

namespace dao {

namespace {

const QString mainSchema = u"\"main\""_s;

/// SQLite records no row whose key has a Null in it, which another program's declaration may let in.
bool keyMayBeNull(Connection& connection, const StoredTable& table) {
    QStringList conditions;
    for (const QString& field : table.keyColumns)
        conditions += quotedName(field) + u" IS NULL"_s;
    Statement rows(connection, u"SELECT 1 FROM "_s + mainSchema + u'.' + quotedName(table.name) + u" WHERE "_s +
                                   conditions.join(u" OR "_s) + u" LIMIT 1"_s);
    return rows.step();
}

} // namespace

FileRecorder::FileRecorder(DatabaseFilePtr file, const QStringList& tables) : file_(std::move(file)) {
    if (sqlite3session_create(file_->connection().handle(), "main", &session_) != SQLITE_OK)
        throw std::bad_alloc();
    for (const QString& table : tables) {
        recorded_.insert(mainSchema + u'.' + quotedName(table));
        if (sqlite3session_attach(session_, table.toUtf8().constData()) != SQLITE_OK) {
            end();
            throw std::bad_alloc();
        }
    }
}

FileRecorder::~FileRecorder() {
    end();
    file_->recorderGone(this);
}

void FileRecorder::end() {
    if (session_ != nullptr)
        sqlite3session_delete(session_);
    session_ = nullptr;
}

ChangeSet FileRecorder::take(QIODevice& device) {
    const DatabaseFile::Operation operation(*file_);
    constexpr int noRoom = 3026;
    ChangeSet changes{&device, device.size(), 0};
    if (!device.seek(changes.begin))
        raiseEngineError(noRoom);
    const auto write = [](void* to, const void* bytes, int size) {
        return static_cast<QIODevice*>(to)->write(static_cast<const char*>(bytes), size) == size ? SQLITE_OK
                                                                                                 : SQLITE_FULL;
    };
    const int result = sqlite3session_changeset_strm(session_, write, &device);
    if (result == SQLITE_FULL)
        raiseEngineErrorInWords(
            noRoom, u"Not enough space on disk in '%1', the folder for temporary files."_s.arg(QDir::tempPath()));
    if (result != SQLITE_OK)
        file_->connection().raise(result, Purpose::Write);
    changes.size = device.size() - changes.begin;
    return changes;
}

QStringList FileRecorder::missed() const {
    QStringList tables;
    for (const QString& table : written_)
        if (!recorded_.contains(table))
            tables += table;
    return tables;
}

QStringList DatabaseFile::unrecordable(const QStringList& tables) {
    const Operation operation(*this);
    const Reading reading(*connection_);
    QStringList names;
    for (const QString& table : tables) {
        Attachments::Use use;
        const QScopedValueRollback binding(bindingUse_, &use);
        const Place place = placeOf(table);
        if (!place.table->table)
            continue; // the write will say so
        const StoredTable& stored = *place.table->table;
        if (!place.link.isEmpty() || stored.keyColumns.isEmpty() || keyMayBeNull(*connection_, stored))
            names += table;
    }
    return names;
}

std::vector<qint64> DatabaseFile::contentVersion(const QStringList& tables) {
    const Operation operation(*this);
    const Reading reading(*connection_);
    std::vector<qint64> version{sqlite3_total_changes64(connection_->handle())};
    for (const QString& table : tables) {
        Attachments::Use use;
        const QScopedValueRollback binding(bindingUse_, &use);
        const QString schema = placeOf(table).file->schema;
        version.push_back(attachments_->generation(schema));
        version.push_back(dataVersion(*connection_, schema));
    }
    return version;
}

/// A transaction that begins with a read could not wait for another's lock later: SQLite refuses it at once. One that
/// begins as a writer of every file would lock the linked files too. A write that changes nothing does neither.
void DatabaseFile::takeWritersPlace(const QStringList& tables) {
    for (const QString& table : tables) {
        sqlite3_stmt* probe = nullptr;
        const QByteArray sql = "DELETE FROM main." + quotedName(table).toUtf8() + " WHERE 0";
        const int result = sqlite3_prepare_v2(connection_->handle(), sql.constData(), -1, &probe, nullptr);
        sqlite3_finalize(probe);
        if (result == SQLITE_ERROR)
            continue; // a link, or nothing
        connection_->run(QString::fromUtf8(sql), Purpose::Write);
        return;
    }
}

std::unique_ptr<ChangeRecorder> DatabaseFile::record(const QStringList& tables) {
    const Operation operation(*this);
    requireWritable();
    if (level_ == 0 || recorder_ != nullptr)
        raiseEngineError(3219);
    takeWritersPlace(tables);
    QStringList recorded;
    for (const QString& table : tables)
        if (const CachedTable& cached = cachedTable(attachments_->main(), table); cached.table)
            recorded += cached.table->name;
    auto recorder = std::make_unique<FileRecorder>(shared_from_this(), recorded);
    recorder_ = recorder.get();
    return recorder;
}

void DatabaseFile::noteWrite(const QString& sqlName) {
    ++writes_[sqlName];
    if (recorder_ != nullptr)
        recorder_->noteWrite(sqlName);
}

} // namespace dao
