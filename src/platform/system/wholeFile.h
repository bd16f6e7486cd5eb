#pragma once

#include <QByteArray>
#include <QString>
#include <functional>

class QFileDevice;
class QIODevice;

/// Writes a file whole or not at all, piece by piece. What is there under that name and is no ordinary file, such as a
/// device, stays.
/// @param write writes it; with false the file stays away, and what was there under the name stays
/// @return the reason of a failure, in the system's words; empty on success, and where `write` has given up
QString saveWhole(const QString& path, const std::function<bool(QIODevice& to)>& write);
/// The same of bytes that are there.
/// @return the reason of a failure, in the system's words; empty on success
QString saveBytes(const QString& path, const QByteArray& content);

/// Writes all of some bytes. A disk that is full takes a part; only who goes on hears why.
bool writeAll(QIODevice& to, const char* bytes, qint64 size);
/// Brings what a file still has in memory to the disk. To be asked before it is closed, which takes a part for all.
bool flushAll(QFileDevice& file);
