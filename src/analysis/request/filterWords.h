#pragma once

#include <QString>

/// True for the words of a filter that are no variables: AND, OR and NOT, in any case.
inline bool isFilterOperator(const QString& word) {
    const QString upper = word.trimmed().toUpper();
    return upper == QLatin1String("AND") || upper == QLatin1String("OR") || upper == QLatin1String("NOT");
}
