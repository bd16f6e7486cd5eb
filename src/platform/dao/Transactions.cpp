#include "platform/dao/DatabaseFile.h"
#include "platform/dao/Error.h"

using namespace Qt::StringLiterals;

namespace dao {

namespace {

QString savepoint(int level) {
    return u"\"level %1\""_s.arg(level);
}

}

void DatabaseFile::begin(int level) {
    requireOutsideHook();
    connection_->run(level == 1 ? u"BEGIN"_s : u"SAVEPOINT "_s + savepoint(level));
    level_ = level;
    lostBy_ = level == 1 ? 0 : lostBy_;
}

void DatabaseFile::commit(int level) {
    if (level_ < level) {
        return;
    }
    requireOutsideHook();
    if (lostBy_ != 0) {
        raiseEngineError(lostBy_);
    }
    connection_->run(level == 1 ? u"COMMIT"_s : u"RELEASE "_s + savepoint(level), Purpose::Write);
    level_ = level - 1;
}

void DatabaseFile::rollback(int level) {
    if (level_ < level) {
        return;
    }
    requireOutsideHook();
    if (connection_->isInTransaction()) {
        connection_->run(level == 1 ? u"ROLLBACK"_s
                                    : u"ROLLBACK TO "_s + savepoint(level) + u"; RELEASE "_s + savepoint(level));
    }
    level_ = level - 1;
    definitionsChanged();  // tables that were made inside are gone
}

void DatabaseFile::requireOutsideHook() const {
    if (connection_->isInHook()) {
        raiseEngineError(3219);
    }
}

}
