#pragma once

#include "tables/ResultTable.h"

/// The selection in a table's grid: where it began and where it ended, in cells counted from 0.
struct GridSelection {
    int Row = 0, RowSel = 0, Col = 0, ColSel = 0;

    bool isOneCell() const { return Row == RowSel && Col == ColSel; }
};

enum class ClickEffect {
    None,
    Marked, ///< data rows changed between missing and valid
    Ask     ///< the questions of a new calculation are to come
};

/// What a selection means for the marks of a table, and does it. A selection from the first row below the head to the
/// last of the table (in a crosstab's mark row also: from the first column to the last) is what a click on the head
/// leaves: it only asks. Any other changes the mark of each data row or column in it.
ClickEffect clickTable(ResultTable& table, const GridSelection& selection);
