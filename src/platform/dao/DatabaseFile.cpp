#include "platform/dao/DatabaseFile.h"

#include "platform/dao/Appending.h"
#include "platform/dao/ChangeRecording.h"
#include "platform/dao/EngineSettings.h"
#include "platform/dao/Error.h"
#include "platform/dao/FileRecordset.h"
#include "platform/dao/Journals.h"
#include "platform/dao/Parser.h"
#include "platform/dao/SqlText.h"

#include <QScopedValueRollback>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace dao {

DatabaseFile::DatabaseFile(const QString& path, Opening opening, bool exclusive, bool readOnly)
    : tableDefs_(*this), queryDefs_(*this) {
    location_ = opening == Opening::New ? DatabaseLocation::findNew(path) : DatabaseLocation::find(path);
    keepInMemory_ = engineSettings().definitionsInMemory;
    open(opening, exclusive, readOnly);
}

DatabaseFile::~DatabaseFile() {
    try {
        closeNow();
    } catch (...) {
        // The connection goes with the object; what could not be written stays unwritten.
    }
}

/// A connection that can't write. What a killed process left unfinished is taken back before, where that may be.
static std::unique_ptr<Connection> openToRead(const DatabaseLocation& location) {
    using Mode = DatabaseLocation::Mode;
    try {
        return std::make_unique<Connection>(location, Mode::ReadOnly);
    } catch (const Error& error) {
        if (error.number() != 3051 || (!location.writable && !location.isQuiet())) {
            throw;
        }
        errorList().clear();
    }
    if (!location.writable) {
        return std::make_unique<Connection>(location, Mode::Immutable);
    }
    Connection(location, Mode::ReadWrite);
    return std::make_unique<Connection>(location, Mode::ReadOnly);
}

void DatabaseFile::open(Opening opening, bool exclusive, bool readOnly) {
    using Mode = DatabaseLocation::Mode;
    settleJournals(location_);
    if (opening == Opening::New) {
        connection_ = std::make_unique<Connection>(location_, Mode::ReadWriteCreate);
        connection_->run(u"PRAGMA application_id=1450341496"_s, Purpose::Write); // makes the file a database at once
        location_ = DatabaseLocation::find(location_.path);
    } else if (location_.writable && (!readOnly || location_.isInWal())) {
        // A reader of a file in WAL mode that could not write would leave the log's files behind.
        connection_ = std::make_unique<Connection>(location_, Mode::ReadWrite);
    } else {
        connection_ = openToRead(location_);
    }
    readOnly_ = readOnly || connection_->isReadOnly();
    if (readOnly) {
        connection_->run(u"PRAGMA query_only=ON"_s);
    }
    connection_->run(u"PRAGMA synchronous=FULL"_s);
    if (!readOnly_ && !keepInMemory_) {
        connection_->leaveWal(u"\"main\""_s);
    }
    if (exclusive) {
        connection_->run(u"PRAGMA locking_mode=EXCLUSIVE; BEGIN EXCLUSIVE; COMMIT"_s, Purpose::Open);
    }
    attachments_ = std::make_unique<Attachments>(*connection_, location_);
    definitions_.load(*connection_);
}

DatabaseFile::Operation::Operation(DatabaseFile& file) : file_(file.shared_from_this()) {
    errorList().clear();
    if (!file.isOpen()) {
        raiseEngineError(3420);
    }
    if (file.connection_->isInHook()) {
        raiseEngineError(3219);
    }
    if (file.level_ > 0 && !file.connection_->isInTransaction()) {
        // Nothing may be written as if the transaction still stood.
        raiseEngineError(file.lossNumber());
    }
    ++file.operations_;
}

DatabaseFile::Operation::~Operation() {
    if (file_->level_ > 0 && file_->lostBy_ == 0 && !file_->connection_->isInTransaction()) {
        const Errors& errors = errorList();
        file_->lostBy_ = errors.Count() > 0 ? errors.Item(errors.Count() - 1).number : 3043;
    }
    if (--file_->operations_ == 0 && file_->closing_) {
        file_->closeNow();
    }
}

BoundStatement DatabaseFile::bind(const QString& source, Attachments::Use& use, bool mayBeName) {
    const QScopedValueRollback binding(bindingUse_, &use);
    // What changes rows is run once.
    return mayBeName ? memory_.bind(source, isName(source), *this) : bindStatement(parseStatement(source), *this);
}

/// A text that doesn't begin like a statement is the name of a table, link or query.
bool DatabaseFile::isName(const QString& source) {
    const QString text = source.trimmed();
    for (const QString& word : {u"SELECT"_s, u"UPDATE"_s, u"DELETE"_s, u"INSERT"_s}) {
        if (text.startsWith(word, Qt::CaseInsensitive) &&
            (text.size() == word.size() || !(text[word.size()].isLetterOrNumber() || text[word.size()] == u'_'))) {
            return containsName(ownTables(), text) || definitions_.findLink(text) != nullptr ||
                   definitions_.findQuery(text) != nullptr;
        }
    }
    return !text.startsWith(u'(');
}

