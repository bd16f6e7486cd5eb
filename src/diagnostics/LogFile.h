#pragma once

#include <QString>

/// A log to which entries are only ever added, and which stays small all the same.
namespace LogFile {

constexpr qint64 mostBytes = 1024 * 1024;

/// Adds an entry of whole lines. A log that would grow beyond mostBytes keeps its newest lines, half of that at most (a
/// last line that is longer by itself stays whole). What cannot be written is left out without a message.
void append(const QString& path, const QString& entry);

} // namespace LogFile
