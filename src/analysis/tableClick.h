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

/// The column of a frequency table that tells missing values, by "X".
constexpr int markColumn = 2;

/// Last row that holds a value of the variable; 0 without any.
int lastDataRow(const ResultTable& table, bool separateValidCases);
/// What a selection means for the marks of a table, and does it. A selection that begins in row 1 and reaches further is
/// what a click on the column's head leaves: it only asks.
ClickEffect clickTable(ResultTable& table, const GridSelection& selection, bool separateValidCases);
/// The rows that are marked as missing.
std::vector<bool> marksOf(const ResultTable& table);
/// Gives a completed table the blank row before the valid cases, or takes it away; its data rows stay.
void separateValidRow(ResultTable& table, bool separate);
