#pragma once

#include <QStringList>

/// What a Stata file says in its characteristics and the survey reader passes over: notes on variables, label
/// languages, characteristics of other kinds; one line each, in the user's language. Formats before 105 have
/// none. Files that are not in order give nothing; whether a file is in order is for the survey reader to say.
QStringList dtaCharacteristics(const QString& path);
