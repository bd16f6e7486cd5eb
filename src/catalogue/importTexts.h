#pragma once

#include "app/globals.h"
#include "catalogue/SurveyFile.h"

#include <QString>
#include <QStringList>

/// The code of a value label as `dt_Value` holds it: decimal point, 15 significant digits.
QString codeText(double code);
/// True if that text, read back, is the code itself: 15 digits are enough for it.
bool codeIsExact(double code);

/// What declared missing codes look like as a definition: up to three values, or a range and at most one
/// value; decimal comma, "lowest" and "highest". Empty when they do not fit.
QString missingDefinition(const std::vector<MissingRange>& missing);
/// True if all of a definition's numbers are exact.
bool definitionIsExact(const std::vector<MissingRange>& missing);

/// The message for a file whose head says another number of cases than lie in it.
QString countNotKept(qint64 saidCases, qint64 heldCases);

/// The string without trailing blanks.
int lengthWithoutTrailingBlanks(const char* text, int bytes);
