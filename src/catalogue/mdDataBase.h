#pragma once

#include <QString>

/// Opening and closing of a catalogue with all that hangs on it.
namespace mdDataBase {

/// Opens a catalogue that the user chose. @return the state reached, 0 when nothing opened
qint16 OpenQXDatabase(const QString& file);
/// Opens the stored catalogue at start; a file that is gone is passed over silently.
qint16 OpenLastDataBase(const QString& file);
/// Closes what is open: links, catalogue, links of the work database, windows.
void CloseDataBase();
/// Called after each opening and closing; nothing hangs on it yet.
void CloseRc();
/// True if the path is not empty and a file is there.
bool fileExists(const QString& path);

bool GetDefaultDatabaseOptions();
bool GetDatabaseOptions();

}
