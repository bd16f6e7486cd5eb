#pragma once

#include "tables/ResultTable.h"

#include <QString>
#include <QStringList>
#include <vector>

/// A table as the text that other programs read: one writer for every place that exports tables.

/// The cells of a table, row by row.
std::vector<QStringList> tableRows(const ResultTable& table);
/// True for one number or more, with either separator, with a percent sign or in brackets.
bool isFigure(const QString& text);

/// The word by which text forms of a table name its kind: "Frequency", "Crosstab", "Descriptives", "Trend".
QString tagText(TableKind kind);

/// One cell in csv: quoted when it holds a comma, a quote or a line break.
QString csvCell(const QString& text);
/// Rows in csv (RFC 4180), each ended by CR LF.
QString csvText(const std::vector<QStringList>& rows);
/// The whole table as a grid's selection gives it: columns separated by tabs, rows by carriage returns.
QString clipText(const ResultTable& table);
/// The table as an HTML element, its title as the caption, fixed rows and columns as headings.
QString htmlTable(const QString& title, const ResultTable& table);
/// A whole page of it. @param notes lines of small type below
QString htmlPage(const QString& title, const ResultTable& table, const QStringList& notes);
