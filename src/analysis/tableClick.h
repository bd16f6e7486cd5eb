#pragma once

#include "tables/ResultTable.h"

#include <QStringList>

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

/// The column that tells the missing values of the rows, by "X", and the row of a crosstab that tells those of its
/// columns.
constexpr int markColumn = 2;
constexpr int markRow = 2;

/// Where a table has values that can be marked: rows and columns from `first` to `last`; columns in a crosstab only.
struct MarkArea {
    int firstRow = 1, lastRow = 0;
    int firstColumn = 3, lastColumn = 0;
};
/// The area of a table that was just made: the sums are known by their words in the language in force.
MarkArea markArea(const ResultTable& table, bool separateValidCases);
/// What a selection means for the marks of a table, and does it. A selection from the first row below the head to the
/// last of the table (in a crosstab's mark row also: from the first column to the last) is what a click on the head
/// leaves: it only asks. Any other changes the mark of each data row or column in it.
ClickEffect clickTable(ResultTable& table, const GridSelection& selection, const MarkArea& area);
/// What is marked as missing: by row, then in a crosstab by column.
std::vector<bool> marksOf(const ResultTable& table);
bool isMarkedRow(const ResultTable& table, int row);
bool isMarkedColumn(const ResultTable& table, int column);
/// The values that are marked, those without a value by their label.
QStringList markedRows(const ResultTable& table);
QStringList markedColumns(const ResultTable& table);
/// Gives a completed table the blank row before the valid cases, or takes it away; its data rows stay.
void separateValidRow(ResultTable& table, bool separate);
