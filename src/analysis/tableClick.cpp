#include "analysis/tableClick.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

bool isMarked(const ResultTable& table, int row) {
    return table.Cell(markColumn, row) == "X"_L1;
}

} // namespace

int lastDataRow(const ResultTable& table, bool separateValidCases) {
    return std::max(0, table.Rows() - 3 - (separateValidCases ? 1 : 0));
}

ClickEffect clickTable(ResultTable& table, const GridSelection& selection, bool separateValidCases) {
    if (table.Tag != "Frequency"_L1 || selection.Col != markColumn || selection.ColSel != markColumn ||
        table.Cols() <= markColumn)
        return ClickEffect::None;
    if (selection.Row == 1 && selection.RowSel > 1)
        return ClickEffect::Ask;
    const auto [top, bottom] = std::minmax(selection.Row, selection.RowSel);
    const int last = std::min(bottom, lastDataRow(table, separateValidCases));
    for (int row = std::max(1, top); row <= last; ++row)
        table.setCell(markColumn, row, isMarked(table, row) ? u" "_s : u"X"_s);
    return std::max(1, top) <= last ? ClickEffect::Marked : ClickEffect::None;
}

std::vector<bool> marksOf(const ResultTable& table) {
    std::vector<bool> marks;
    if (table.Cols() <= markColumn)
        return marks;
    for (int row = 0; row < table.Rows(); ++row)
        marks.push_back(isMarked(table, row));
    return marks;
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
