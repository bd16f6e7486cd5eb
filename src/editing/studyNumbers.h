#pragma once

#include <QString>

/// Whether a study or group has the number already, in any study view, without regard to case.
bool isStudyNumberTaken(const QString& number);
/// Whether variables of the number are in the catalogue. A new study of that number would have them at once.
bool hasStudyVariables(const QString& number);
/// Why a new study or group cannot have a number, for the user; empty if it can.
QString whyNotStudyNumber(const QString& number);
