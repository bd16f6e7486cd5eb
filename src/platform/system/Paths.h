#pragma once

#include <QString>
#include <QStringList>

/// Where files lie, and the one way to join and take apart paths. Descriptions write a backslash; both
/// separators are read on any system and the native one is written.
namespace Paths {

/// Folder and name joined by one native separator; an empty folder gives the name.
QString join(const QString& folder, const QString& name);
/// Every separator made native; a Windows drive of a path that came from elsewhere stays as text.
QString native(const QString& path);
/// What stands before the last separator, "" if there is none.
QString folderOf(const QString& path);
/// What stands behind the last separator.
QString fileOf(const QString& path);
/// A text as the name of a file, without its extension: what some file system refuses becomes "_", points and blanks at
/// its ends go, and it is no longer than 150 bytes. "" if nothing is left.
QString asFileName(const QString& text);

/// The directory test: true when the path is not empty, a file or folder of that name is there (the name
/// compared as the file system does, then without regard to case), and no error came up.
bool exists(const QString& path);
/// The path as it is spelled on disk when it differs only in case; the path itself otherwise.
QString onDisk(const QString& path);
/// The same with links followed, so that what lies beside a file is looked for beside the file itself.
QString resolved(const QString& path);

/// The file of that name, with either separator, below a folder as it is spelled on disk, links followed. Names are
/// found without regard to case. Empty where there is no such file, and for one that lies outside the folder, whether
/// the name leads there or a link does.
QString fileWithin(const QString& folder, const QString& name);

/// Folder of what the program makes for the user: VARIDEX_HOME if set, else the platform's.
QString userDataFolder();
/// Application folder: VARIDEX_HOME if set, else the program's own folder when it may be written, else the user's data
/// folder (prepared from the installed files when it is first needed), else the installed files' own folder, which can
/// only be read. Never ends in a separator.
QString applicationFolder();
/// The rule behind it, for a program in `programFolder`: the user's folder is taken, and given the files that it lacks,
/// when the program is installed (its files lie in "../share/varidex") or its own folder, from which they come then,
/// may not be written. Where they cannot be put into the user's folder, the one they come from is taken.
QString chooseApplicationFolder(const QString& programFolder, const QString& userFolder);
/// Forgets what applicationFolder() found; for tests that change the environment.
void resetApplicationFolder();
/// Folder of the registry stand-in's hives: VARIDEX_CONFIG for both if set, else the platform's.
QString userConfigFolder();
QString machineConfigFolder();

} // namespace Paths
