#pragma once

#include <QString>

namespace dao {

/// Where a database file lies and how it can be opened, found out without opening it: closing a second handle on a
/// file would drop the locks that this process holds on it.
struct DatabaseLocation {
    QString path;     ///< absolute, as spelled on disk
    QString identity; ///< the same for two ways to one file
    quint64 device = 0;
    quint64 inode = 0;
    quint32 rights = 0; ///< with the kind of file, as the system gives them
    qint64 changed = 0; ///< when anything of the file, its rights included, last changed, in nanoseconds
    bool writable = false;

    /// @throws Error 3044 no such folder, 3024 no such file, 3051 no file or not to be read, 3343 an empty file
    static DatabaseLocation find(const QString& path);
    /// A place for a file that may not exist yet. @throws Error 3044, 3051
    static DatabaseLocation findNew(const QString& path);

    enum class Mode { ReadWrite, ReadWriteCreate, ReadOnly, Immutable };
    /// True when the path still leads to the same file, and neither its content nor its rights have changed. One
    /// question to the system, where finding everything out again takes a dozen.
    bool isUnchanged() const;

    /// Finds out again whether the file can be written, which depends on its folder too.
    void findWritable();

    /// The URI by which SQLite opens the file.
    QByteArray uri(Mode mode) const;
    /// True when nobody can have left unfinished work beside the file, so that it can be read without any lock.
    bool isQuiet() const;
    /// True for a file whose changes lie in a write-ahead log until they are taken over.
    bool isInWal() const;
};

} // namespace dao
