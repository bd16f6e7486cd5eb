#pragma once

#include <QString>

/// How a database file lies on disk at one moment: two unequal ones tell that it was written, replaced or removed
/// between. A transaction that is under way shows too, by its journal.
struct FileStamp {
    qint64 size = -1;    ///< in bytes; -1 where there is no file
    qint64 modified = 0; ///< in nanoseconds
    quint64 device = 0, inode = 0;
    quint32 changes = 0;                 ///< the file's own count of its commits
    bool journal = false;                ///< a journal with content lies beside it
    qint64 logSize = 0, logModified = 0; ///< of a write-ahead log, where the commits of a file in that mode lie

    bool operator==(const FileStamp&) const = default;
};

/// The stamp of the file at the path, a link's target in its place. Neither locks the file nor drops a lock on it.
FileStamp fileStamp(const QString& path);
