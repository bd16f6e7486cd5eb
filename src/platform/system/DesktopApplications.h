#pragma once

#include "platform/system/DesktopEntry.h"

#include <vector>

/// The applications that the desktop of the user has for a kind of file, by its own settings (mimeapps.list) and the
/// entries of the installed programs, as the specifications of freedesktop.org have it.
namespace DesktopApplications {

/// How those that can open a file are started with it, the one that the user has chosen first.
std::vector<ProgramStart> startsFor(const QString& path);

/// Starts the application that there is for a file, and does not wait for it.
/// @return false if there is none, or none of them can be started
bool open(const QString& path);

} // namespace DesktopApplications
