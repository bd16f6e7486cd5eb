#pragma once

#include <QString>

/// The words of a report in its own language, which stays as it was when the report was asked for.
/// @param german as the texts are kept @param language 1 German, 2 English
QString reportWord(const QString& german, int language);
