#pragma once

#include <QByteArray>
#include <QHash>
#include <QTemporaryFile>

/// What a report has read, in a temporary file that goes with the object: the memory holds no more than places in it.
class Spool {
public:
    /// Keeps some bytes. @return where they are; -1 where they cannot be kept, fault() says why
    qint64 put(const QByteArray& bytes);
    /// Keeps what a file holds; the same file, unchanged, is kept once. @return as put(); -1 also where it cannot be
    /// read
    qint64 putFile(const QString& path);
    /// The bytes at a place that put() gave; nothing where the file cannot be read any more.
    QByteArray get(qint64 place) const;
    /// Why something could not be kept, in the system's words; empty if nothing failed.
    const QString& fault() const { return fault_; }

private:
    mutable QTemporaryFile file_;
    qint64 end_ = 0;
    QString fault_;
    QHash<QString, qint64> files_;
};
