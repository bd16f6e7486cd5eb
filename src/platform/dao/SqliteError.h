#pragma once

#include "platform/dao/Connection.h"

namespace dao {

/// The engine's number for what SQLite refused.
int engineNumber(int extendedCode, Purpose purpose, const QString& message);
/// What the error's description names, taken from SQLite's message: the field of a broken rule, an unknown table.
QString engineDetail(int number, const QString& message);

/// Name of the rule that holds the size of a Text column; its breach is error 3163.
QString sizeRuleName(const QString& field);

} // namespace dao
