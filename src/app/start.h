#pragma once

#include <QString>
#include <QtGlobal>
#include <functional>
#include <optional>

struct Options;

/// From the start of the process to the open catalogue, and its stop; windows are asked for through hooks
/// only.
namespace Main {

/// Text table, options, error handler, language, and the start window if one is set
/// (mdLanguage::showStartWindow).
void StartServices();

/// Opens the catalogue that the settings name; the names are read from them again first.
/// @return the state reached, 1 open; 0 also when the settings name none
///
/// One at which the last start ended, a crash or a kill while it opened, is asked for first: it must not lock its user
/// out. Until reopened() it counts as being opened.
qint16 OpenDefDB();
void reopened();

/// Makes a catalogue that was opened the one to open at the next start, unless the options hold to another.
void rememberCatalogue(const QString& file);

/// Takes the folder of a catalogue that the program has made as that of the case data, where none is set: it has put
/// them there.
void proposeDataFolder(const QString& catalogue);
/// Sets a folder that is not set yet, and keeps it; one that is not there is none.
void proposeFolder(QString Options::*path, const QString& folder);

/// Runs a step of the main window's opening: a path that is not valid (3044) gets a box of its own, every other failure
/// the standard error box. @return false if the opening is to be left
bool openingStep(const std::function<void()>& step);

/// Place of the main window in twips.
struct WindowPlace {
    int left = 0, top = 0, width = 0, height = 0;
    bool maximised = false; ///< the place is then the one to go back to
};
/// The stored place; what is not stored is 0 for the corner and nine tenths of the screen for the size.
WindowPlace StoredPlace(int screenWidth, int screenHeight);

/// What is done when the main window unloads: place and contents switch are stored, the catalogue is closed.
/// @param place nothing for a minimised window, which leaves both as they were stored before
void Stop(const std::optional<WindowPlace>& place);

} // namespace Main
