#include "platform/dao/DBEngine.h"

#include "platform/dao/DatabaseFile.h"
#include "platform/dao/EngineSettings.h"

#include <QFileInfo>
#include <algorithm>
#include <unistd.h>
#ifdef __GLIBC__
#include <malloc.h>
#include <sqlite3.h>
#endif

using namespace Qt::StringLiterals;

namespace dao {

/// A quarter of the memory that the machine has: growing, rows take up to three times their size.
static size_t quarterOfMemory() {
    constexpr size_t least = 256 * 1024 * 1024;
    const auto pages = static_cast<double>(sysconf(_SC_PHYS_PAGES)),
               pageSize = static_cast<double>(sysconf(_SC_PAGE_SIZE));
    return std::max(least, static_cast<size_t>(pages * pageSize / 4));
}

EngineSettings& engineSettings() {
    static EngineSettings settings{.mostResultBytes = quarterOfMemory(), .progress = {}, .trace = {}};
    return settings;
}

struct Workspace::State {
    std::vector<std::weak_ptr<DatabaseFile>> files;
    int level = 0;
    bool tookPart = false; ///< a database is or was inside the transaction

    /// The open databases.
    std::vector<DatabaseFilePtr> open() {
        std::vector<DatabaseFilePtr> result;
        std::erase_if(files, [](const auto& file) { return file.expired(); });
        for (const auto& file : files) {
            if (const DatabaseFilePtr alive = file.lock(); alive && alive->isOpen()) {
                result.push_back(alive);
            }
        }
        return result;
    }

    /// Ends a transaction whose databases were all closed in it, so that what follows does not become part of it.
    void forgetAbandoned() {
        if (tookPart && open().empty()) {
            level = 0;
            tookPart = false;
        }
    }

    DatabasePtr add(const DatabaseFilePtr& file) {
        forgetAbandoned();
        for (int inner = 1; inner <= level; ++inner) {
            file->begin(inner);
        }
        tookPart = level > 0;
        files.push_back(file);
        return file;
    }
};

Workspace::Workspace() : state_(std::make_shared<State>()) {}
Workspace::~Workspace() = default;

DatabasePtr Workspace::OpenDatabase(const QString& path, bool exclusive, bool readOnly) {
    errorList().clear();
    return state_->add(std::make_shared<DatabaseFile>(path, DatabaseFile::Opening::Existing, exclusive, readOnly));
}

DatabasePtr Workspace::CreateDatabase(const QString& path) {
    errorList().clear();
    if (QFileInfo::exists(DatabaseLocation::findNew(path).path)) {
        raiseEngineError(3204, path);
    }
    return state_->add(std::make_shared<DatabaseFile>(path, DatabaseFile::Opening::New, false, false));
}

void Workspace::BeginTrans() {
    errorList().clear();
    state_->forgetAbandoned();
    const int level = state_->level + 1;
    const std::vector<DatabaseFilePtr> files = state_->open();
    try {
        for (const DatabaseFilePtr& file : files) {
            file->begin(level);
        }
    } catch (const Error&) {
        for (const DatabaseFilePtr& file : files) {
            file->rollback(level);
        }
        throw;
    }
    state_->level = level;
    state_->tookPart = !files.empty();
}

void Workspace::CommitTrans() {
    errorList().clear();
    if (state_->level == 0) {
        raiseEngineError(3034);
    }
    const int level = state_->level;
    const std::vector<DatabaseFilePtr> files = state_->open();
    for (const DatabaseFilePtr& file : files) {
        try {
            file->commit(level);
        } catch (const Error&) {
            if (file->isTransactionLost()) {
                // Nothing is left to commit, and an open level would swallow what is edited later.
                for (const DatabaseFilePtr& open : files) {
                    open->rollback(level);
                }
                --state_->level;
            }
            throw;
        }
    }
    --state_->level;
}

void Workspace::Rollback() {
    errorList().clear();
    if (state_->level == 0) {
        raiseEngineError(3034);
    }
    for (const DatabaseFilePtr& file : state_->open()) {
        file->rollback(state_->level);
    }
    --state_->level;
}

struct DBEngine::State {
    std::vector<std::unique_ptr<Workspace>> workspaces;
};

/// Result sets of some hundred kilobytes come and go. Returning their memory to the system each time and requesting it
/// again costs more than reading the rows, so the process keeps some.
static void keepFreedMemory() {
#ifdef __GLIBC__
    constexpr int mebibyte = 1024 * 1024;
    mallopt(M_MMAP_THRESHOLD, 32 * mebibyte);
    mallopt(M_TRIM_THRESHOLD, 64 * mebibyte);
    mallopt(M_TOP_PAD, mebibyte);
#endif
}

DBEngine::DBEngine() : state_(std::make_unique<State>()) {
    keepFreedMemory();
    state_->workspaces.push_back(std::make_unique<Workspace>());
}

DBEngine::~DBEngine() = default;

QString DBEngine::storeVersion() {
    return QString::fromLatin1(sqlite3_libversion());
}

DBEngine& DBEngine::instance() {
    static DBEngine engine;
    return engine;
}

Workspace& DBEngine::Workspaces(int index) {
    if (index != 0) {
        errorList().clear();
        raiseEngineError(3265, QString::number(index));
    }
    return *state_->workspaces.front();
}

Errors& DBEngine::errors() {
    return errorList();
}

void DBEngine::setDefinitionsInMemory(bool inMemory) {
    engineSettings().definitionsInMemory = inMemory;
}

bool DBEngine::definitionsInMemory() const {
    return engineSettings().definitionsInMemory;
}

void DBEngine::setLockWait(int milliseconds) {
    engineSettings().lockWait = milliseconds;
}

int DBEngine::lockWait() const {
    return engineSettings().lockWait;
}

void DBEngine::setProgress(std::function<bool()> hook) {
    engineSettings().progress = std::move(hook);
}

void DBEngine::setTrace(std::function<void(const QString&, const QString&)> trace) {
    engineSettings().trace = std::move(trace);
}

} // namespace dao
