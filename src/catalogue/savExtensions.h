#pragma once

#include <QStringList>

/// What an SPSS system file holds that the survey reader passes over and a catalogue has no place for:
/// multiple response sets, variable sets, attributes; one line each, in the user's language. A file that is
/// not in order gives what was found so far; whether it is in order is for the survey reader to say.
QStringList savExtensions(const QString& path);

/// Name of the encoding that an SPSS system file gives in words, empty if it does not. It says more than the
/// number of a code page that the survey reader goes by.
QByteArray savEncodingName(const QString& path);
