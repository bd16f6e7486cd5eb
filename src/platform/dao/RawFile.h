#pragma once

#include <QByteArray>
#include <QString>
#include <sqlite3.h>

namespace dao {

/// A database file opened past every connection, as bytes and locks, through SQLite's own layer of files: a descriptor
/// of one's own would, when it is closed, drop the locks that this process holds on the file.
class RawFile {
public:
    enum class Access { Read, ReadWrite };

    /// Waits for nothing and makes nothing. Anything but a regular file does not open, so that no pipe keeps it
    /// waiting.
    RawFile(const QString& path, Access access);
    ~RawFile();
    RawFile(const RawFile&) = delete;
    RawFile& operator=(const RawFile&) = delete;

    bool isOpen() const { return file_ != nullptr && file_->pMethods != nullptr; }
    /// Bytes of the file; empty when it has not that many there.
    QByteArray read(int size, qint64 offset) const;
    /// True if this or another process holds the lock of a writer.
    bool isBeingWritten() const;
    /// Takes the lock under which SQLite itself takes back what a killed process left. False when another holds one.
    bool lockAll();

private:
    const char* name_ = nullptr;
    sqlite3_file* file_ = nullptr;
};

} // namespace dao
