#pragma once

#include <QString>

/// Opening and closing of a catalogue with all that depends on it.
namespace mdDataBase {

/// Opens a catalogue that the user chose; a file that is none is refused in words that say what it is.
/// @return the state reached, 0 when nothing opened
/// @param readOnly  true for one in which nothing is to be written
qint16 OpenQXDatabase(const QString& file, bool readOnly = false);
/// Opens the stored catalogue at start; a file that is gone is passed over silently, one that is no catalogue refused.
qint16 OpenLastDataBase(const QString& file);
/// Closes what is open: links, catalogue, links of the work database, windows.
void CloseDataBase();
/// Called after each opening and closing; nothing depends on it yet.
void CloseRc();
/// True if the path is not empty and a file is there.
/// Tells that there is no such file.
void reportMissingFile(const QString& file);

bool fileExists(const QString& path);

/// The one view and the switches of a catalogue that has no options of its own. @return true
bool GetDefaultDatabaseOptions();
/// Reads `tsys_Options` into gCatalogueOptions, gViews and gOptions.EnglishLanguage; views without a name or
/// a table are left out and the following ones move up. Failures are reported. @return true
bool GetDatabaseOptions();

} // namespace mdDataBase
