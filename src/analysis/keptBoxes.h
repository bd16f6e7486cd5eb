#pragma once

#include <QString>

/// What the commands on what the catalogue keeps with a variable say and ask.

/// "Fehler", and why in the details. @param reason in the language in force
void tellFailure(const QString& reason = QString());
/// Asks before something kept is lost; Enter loses nothing. @param question in German
bool agreed(const QString& question);
