#pragma once

#include "tables/ResultTable.h"

#include <QStringList>

/// The rows of a table from one on, cells separated by "|".
inline QStringList linesOf(const ResultTable& table, int firstRow = 0) {
    QStringList lines;
    for (int row = firstRow; row < table.Rows(); ++row) {
        QStringList cells;
        for (int column = 0; column < table.Cols(); ++column)
            cells << table.Cell(column, row);
        lines << cells.join(QLatin1Char('|'));
    }
    return lines;
}
