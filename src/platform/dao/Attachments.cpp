#include "platform/dao/Attachments.h"

#include "platform/dao/Error.h"
#include "platform/dao/Journals.h"
#include "platform/dao/TableSchema.h"

#include <QFileInfo>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace dao {

Attachments::Use::~Use() {
    for (const auto& file : files_) {
        --file->users;
    }
}

Attachments::Attachments(Connection& connection, const DatabaseLocation& main)
    : connection_(connection), main_(std::make_shared<File>()) {
    main_->schema = u"\"main\""_s;
    main_->location = main;
    main_->attached = true;
    main_->readOnly = connection.isReadOnly();
}

const Attachments::File& Attachments::reach(const QString& path, Use& use) {
    if (const std::shared_ptr<File> file = knownAt(path)) {
        if (!file->attached) {
            file->location.findWritable();
            open(*file, false);
        }
        return take(file, use);
    }
    return attach(DatabaseLocation::find(path), false, use);
}

const Attachments::File& Attachments::reachNew(const QString& path, Use& use) {
    return attach(DatabaseLocation::findNew(path), true, use);
}

/// The file that was found at just this path and still lies there as it did: a file that was changed since, or another
/// one that has its number now, has another time of change. A path that is spelled otherwise may lead elsewhere by now,
/// and is looked up anew.
std::shared_ptr<Attachments::File> Attachments::knownAt(const QString& path) const {
    for (const auto& file : files_) {
        if (file->location.path == path) {
            return file->location.isUnchanged() ? file : nullptr;
        }
    }
    return nullptr;
}

const Attachments::File& Attachments::take(const std::shared_ptr<File>& file, Use& use) {
    file->lastUse = ++uses_;
    ++file->users;
    use.files_.push_back(file);
    return *file;
}

const Attachments::File& Attachments::attach(const DatabaseLocation& location, bool create, Use& use) {
    if (location.identity == main_->location.identity) {
        return *main_;
    }
    const std::shared_ptr<File> file = fileOf(location);
    const bool replaced = file->location.device != location.device || file->location.inode != location.inode;
    if (file->attached && replaced && !detach(*file)) {
        // Another file has taken the name while the one before is still being read.
        raiseEngineError(3050, location.path);
    }
    file->location = location;
    if (!file->attached) {
        open(*file, create);
    }
    return take(file, use);
}

std::shared_ptr<Attachments::File> Attachments::fileOf(const DatabaseLocation& location) {
    for (const auto& file : files_) {
        if (file->location.identity == location.identity) {
            return file;
        }
    }
    auto file = std::make_shared<File>();
    file->schema = u"\"ln%1\""_s.arg(files_.size() + 1);
    file->location = location;
    files_.push_back(file);
    return file;
}

