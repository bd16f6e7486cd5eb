#include "analysis/result/tableClick.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/// A mark that a hand takes away leaves a blank.
QString otherMark(const QString& mark) {
    return isMark(mark) ? u" "_s : u"X"_s;
}

/// A selection along the marks: what it means for those of `data`.
/// @param whole what a click on the head selects, from the first row or column below it to the last of the table
template<class Toggle>
ClickEffect clickMarks(int begin, int end, std::pair<int, int> whole, const Span& data, Toggle&& toggle) {
    if (std::pair(begin, end) == whole && begin < end)
        return ClickEffect::Ask;
    const auto [low, high] = std::minmax(begin, end);
    const int from = std::max(data.first, low), to = std::min(data.last, high);
    for (int i = from; i <= to; ++i)
        toggle(i);
    return from <= to ? ClickEffect::Marked : ClickEffect::None;
}

} // namespace

ClickEffect clickTable(ResultTable& table, const GridSelection& selection) {
    if (table.Tag == TableKind::None || table.Tag == TableKind::Descriptives)
        return ClickEffect::None;
    const auto toggle = [&](int column, int row) { table.setCell(column, row, otherMark(table.Cell(column, row))); };
    if (selection.Col == markColumn && selection.ColSel == markColumn)
        return clickMarks(selection.Row, selection.RowSel, {table.FixedRows, table.Rows() - 1}, table.shape.rows,
                          [&](int row) { toggle(markColumn, row); });
    if (table.Tag == TableKind::Crosstab && selection.Row == markRow && selection.RowSel == markRow)
        return clickMarks(selection.Col, selection.ColSel, {table.FixedCols, table.Cols() - 1}, table.shape.columns,
                          [&](int column) { toggle(column, markRow); });
    return ClickEffect::None;
}
