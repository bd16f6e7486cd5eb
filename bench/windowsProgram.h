#pragma once

#include <QString>

class frmMain;
class frmExplorer;

/// What the measurements of windows share: a person's settings, and the program as its processes run it.
namespace windowsProgram {

/// Makes a folder the application folder and the place of the settings, of this process and of those that it starts,
/// with the system database, and a catalogue as the last one that was open.
void prepareHome(const QString& folder, const QString& catalogue);

/// Starts as the program does, waits until the explorer of the catalogue is painted, then opens so many more explorers
/// with ten in all, prints the memory that is in use, and ends the process.
/// @param explorers 1, or as many as are to be open, the last on the topic
[[noreturn]] void run(int& argc, char** argv, int explorers);

/// The explorer that was opened last.
frmExplorer& explorerInFront();
/// Opens one of a view through the frame's command.
frmExplorer& openExplorer(frmMain& window, int view);

} // namespace windowsProgram