RecordsetPtr DatabaseFile::OpenRecordset(const QString& source, int type) {
    const Operation operation(*this);
    return std::make_shared<FileRecordset>(shared_from_this(), source, type, QString());
}

RecordsetPtr DatabaseFile::OpenColumns(const QString& source, const QStringList& columns) {
    const Operation operation(*this);
    return std::make_shared<FileRecordset>(shared_from_this(), source, dbOpenSnapshot, QString(), columns);
}

void DatabaseFile::Execute(const QString& statement, int) {
    const Operation operation(*this);
    Attachments::Use use;
    const BoundStatement bound = bind(statement, use, false);
    if (bound.kind == tree::Statement::Kind::Select) {
        raiseEngineError(3065);
    }
    requireWritable();
    trace(statement, bound.sql);
    if (const std::optional<TableInfo> target = findTable(bound.tables.first(), use)) {
        noteWrite(target->sqlName);
    }
    Statement change(*connection_, bound.sql, Purpose::Write);
    while (change.step()) {
    }
    recordsAffected_ = sqlite3_changes(connection_->handle());
}

void DatabaseFile::requireWritable() const {
    if (readOnly_) {
        raiseEngineError(3027);
    }
}

void DatabaseFile::trace(const QString& jet, const QString& sqlite) const {
    if (engineSettings().trace) {
        engineSettings().trace(jet, sqlite);
    }
}

const QStringList& DatabaseFile::ownTables() {
    const Reading reading(*connection_);
    const qint64 version = schemaVersion(*connection_, attachments_->main().schema);
    if (version != ownTablesVersion_) {
        ownTables_ = tableNames(*connection_, attachments_->main().schema);
        ownTablesVersion_ = version;
    }
    return ownTables_;
}

DatabaseFile::CachedTable& DatabaseFile::cachedTable(const Attachments::File& file, const QString& name) {
    CachedTable& cached = tables_[{file.schema, name.toCaseFolded()}];
    const qint64 version = schemaVersion(*connection_, file.schema);
    if (cached.generation != file.generation && !file.stamp.isEmpty() && cached.stamp == file.stamp) {
        holdOn(cached, file);
    }
    if (cached.schemaVersion != version || cached.generation != file.generation) {
        std::optional<StoredTable> table = readTable(*connection_, file.schema, name);
        const quint64 structure = table == cached.table && cached.structure != 0 ? cached.structure : ++structures_;
        cached = {version, file.generation, file.stamp, structure, std::move(table), {}, {}};
    }
    return cached;
}

/// Keeps what is known of a table when its file was opened again and nothing was written in between. The count of
/// changes by others starts again with each opening.
void DatabaseFile::holdOn(CachedTable& cached, const Attachments::File& file) {
    cached.generation = file.generation;
    for (auto& [field, content] : cached.contents) {
        if (content.dataVersion >= 0) {
            content.dataVersion = file.dataVersion;
        }
    }
}

std::optional<TableInfo> DatabaseFile::tableIn(const Attachments::File& file, const QString& table) {
    return infoOf({&file, &cachedTable(file, table), {}});
}

std::optional<TableInfo> DatabaseFile::infoOf(const Place& place) const {
    const std::optional<StoredTable>& stored = place.table->table;
    if (!stored) {
        return std::nullopt;
    }
    const Attachments::File& file = *place.file;
    const QString& link = place.link;
    TableInfo info;
    info.name = link.isEmpty() ? stored->name : link;
    info.schema = file.schema;
    info.sqlName = file.schema + u'.' + quotedName(stored->name);
    info.columns = stored->columns;
    info.rowKey = stored->rowKey;
    info.keyColumns = stored->keyColumns;
    info.isLink = !link.isEmpty();
    info.readOnly = readOnly_ || file.readOnly || stored->readOnly;
    for (ColumnInfo& column : info.columns) {
        column.sourceTable = info.name;
    }
    return info;
}

std::optional<TableInfo> DatabaseFile::findTable(const QString& name) {
    return infoOf(placeOf(name));
}

TableState DatabaseFile::tableState(const QString& name) {
    const Place place = placeOf(name);
    const CachedTable& cached = *place.table;
    if (!cached.table) {
        return {};
    }
    return {place.link.isEmpty() ? cached.table->name : place.link, cached.structure,
            readOnly_ || place.file->readOnly || cached.table->readOnly};
}

