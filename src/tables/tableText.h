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

/// What parts the cells of csv: a semicolon where numbers are written with a comma, a comma else.
QChar csvSeparator();
/// Who reads csv: a spreadsheet would compute a text that begins like a formula, so it gets an apostrophe in front.
enum class CsvReader { Program, Spreadsheet };
/// One cell in csv: quoted when it holds a separator, a quote, a line break or the sign of a comment.
QString csvCell(const QString& text, CsvReader reader = CsvReader::Program);
/// Rows in csv (RFC 4180 but for the separator), each ended by CR LF.
QString csvText(const std::vector<QStringList>& rows, CsvReader reader = CsvReader::Program);
/// Lines about a table, for behind its cells: "# " in front of each, none broken.
QString csvComments(const QStringList& lines);
/// The whole table as a grid's selection gives it: columns separated by tabs, rows by carriage returns.
QString clipText(const ResultTable& table);
/// The table as an HTML element, its title as the caption, fixed rows and columns as headings.
/// @param notes lines of small type below
QString htmlTable(const QString& title, const ResultTable& table, const QStringList& notes = {});
/// A whole page of it.
QString htmlPage(const QString& title, const ResultTable& table, const QStringList& notes);
/// What the percentages of a table are of, in words at the beginning of a sentence; empty for one without.
QString percentWords(const ResultTable& table);
/// What a table of percentages is of, with the number of cases behind each 100 percent; empty for counts. In the
/// language in force.
QString percentBaseText(const ResultTable& table);
/// The groups of a table that have a label or are missing, in a sentence; empty without any.
QString groupsText(const ResultTable& table);
