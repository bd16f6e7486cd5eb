#include "platform/dao/DatabaseFile.h"
#include "platform/dao/Error.h"

using namespace Qt::StringLiterals;

namespace dao {

namespace {

QString savepoint(int level) {
    return u"\"level %1\""_s.arg(level);
}

} // namespace

void DatabaseFile::begin(int level) {
    requireOutsideHook();
    if (level > 1 && !connection_->isInTransaction()) {
        // A savepoint alone would be a transaction of its own, and would be written although the outer one is lost.
        raiseEngineError(lossNumber());
    }
    connection_->run(level == 1 ? u"BEGIN"_s : u"SAVEPOINT "_s + savepoint(level));
    level_ = level;
    lostBy_ = level == 1 ? 0 : lostBy_;
}

void DatabaseFile::commit(int level) {
    if (level_ < level) {
        return;
    }
    requireOutsideHook();
    if (isTransactionLost()) {
        raiseEngineError(lossNumber());
    }
    try {
        connection_->run(level == 1 ? u"COMMIT"_s : u"RELEASE "_s + savepoint(level), Purpose::Write);
    } catch (const Error& error) {
        // Except for a lock, which can be waited for, SQLite rolls everything back.
        lostBy_ = connection_->isInTransaction() ? lostBy_ : error.number();
        throw;
    }
    level_ = level - 1;
}

void DatabaseFile::rollback(int level) {
    if (level_ < level) {
        return;
    }
    requireOutsideHook();
    if (connection_->isInTransaction()) {
        try {
            connection_->run(level == 1 ? u"ROLLBACK"_s
                                        : u"ROLLBACK TO "_s + savepoint(level) + u"; RELEASE "_s + savepoint(level));
        } catch (const Error& error) {
            if (connection_->isInTransaction()) {
                throw;
            }
            lostBy_ = error.number(); // rolled back nevertheless, together with the outer transaction
        }
    }
    level_ = level - 1;
    definitionsChanged(); // tables that were made inside are gone
    // What was known of tables made inside, or of rows before the rollback brought some back, is no longer valid: the
    // next change may give the file the same version number again.
    tables_.clear();
    ownTablesVersion_ = -1;
    for (auto& [table, count] : writes_) {
        ++count;
    }
}

bool DatabaseFile::isTransactionLost() const {
    return level_ > 0 && (lostBy_ != 0 || !connection_->isInTransaction());
}

int DatabaseFile::lossNumber() const {
    constexpr int diskError = 3043;
    return lostBy_ != 0 ? lostBy_ : diskError;
}

void DatabaseFile::requireOutsideHook() const {
    if (connection_->isInHook()) {
        raiseEngineError(3219);
    }
}

} // namespace dao
