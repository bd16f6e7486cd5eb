#include "platform/dao/SqliteError.h"

#include <QFile>
#include <QFileInfo>
#include <cerrno>
#include <sys/statvfs.h>

using namespace Qt::StringLiterals;

namespace dao {

namespace {

struct Row {
    int code; ///< extended, or primary for all of its kind
    int opening;
    int reading;
    int writing;
};

constexpr Row rows[] = {
    // Unfinished work lies beside a file that may not be changed: it can be read only after it was opened elsewhere.
    {SQLITE_READONLY_ROLLBACK, 3051, 3051, 3051},
    {SQLITE_READONLY_RECOVERY, 3051, 3051, 3051},
    {SQLITE_CONSTRAINT_NOTNULL, 3314, 3314, 3314},
    {SQLITE_CONSTRAINT_CHECK, 3163, 3163, 3163},
    {SQLITE_CONSTRAINT, 3022, 3022, 3022},
    {SQLITE_BUSY, 3050, 3050, 3260},
    {SQLITE_LOCKED, 3050, 3050, 3260},
    {SQLITE_PROTOCOL, 3050, 3050, 3260},
    {SQLITE_READONLY, 3051, 3027, 3027},
    {SQLITE_FULL, 3026, 3026, 3026},
    {SQLITE_IOERR, 3043, 3043, 3043},
    {SQLITE_NOLFS, 3043, 3043, 3043},
    {SQLITE_CORRUPT, 3049, 3049, 3049},
    {SQLITE_FORMAT, 3049, 3049, 3049},
    {SQLITE_NOTADB, 3343, 3343, 3343},
    {SQLITE_CANTOPEN, 3051, 3051, 3027},
    {SQLITE_PERM, 3051, 3051, 3027},
    {SQLITE_AUTH, 3051, 3051, 3027},
    {SQLITE_INTERRUPT, 3059, 3059, 3059},
    {SQLITE_MISMATCH, 3421, 3421, 3421},
    {SQLITE_TOOBIG, 3035, 3035, 3035},
    {SQLITE_RANGE, 3035, 3035, 3035},
};

constexpr int reservedError = 3000;
constexpr int validationRule = 3317;

const QString sizeRulePrefix = u"size of "_s;

bool isWantOfRoom(int reason) {
    return reason == ENOSPC || reason == EDQUOT || reason == EFBIG;
}

/// What has last gone wrong with the files of a connection, 0 for nothing. Where a commit has failed, the connection
/// still has the reason of what failed before it.
int reasonOfFiles(sqlite3* connection) {
    int reason = 0;
    const char* schema = nullptr;
    for (int i = 0; !isWantOfRoom(reason) && (schema = sqlite3_db_name(connection, i)) != nullptr; ++i) {
        int ofFile = 0;
        sqlite3_file_control(connection, schema, SQLITE_FCNTL_LAST_ERRNO, &ofFile);
        reason = ofFile != 0 ? ofFile : reason;
    }
    return reason;
}

QString nameBehindColon(const QString& message) {
    return message.mid(message.lastIndexOf(u": "_s) + 2);
}

int numberOfMessage(const QString& message) {
    if (message.startsWith(u"no such table"_s)) {
        return 3078;
    }
    for (const QString& limit : {u"too many"_s, u"too large"_s, u"too big"_s, u"overflow"_s, u"maximum depth"_s}) {
        if (message.contains(limit)) {
            return 3035;
        }
    }
    // The binder has let through what SQLite doesn't read: a fault of this layer and not of the statement.
    return reservedError;
}

} // namespace

int engineNumber(int extendedCode, Purpose purpose, const QString& message) {
    if (extendedCode == SQLITE_CONSTRAINT_CHECK && !nameBehindColon(message).startsWith(sizeRulePrefix)) {
        return validationRule; // a rule that another program has put into the file
    }
    for (const Row& row : rows) {
        if (row.code == extendedCode || row.code == (extendedCode & 0xFF)) {
            return purpose == Purpose::Open ? row.opening : purpose == Purpose::Read ? row.reading : row.writing;
        }
    }
    return numberOfMessage(message);
}

bool isForWantOfRoom(sqlite3* connection, int code) {
    const int kind = code & 0xFF;
    if (connection == nullptr || (kind != SQLITE_IOERR && kind != SQLITE_CANTOPEN)) {
        return false;
    }
    const int ofFiles = code == SQLITE_IOERR_WRITE ? reasonOfFiles(connection) : 0;
    if (isWantOfRoom(ofFiles != 0 ? ofFiles : sqlite3_system_errno(connection))) {
        return true;
    }
    if (kind == SQLITE_IOERR) {
        return false;
    }
    // SQLite tries again to open it in other ways, and the reason is lost; the journals that were made are gone by now,
    // and their places free.
    int files = 0;
    while (sqlite3_db_name(connection, files) != nullptr) {
        ++files;
    }
    for (int i = 0; i < files; ++i) {
        const char* const file = sqlite3_db_filename(connection, sqlite3_db_name(connection, i));
        struct statvfs disk {};
        if (file != nullptr && *file != '\0' && statvfs(file, &disk) == 0 &&
            (disk.f_bavail == 0 || (disk.f_files > 0 && disk.f_favail <= static_cast<fsfilcnt_t>(files)))) {
            return true;
        }
    }
    return false;
}

QString temporaryFolder() {
    for (const QByteArray& folder : {qgetenv("SQLITE_TMPDIR"), qgetenv("TMPDIR"), QByteArray("/var/tmp"),
                                     QByteArray("/usr/tmp"), QByteArray("/tmp")}) {
        if (const QFileInfo info(QFile::decodeName(folder)); !folder.isEmpty() && info.isDir() && info.isWritable()) {
            return info.filePath();
        }
    }
    return u"."_s;
}

QString sizeRuleName(const QString& field) {
    return sizeRulePrefix + field;
}

QString engineDetail(int number, const QString& message) {
    const QString behindColon = nameBehindColon(message);
    switch (number) {
    case 3314:
        return behindColon.mid(behindColon.indexOf(u'.') + 1);
    case 3163:
        return behindColon.mid(sizeRulePrefix.size());
    case validationRule:
    case 3078:
        return behindColon;
    case reservedError:
        return message;
    default:
        return {};
    }
}

} // namespace dao
