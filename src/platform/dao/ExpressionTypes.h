#pragma once

#include "platform/dao/BoundExpression.h"

namespace dao {

/// Sets type, domain and isCondition of an operation, function or aggregate whose arguments are bound.
/// @throws Error 3464 for operands that can never fit
void inferType(BoundExpression& expression);

/// Type of a column that holds values of both, as in IIf or a UNION: the wider number, Memo beside Text, Text
/// for number beside text.
int commonType(int a, int b);
Domain commonDomain(Domain a, Domain b);

/// @throws Error 3464 for a text where a condition is asked for
void requireCondition(const BoundExpression& expression);

} // namespace dao