/// The file's own tables come before its links. A name that is neither gives the place of a missing own table.
/// @throws Error 3011
DatabaseFile::Place DatabaseFile::placeOf(const QString& name) {
    const Attachments::File& main = attachments_->main();
    CachedTable& own = cachedTable(main, name);
    const Definitions::Link* const link = own.table ? nullptr : definitions_.findLink(name);
    if (link == nullptr) {
        return {&main, &own, {}};
    }
    const Definitions::Link found = *link;
    const Attachments::File& file = attachments_->reach(linkedFile(found.connect), *bindingUse_);
    CachedTable& linked = cachedTable(file, found.source);
    if (!linked.table) {
        raiseEngineError(3011, found.source);
    }
    return {&file, &linked, found.name};
}

bool DatabaseFile::holdsOnlyNumbers(const QString& table, const QString& field) {
    const Place place = placeOf(table);
    CachedTable& cached = *place.table;
    if (!cached.table) {
        return false;
    }
    const StoredTable& stored = *cached.table;
    Content& content = cached.contents[field];
    // This engine writes nothing but numbers into such a field; only another program can, and then the version changes.
    const qint64 version = dataVersion(*connection_, place.file->schema);
    if (content.dataVersion != version) {
        content.onlyNumbers = dao::holdsOnlyNumbers(*connection_, place.file->schema, stored.name, field);
        content.dataVersion = version;
    }
    return content.onlyNumbers;
}

QString DatabaseFile::criteriaSql(const tree::Expression& criteria, const BoundStatement& statement,
                                  Attachments::Use& use) {
    const QScopedValueRollback binding(bindingUse_, &use);
    return bindCriteriaSql(criteria, statement, *this);
}

std::optional<TableInfo> DatabaseFile::findTable(const QString& name, Attachments::Use& use) {
    const QScopedValueRollback binding(bindingUse_, &use);
    return findTable(name);
}

bool DatabaseFile::isUnique(const QString& table, const QString& field) {
    const Operation operation(*this);
    const Reading reading(*connection_);
    Attachments::Use use;
    const QScopedValueRollback binding(bindingUse_, &use);
    const Place place = placeOf(table);
    CachedTable& cached = *place.table;
    if (!cached.table) {
        raiseEngineError(3078, table);
    }
    const std::vector<ColumnInfo>& columns = cached.table->columns;
    if (std::none_of(columns.begin(), columns.end(), [&](const auto& one) { return sameName(one.name, field); })) {
        raiseEngineError(3265, field);
    }
    if (!cached.unique) {
        cached.unique = uniqueFields(*connection_, place.file->schema, *cached.table);
    }
    return containsName(*cached.unique, field);
}

std::optional<QString> DatabaseFile::findQuery(const QString& name) {
    const Definitions::Query* const query = definitions_.findQuery(name);
    return query != nullptr ? std::optional(query->sql) : std::nullopt;
}

std::unique_ptr<Appender> DatabaseFile::openAppender(const QString& table, const QStringList& fields) {
    const Operation operation(*this);
    requireWritable();
    auto use = std::make_unique<Attachments::Use>();
    const std::optional<TableInfo> info = findTable(table, *use);
    if (!info) {
        raiseEngineError(3078, table);
    }
    return std::make_unique<FileAppender>(shared_from_this(), *info, fields, std::move(use));
}

std::unique_ptr<Companion> DatabaseFile::openCompanion(const QString& path) {
    const Operation operation(*this);
    requireWritable();
    if (level_ > 0) {
        raiseEngineError(3246);
    }
    return std::make_unique<FileCompanion>(shared_from_this(), path);
}

void DatabaseFile::saveDefinitions() {
    if (connection_ == nullptr || readOnly_ || keepInMemory_ || level_ > 0 || !definitions_.isDirty() ||
        connection_->isInHook()) {
        return;
    }
    const Errors before = errorList();
    try {
        definitions_.save(*connection_);
    } catch (const Error&) {
        errorList() = before; // they stay in memory, and changed
    }
}

void DatabaseFile::definitionsChanged() {
    tableDefs_.current_ = false;
    queryDefs_.current_ = false;
}

void DatabaseFile::Close() {
    if (connection_ == nullptr) {
        return;
    }
    if (operations_ > 0) {
        // The caller sits in the progress hook of a running statement, which has to end first.
        closing_ = true;
        connection_->cancel();
        return;
    }
    closeNow();
}

void DatabaseFile::closeNow() {
    if (connection_ == nullptr) {
        return;
    }
    if (recorder_ != nullptr) {
        recorder_->end();
    }
    if (level_ > 0) {
        sqlite3_exec(connection_->handle(), "ROLLBACK", nullptr, nullptr, nullptr);
        level_ = 0;
    }
    saveDefinitions();
    attachments_.reset();
    connection_.reset();
}

} // namespace dao
