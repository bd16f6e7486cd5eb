#pragma once

#include <QString>

/// True for the words of a filter that are no variables: AND, OR and NOT, in any case.
inline bool isFilterOperator(const QString& word) {
    const QString upper = word.trimmed().toUpper();
    return upper == QLatin1String("AND") || upper == QLatin1String("OR") || upper == QLatin1String("NOT");
}

/// The characters that a name can begin with where it stands without brackets; behind them it may have digits.
inline bool beginsFilterName(QChar c) {
    return (c >= u'A' && c <= u'Z') || (c >= u'a' && c <= u'z') || c == u'_' || c == u'-';
}
inline bool isFilterDigit(QChar c) {
    return c >= u'0' && c <= u'9';
}
inline bool isInFilterName(QChar c) {
    return beginsFilterName(c) || isFilterDigit(c);
}

/// A variable's name as a filter has it: in square brackets where it could not be read without.
QString filterName(const QString& name);
/// A value as a filter has it: in quotes unless it is a number as numbers are written. A variable of texts may hold
/// "01", which is not the text of the number 1; numbers in quotes are still numbers to a variable of numbers.
QString filterValue(const QString& value);