void Attachments::open(File& file, bool create) {
    using Mode = DatabaseLocation::Mode;
    makeRoom();
    settleJournals(file.location, {.mainFolder = QFileInfo(main_->location.identity).path()});
    const auto attachAs = [&](Mode mode) {
        sqlite3_stmt* statement = nullptr;
        const QByteArray sql = "ATTACH ?1 AS " + file.schema.toUtf8();
        int result = sqlite3_prepare_v2(connection_.handle(), sql.constData(), -1, &statement, nullptr);
        if (result == SQLITE_OK) {
            const QByteArray uri = file.location.uri(mode);
            sqlite3_bind_text(statement, 1, uri.constData(), static_cast<int>(uri.size()), SQLITE_TRANSIENT);
            result = sqlite3_step(statement);
        }
        sqlite3_finalize(statement);
        return result;
    };
    const bool mayWrite = file.location.writable && (!main_->readOnly || file.location.isInWal());
    const Mode wanted = create ? Mode::ReadWriteCreate : mayWrite ? Mode::ReadWrite : Mode::ReadOnly;
    int result = attachAs(wanted);
    const bool unfinished = result == SQLITE_READONLY_ROLLBACK || result == SQLITE_READONLY_RECOVERY;
    if (unfinished && file.location.writable) {
        Connection(file.location, Mode::ReadWrite); // takes back what a killed process left
        result = attachAs(wanted);
    }
    const bool refused = !unfinished && ((result & 0xFF) == SQLITE_CANTOPEN || (result & 0xFF) == SQLITE_READONLY);
    if (wanted == Mode::ReadOnly && refused && file.location.isQuiet()) {
        result = attachAs(Mode::Immutable);
    }
    if (result != SQLITE_DONE) {
        connection_.raise(result, Purpose::Open, file.location.path);
    }
    file.attached = true;
    ++file.generation;
    file.readOnly = connection_.isReadOnly(file.schema.mid(1, file.schema.size() - 2).toUtf8());
    // In this order: what is written after the stamp was taken shows in the version.
    try {
        file.dataVersion = dataVersion(connection_, file.schema);
        file.stamp = stampOf(file);
    } catch (const Error&) {
        file.stamp.clear(); // no database; reported by whoever reads it
    }
    if (create) {
        file.location = DatabaseLocation::findNew(file.location.path); // now that it is there
    }
}

/// Two equal stamps mean that nothing was written into the file in between: it is the same file, not touched since, and
/// the change counter in its header, from which SQLite itself sees whether what it has read is still valid, is the
/// same. Empty where this cannot be known: the changes of a file in WAL mode lie elsewhere.
QByteArray Attachments::stampOf(const File& file) const {
    constexpr int begin = 18, size = 22, walVersion = 2; // from the versions of the format to the list of free pages
    const QByteArray schema = file.schema.mid(1, file.schema.size() - 2).toUtf8();
    sqlite3_file* content = nullptr;
    QByteArray head(size, '\0');
    if (sqlite3_file_control(connection_.handle(), schema.constData(), SQLITE_FCNTL_FILE_POINTER, &content) !=
            SQLITE_OK ||
        content == nullptr || content->pMethods == nullptr ||
        content->pMethods->xRead(content, head.data(), size, begin) != SQLITE_OK || head[0] == walVersion) {
        return {};
    }
    const DatabaseLocation& location = file.location;
    return head + QByteArray::number(location.device) + ' ' + QByteArray::number(location.inode) + ' ' +
           QByteArray::number(location.changed);
}

void Attachments::makeRoom() {
    const auto room = static_cast<qsizetype>(sqlite3_limit(connection_.handle(), SQLITE_LIMIT_ATTACHED, -1));
    std::vector<File*> open;
    for (const auto& file : files_) {
        if (file->attached) {
            open.push_back(file.get());
        }
    }
    if (static_cast<qsizetype>(open.size()) < room) {
        return;
    }
    std::sort(open.begin(), open.end(), [](const File* a, const File* b) { return a->lastUse < b->lastUse; });
    for (File* file : open) {
        // Inside a transaction SQLite keeps the files that took part in it: the next one then.
        if (detach(*file)) {
            return;
        }
    }
    raiseEngineError(3048);
}

bool Attachments::detach(File& file) {
    if (file.users > 0) {
        return false;
    }
    connection_.forgetQuestions();
    const QByteArray sql = "DETACH " + file.schema.toUtf8();
    if (sqlite3_exec(connection_.handle(), sql.constData(), nullptr, nullptr, nullptr) != SQLITE_OK) {
        return false;
    }
    file.attached = false;
    return true;
}

int Attachments::generation(const QString& schema) const {
    for (const auto& file : files_) {
        if (file->schema == schema) {
            return file->generation;
        }
    }
    return 0;
}

void Attachments::letGo(const QString& schema) {
    for (const auto& file : files_) {
        if (file->schema == schema && file->attached && !detach(*file)) {
            raiseEngineError(3050, file->location.path);
        }
    }
}

} // namespace dao
