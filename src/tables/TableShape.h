#pragma once

#include <QString>
#include <optional>
#include <vector>

/// What a table shows; every mode of an analysis makes one kind.
enum class TableKind { None, Frequency, Crosstab, Descriptives, Comparison };

/// A run of rows or columns, counted from 0; empty where `last` lies before `first`.
struct Span {
    int first = 0, last = -1;

    bool contains(int index) const { return index >= first && index <= last; }
    int count() const { return last < first ? 0 : last - first + 1; }
    bool operator==(const Span&) const = default;
};

/// The numbers of cases that a table states, all of them and the valid ones, as its cells show them; nothing for what
/// it does not state.
struct StatedCases {
    std::optional<QString> all, valid;
    bool operator==(const StatedCases&) const = default;
};

/// Where a table has what: its builder says so, and no reader finds it by the texts in the cells. An index is -1
/// where the table has no such row or column.
struct TableShape {
    Span rows, columns; ///< that hold data: values and what belongs to them
    int sumRow = -1, validRow = -1;
    int sumColumn = -1, validColumn = -1; ///< of a crosstab
    int nullRow = -1, nullColumn = -1;    ///< those of system-missing
    /// N of the table; a comparison has one for each entry, in the order of its columns.
    std::vector<StatedCases> cases{};

    /// N of the table, or that of the entry in a column of a comparison.
    StatedCases casesOf(int column = 0) const;
    /// After rows or columns were taken out. @param removed their indices before, ascending
    void rowsRemoved(const std::vector<int>& removed);
    void columnsRemoved(const std::vector<int>& removed);
    bool operator==(const TableShape&) const = default;
};
