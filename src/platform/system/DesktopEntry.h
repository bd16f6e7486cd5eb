#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QStringList>
#include <optional>

/// The groups of a file as desktops write them: "[Group]", "Key=Value", "#" for remarks. A key that stands twice in a
/// group counts the first time.
using KeyFile = QHash<QString, QHash<QString, QString>>;
KeyFile readKeyFile(const QByteArray& content);
/// The same from disk; empty where there is none, and for one that is larger than any real one.
KeyFile readKeyFile(const QString& path);

/// A program and what it is started with.
struct ProgramStart {
    QString program; ///< whole path
    QStringList arguments;
    QString folder; ///< to be started in; empty: anywhere
};

/// How an application that a desktop entry describes is started on a file, by the Desktop Entry Specification: quotes
/// and escapes of "Exec" and its field codes, so that the file's path or address is always one argument, or a part of
/// one, whatever it holds; no shell reads it.
/// @param path whole path of the file
/// @return nothing if the entry is hidden, describes no application, wants a terminal, is not well formed, or its
/// program
///         is not installed
std::optional<ProgramStart> startOf(const QString& entryFile, const QString& path);
