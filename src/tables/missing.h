#pragma once

#include <QString>

#include "platform/dao/Value.h"

/// True when the value falls under a missing-value definition ("9", "8;9", "7;8;9", "90 thru 99", "90 thru 99;0", with "lowest"
/// and "highest" as bounds). The caller has seen that the value is numeric and not Null. An empty definition is false.
/// @throws dao::Error 13 for a piece that is no number, 5 for a separator in front of "thru"
bool IsMissing(const dao::Value& value, const QString& missingText);

/// The condition that is true for valid values; empty for an empty definition. Bare bounds: the caller brackets the whole.
/// @throws as IsMissing()
QString MissingToSql(const QString& fieldExpression, const QString& missingText);
