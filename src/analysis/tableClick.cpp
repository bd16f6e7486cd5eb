#include "analysis/tableClick.h"

#include "analysis/titles.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int crosstabFirst = 3;

bool isCrosstab(const ResultTable& table) {
    return table.Tag == "Crosstab"_L1;
}

bool hasMarkColumn(const ResultTable& table) {
    return table.Cols() > markColumn && (isCrosstab(table) || table.Tag == "Frequency"_L1 || table.Tag == "Trend"_L1);
}

QString otherMark(bool marked) {
    return marked ? u" "_s : u"X"_s;
}

/// A selection along the marks: what it means for those from `first` to `last`.
/// @param whole what a click on the head selects, from the first row or column below it to the last of the table
template<class Toggle>
ClickEffect clickMarks(int begin, int end, std::pair<int, int> whole, int first, int last, Toggle&& toggle) {
    if (std::pair(begin, end) == whole && begin < end)
        return ClickEffect::Ask;
    const auto [low, high] = std::minmax(begin, end);
    const int from = std::max(first, low), to = std::min(high, last);
    for (int i = from; i <= to; ++i)
        toggle(i);
    return from <= to ? ClickEffect::Marked : ClickEffect::None;
}

} // namespace

MarkArea markArea(const ResultTable& table, bool separateValidCases) {
    if (!hasMarkColumn(table))
        return {};
    if (isCrosstab(table)) {
        const auto [column, row] = crosstabSums(table);
        return {.firstRow = crosstabFirst, .lastRow = row - 1, .firstColumn = crosstabFirst, .lastColumn = column - 1};
    }
    const int below = table.Tag == "Trend"_L1 ? 4 : separateValidCases ? 4 : 3;
    return {.firstRow = 1, .lastRow = std::max(0, table.Rows() - below)};
}

bool isMarkedRow(const ResultTable& table, int row) {
    return hasMarkColumn(table) && row < table.Rows() && table.Cell(markColumn, row) == "X"_L1;
}

bool isMarkedColumn(const ResultTable& table, int column) {
    return isCrosstab(table) && table.Rows() > markRow && column < table.Cols() &&
           table.Cell(column, markRow) == "X"_L1;
}

ClickEffect clickTable(ResultTable& table, const GridSelection& selection, const MarkArea& area) {
    if (!hasMarkColumn(table))
        return ClickEffect::None;
    if (selection.Col == markColumn && selection.ColSel == markColumn)
        return clickMarks(selection.Row, selection.RowSel, {table.FixedRows, table.Rows() - 1}, area.firstRow,
                          area.lastRow,
                          [&](int row) { table.setCell(markColumn, row, otherMark(isMarkedRow(table, row))); });
    if (isCrosstab(table) && selection.Row == markRow && selection.RowSel == markRow)
        return clickMarks(
            selection.Col, selection.ColSel, {table.FixedCols, table.Cols() - 1}, area.firstColumn, area.lastColumn,
            [&](int column) { table.setCell(column, markRow, otherMark(isMarkedColumn(table, column))); });
    return ClickEffect::None;
}

std::vector<bool> marksOf(const ResultTable& table) {
    std::vector<bool> marks;
    for (int row = 0; hasMarkColumn(table) && row < table.Rows(); ++row)
        marks.push_back(isMarkedRow(table, row));
    for (int column = 0; isCrosstab(table) && column < table.Cols(); ++column)
        marks.push_back(isMarkedColumn(table, column));
    return marks;
}

QStringList markedRows(const ResultTable& table) {
    QStringList values;
    for (int row = 1; row < table.Rows(); ++row)
        if (isMarkedRow(table, row))
            values << (table.Cell(0, row).isEmpty() ? table.Cell(1, row) : table.Cell(0, row));
    return values;
}

QStringList markedColumns(const ResultTable& table) {
    QStringList values;
    for (int column = 1; column < table.Cols(); ++column)
        if (isMarkedColumn(table, column))
            values << (table.Cell(column, 0).isEmpty() ? table.Cell(column, 1) : table.Cell(column, 0));
    return values;
}

void separateValidRow(ResultTable& table, bool separate) {
    const int rows = table.Rows();
    if (rows < 3)
        return;
    if (separate) {
        table.setRows(rows + 1);
        table.swapRows(rows - 1, rows);
    } else {
        table.swapRows(rows - 2, rows - 1);
        table.setRows(rows - 1);
    }
}
