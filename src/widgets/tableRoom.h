#pragma once

#include "tables/ResultTable.h"

#include <QFont>
#include <QStringList>
#include <vector>

/// What a table needs of a window's room: which rows and columns say nothing, and how wide the others are to be.

/// Rows and columns of a table that are empty by the way the table is made, as long as nothing is marked or summed in
/// them: those of the marks without any, the sum that a view of percentages has not, spare ones. Indices as the table
/// has them.
struct IdleSections {
    std::vector<bool> rows, columns; ///< take no room
    /// The column and row of the marks have none yet, and can be given one: a narrow place to click at.
    bool narrowMarks = false, lowMarks = false;
};
/// @param columnOfMarks, rowOfMarks where marks can be set in this view, -1: nowhere
IdleSections idleSections(const ResultTable& table, int columnOfMarks, int rowOfMarks);

/// Most lines of one cell of a heading.
constexpr int mostHeadLines = 3;

/// A text in the lines that a width gives it. What goes beyond the last of them is cut, with an ellipsis.
QStringList headLines(const QString& text, const QFont& font, int width, int most = mostHeadLines);
/// The least width in which a text stands whole in so many lines.
int widthOfHead(const QString& text, const QFont& font, int most = mostHeadLines);

/// Shares free room out: each that wants more than it has gets as much as it wants, or an equal part of what there is.
/// @param wants what each lacks @return what each gets, no more in all than there is
std::vector<int> shareOut(int room, const std::vector<int>& wants);
