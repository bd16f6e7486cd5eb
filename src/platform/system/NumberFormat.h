#pragma once

#include <QChar>
#include <QString>

/// The one number format of the process: what people see and type.
namespace NumberFormat {

/// The decimal separator in force, "," or ".": the locale's until it is set.
QChar decimalSeparator();
/// Sets it ("," or "."); tests and the command line do.
void setDecimalSeparator(QChar separator);

/// A number in a format with fixed decimals ("0", "0.0", "0.00"): rounded to nearest, half away from
/// zero on the decimal digits that the number has in 15 significant digits (so 2.675 in "0.00" is 2.68), no group
/// separators, "-0" never shows. @param decimals 0 to 15
QString fixed(double number, int decimals);

/// The language's plain form of a number: 15 significant digits, see digits().
QString plain(double number);

/// The plain form with a given separator: 15 significant digits (half away from zero), no trailing zeros, whole numbers
/// without a separator, from 1E+15 on and below 0.0001 as "1,5E+15", "1E-05". Zero is "0", whatever its sign.
QString digits(double number, QChar separator);

} // namespace NumberFormat
