#pragma once

#include "tables/ResultTable.h"

#include <optional>

/// What a stored text is where making it has failed.
inline const QString storedFailure = QStringLiteral("Fehler");

/// A table as it is kept with its variable: its cells as they are, without its shape, its notes and its marks' meaning.
struct StoredTable {
    QString title;                         ///< of one that was read what stands in front of its first quote
    TableKind kind = TableKind::Frequency; ///< a comparison is kept as a frequency
    /// The view of a crosstab: 0 "absolute Werte", 1 "Spaltenprozente", 2 "Zeilenprozente", 3 "Gesamtprozente".
    int values = 0;
    QString nFlag; ///< of a crosstab: empty, "N" or "NFirst"
    ResultTable table;
    QString weight; ///< name of the weight variable; empty for none
};

/// The word by which a stored text names the kind of its table: "Freq", "Xtab" or "Desc".
QString storedKind(TableKind kind);
/// The words for the view of a crosstab, in German as the texts are kept; empty for another table.
QString storedViewWords(const StoredTable& stored);
/// Where a table that was read is only looked at, a crosstab's codes and labels stand fixed: two rows and two columns,
/// as far as it has them. Others keep their one.
void fixHeads(StoredTable& stored);

/// The text form of a table, without its layout; "Fehler" for a table without a cell, and for one with a weight of a
/// name that it cannot hold (with ";", or a quote in front).
QString BuildTableString(const StoredTable& stored);
/// The text form of its widths, heights (twips) and alignments.
QString BuildTableLayoutString(const ResultTable& table);

/// A table from both texts; nothing where the first is damaged in any way. An empty layout leaves the widths that a
/// table has by itself, a damaged one stops where the damage is. One fixed row, one fixed column.
std::optional<StoredTable> readStoredTable(const QString& text, const QString& layout);
/// Sets the widths, heights and alignments of a layout. What a table of another size has no place for is left out; an
/// alignment of 0 leaves a cell as it is. @return false where the layout ended too early or was of another size
bool layLayoutOn(ResultTable& table, const QString& layout);
