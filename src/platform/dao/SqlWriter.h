#pragma once

#include "platform/dao/BoundExpression.h"

namespace dao {

/// SQLite text of an expression where its value is asked for: yes is -1, no is 0.
/// Texts are compared under the text collation, numbers by SQLite's own operators, and what may be either by
/// the functions of Functions.h. @throws Error 3360 when the text grows beyond all measure
QString writeValue(const BoundExpression& expression);

/// SQLite text of a condition, as WHERE, ON and HAVING take it: true is 1.
QString writeCondition(const BoundExpression& expression);

/// The value under the collation if it is a text, for GROUP BY, ORDER BY, DISTINCT and UNION. A value that
/// may be text or number is written as its key for grouping, and one that should be a number always: a text that
/// spells a number has its place among the numbers.
QString writeForGrouping(const BoundExpression& expression);
QString writeForOrder(const BoundExpression& expression);

/// The value as a field of the type stores it; how long a text may be is the table's own rule.
/// @throws Error 3464 for a text that can never become a number
QString writeForField(const BoundExpression& expression, const ColumnInfo& field);

} // namespace dao
