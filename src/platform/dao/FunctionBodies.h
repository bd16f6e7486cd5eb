#pragma once

#include "platform/dao/Value.h"

#include <QVarLengthArray>

namespace dao {

using Arguments = QVarLengthArray<Value, 3>;

/// What the language's functions compute, one C++ function each, for statements in SQLite and for conditions on rows
/// in memory alike. Null in gives Null out unless stated otherwise.
/// @throws Error 5 impossible argument, 6 overflow, 11 division by zero, 13 a text that is no number
namespace bodies {

Value like(const Arguments& a);
Value condition(const Arguments& a);
Value key(const Arguments& a);
Value text(const Arguments& a);
/// The text, if it is no longer than a field's size; behind it the size in code points and the field's name.
/// @throws Error 3163
Value fitting(const Arguments& a);
/// Any number of values; Null counts as empty text unless all are Null.
Value concat(const Arguments& a);

Value add(const Arguments& a);
Value subtract(const Arguments& a);
Value multiply(const Arguments& a);
Value divide(const Arguments& a);
Value divideWhole(const Arguments& a);
Value modulo(const Arguments& a);
Value power(const Arguments& a);
Value negate(const Arguments& a);

Value val(const Arguments& a);
Value toDouble(const Arguments& a);
Value toLong(const Arguments& a);
Value toInteger(const Arguments& a);
Value toBoolean(const Arguments& a);
Value floorOf(const Arguments& a);
Value truncated(const Arguments& a);
Value absolute(const Arguments& a);
Value sign(const Arguments& a);
Value squareRoot(const Arguments& a);
Value exponential(const Arguments& a);
Value logarithm(const Arguments& a);
/// Half to even, as the language rounds.
Value rounded(const Arguments& a);
Value isNumeric(const Arguments& a);

Value nz(const Arguments& a);
Value str(const Arguments& a);
Value trim(const Arguments& a);
Value trimLeft(const Arguments& a);
Value trimRight(const Arguments& a);
Value upper(const Arguments& a);
Value lower(const Arguments& a);
Value length(const Arguments& a);
Value character(const Arguments& a);
Value codePoint(const Arguments& a);
Value space(const Arguments& a);
Value left(const Arguments& a);
Value right(const Arguments& a);
Value mid(const Arguments& a);
Value inStr(const Arguments& a);
Value replace(const Arguments& a);

} // namespace bodies

} // namespace dao
