#pragma once

#include <QByteArray>
#include <QString>

/// Writes a file whole or not at all. What is there under that name and is no ordinary file, such as a device, stays.
/// @return the reason of a failure, in the system's words; empty on success
QString saveBytes(const QString& path, const QByteArray& content);
