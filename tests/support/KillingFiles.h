#pragma once

#include <csignal>
#include <cstring>
#include <sqlite3.h>

/// SQLite's files in a process that is to be killed: from the moment that a commit of several files begins, each
/// writing, cutting off, making sure and removing is counted, and the process killed before a certain one. For a
/// forked process, which it never leaves.
class KillingFiles {
public:
    /// @param victim  the step before which the process is killed, 0 for the first; the steps done stand in `count`,
    ///                which may be shared with the process that looks at it
    static void install(int victim, int& count) {
        static sqlite3_vfs files = *sqlite3_vfs_find(nullptr);
        original_ = sqlite3_vfs_find(nullptr);
        victim_ = victim;
        count_ = &count;
        files.zName = "killing";
        files.xOpen = open;
        files.xDelete = remove;
        sqlite3_vfs_register(&files, 1);
    }

private:
    static inline sqlite3_vfs* original_ = nullptr;
    static inline sqlite3_io_methods methods_{};
    static inline const sqlite3_io_methods* plain_ = nullptr;
    static inline int victim_ = 0;
    static inline int* count_ = nullptr;
    static inline bool committing_ = false;

    static void step() {
        if (committing_ && (*count_)++ == victim_)
            std::raise(SIGKILL);
    }
    static int open(sqlite3_vfs*, const char* name, sqlite3_file* file, int flags, int* opened) {
        const int result = original_->xOpen(original_, name, file, flags, opened);
        if (result != SQLITE_OK)
            return result;
        committing_ = committing_ || (flags & SQLITE_OPEN_SUPER_JOURNAL) != 0;
        plain_ = file->pMethods;
        methods_ = *plain_;
        methods_.xWrite = [](sqlite3_file* to, const void* bytes, int size, sqlite3_int64 offset) {
            step();
            return plain_->xWrite(to, bytes, size, offset);
        };
        methods_.xTruncate = [](sqlite3_file* to, sqlite3_int64 size) {
            step();
            return plain_->xTruncate(to, size);
        };
        methods_.xSync = [](sqlite3_file* to, int how) {
            step();
            return plain_->xSync(to, how);
        };
        file->pMethods = &methods_;
        return SQLITE_OK;
    }
    static int remove(sqlite3_vfs*, const char* name, int sync) {
        step();
        return original_->xDelete(original_, name, sync);
    }
};
