#pragma once

#include "platform/dao/Recordset.h"
#include "tables/ResultTable.h"
#include "tables/TableBuilder.h"

#include <functional>
#include <optional>

/// What one column of a comparison is made from.
struct ComparisonInput {
    /// One row per distinct value: field 0 the value (Null: system-missing), field 1 the number of cases or the sum of
    /// weights.
    dao::Recordset& counts;
    /// Labels of the entry's variable, fields dt_Value and dt_Label.
    dao::Recordset& labels;
    std::optional<QString> dtMissing;
    /// Column of the table: number of the entry (from 1) + 2. Its header stands in row 0 already.
    int column = 3;

    bool HeaderValFirst = true;
    bool HeaderValAddVar = true;
    bool CommaInPercent = true;
    bool AutoColWidth = true;
    TextWidth textWidth = estimatedTextWidth;
    /// Marks set by hand, which decide in place of the definitions for the values that they hold; may be null.
    const Marks* marks = nullptr;
    /// Asked once per row; gives the user interface its turn. True ends the builder.
    std::function<bool()> cancelled;
};

/// Adds one entry's column to a comparison.
///
/// The table has a header row, one row per value over all entries in order of number, "Summe", "Gültige Fälle" and a
/// spare row; it comes in with 4 rows before the first entry. The first entry that brings a value decides its label and
/// mark; a note names the values that another entry labels otherwise. Totals are unrounded sums. `percent`
/// is made anew at each call: valid percent of every entry, from the counts as displayed. `absolute` becomes a copy of
/// `table`.
///
/// System-missing and an empty text have a row each. `table`'s `markedBy` says whether the marks of the input decided.
BuildOutcome BuildComparisonColumn(ResultTable& table, ResultTable& percent, ResultTable& absolute,
                                   const ComparisonInput& input);
