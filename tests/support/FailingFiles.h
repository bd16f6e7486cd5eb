#pragma once

#include <algorithm>
#include <array>
#include <sqlite3.h>

/// SQLite's files of which certain steps fail, for databases that are opened while it lives. Nothing is made sure on
/// the disk, since no test takes the power away.
class FailingFiles {
public:
    enum class Steps { Writings, All }; ///< all that change a file: writing, cutting off, making sure, removing

    FailingFiles() {
        original_ = sqlite3_vfs_find(nullptr);
        files_ = *original_;
        files_.zName = "failing";
        files_.xOpen = open;
        files_.xDelete = remove;
        victim_ = -1;
        sqlite3_vfs_register(&files_, 1);
    }
    ~FailingFiles() {
        sqlite3_vfs_unregister(&files_);
        sqlite3_vfs_register(original_, 1);
    }
    FailingFiles(const FailingFiles&) = delete;
    FailingFiles& operator=(const FailingFiles&) = delete;

    /// From now on the step of that number fails, 0 for the next one, and with `forGood` all behind it.
    static void fail(int victim, bool forGood, Steps steps = Steps::Writings) {
        victim_ = victim;
        forGood_ = forGood;
        steps_ = steps;
        count_ = 0;
    }
    /// No step fails any more. @return whether one has failed
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
    static inline Steps steps_ = Steps::Writings;

    static bool fails(Steps kind) {
        if (victim_ < 0 || (kind == Steps::All && steps_ == Steps::Writings))
            return false;
        const int number = count_++;
        return number == victim_ || (forGood_ && number > victim_);
    }
    static const sqlite3_io_methods& plain(sqlite3_file* of) {
        return *std::ranges::find(methods_, of->pMethods, [](const Methods& one) { return &one.failing; })->plain;
    }
    static int open(sqlite3_vfs*, const char* name, sqlite3_file* file, int flags, int* opened) {
        const int result = original_->xOpen(original_, name, file, flags, opened);
        if (result != SQLITE_OK)
            return result;
        for (Methods& one : methods_) {
            if (one.plain && one.plain != file->pMethods)
                continue;
            one = {*file->pMethods, file->pMethods};
            one.failing.xWrite = [](sqlite3_file* to, const void* bytes, int size, sqlite3_int64 offset) {
                return fails(Steps::Writings) ? SQLITE_FULL : plain(to).xWrite(to, bytes, size, offset);
            };
            one.failing.xTruncate = [](sqlite3_file* of, sqlite3_int64 size) {
                return fails(Steps::All) ? SQLITE_IOERR_TRUNCATE : plain(of).xTruncate(of, size);
            };
            one.failing.xSync = [](sqlite3_file*, int) { return fails(Steps::All) ? SQLITE_IOERR_FSYNC : SQLITE_OK; };
            file->pMethods = &one.failing;
            break;
        }
        return SQLITE_OK;
    }
    static int remove(sqlite3_vfs*, const char* name, int) {
        return fails(Steps::All) ? SQLITE_IOERR_DELETE : original_->xDelete(original_, name, 0);
    }
};
