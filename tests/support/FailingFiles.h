#pragma once

#include <algorithm>
#include <array>
#include <sqlite3.h>

/// SQLite's files of which certain writings fail, for databases that are opened while it lives.
class FailingFiles {
public:
    FailingFiles() {
        original_ = sqlite3_vfs_find(nullptr);
        files_ = *original_;
        files_.zName = "failing";
        files_.xOpen = open;
        victim_ = -1;
        sqlite3_vfs_register(&files_, 1);
    }
    ~FailingFiles() {
        sqlite3_vfs_unregister(&files_);
        sqlite3_vfs_register(original_, 1);
    }
    FailingFiles(const FailingFiles&) = delete;
    FailingFiles& operator=(const FailingFiles&) = delete;

    /// From now on the writing of that number fails, 0 for the next one, and with `forGood` all behind it.
    static void fail(int victim, bool forGood) {
        victim_ = victim;
        forGood_ = forGood;
        count_ = 0;
    }
    /// No writing fails any more. @return whether one has failed
    static bool mend() {
        const bool failed = victim_ >= 0 && count_ > victim_;
        victim_ = -1;
        return failed;
    }

private:
    static inline sqlite3_vfs* original_ = nullptr;
    static inline sqlite3_vfs files_{};
    /// A database and its journal have different methods.
    struct Methods {
        sqlite3_io_methods failing;
        const sqlite3_io_methods* plain;
    };
    static inline std::array<Methods, 8> methods_{};
    static inline int victim_ = -1, count_ = 0;
    static inline bool forGood_ = false;

    static int open(sqlite3_vfs*, const char* name, sqlite3_file* file, int flags, int* opened) {
        const int result = original_->xOpen(original_, name, file, flags, opened);
        if (result != SQLITE_OK)
            return result;
        for (Methods& one : methods_) {
            if (one.plain && one.plain != file->pMethods)
                continue;
            one = {*file->pMethods, file->pMethods};
            one.failing.xWrite = write;
            file->pMethods = &one.failing;
            break;
        }
        return SQLITE_OK;
    }
    static int write(sqlite3_file* to, const void* bytes, int size, sqlite3_int64 offset) {
        const int number = victim_ < 0 ? -2 : count_++;
        if (number == victim_ || (forGood_ && victim_ >= 0 && number > victim_))
            return SQLITE_FULL;
        const auto own = std::ranges::find(methods_, to->pMethods, [](const Methods& one) { return &one.failing; });
        return own->plain->xWrite(to, bytes, size, offset);
    }
};
