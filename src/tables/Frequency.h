#pragma once

#include "platform/dao/Error.h"
#include "platform/dao/Recordset.h"
#include "tables/ResultTable.h"
#include "tables/TableBuilder.h"

#include <functional>
#include <optional>

/// What a frequency table is made from.
struct FrequencyInput {
    /// One row per distinct value, in any order: field 0 the value (Null: system-missing), field 1 the number
    /// of cases or the sum of weights.
    dao::Recordset& counts;
    /// Labels of the variable, fields dt_Value and dt_Label.
    dao::Recordset& labels;
    std::optional<QString> dtMissing;

    bool CumulatedPercent = true;
    bool SeparateValidCases = true;
    bool CommaInPercent = true;
    bool AutoColWidth = true;
    TextWidth textWidth = estimatedTextWidth;
    /// Asked once per row while percentages are made; gives the user interface its turn. True ends the
    /// builder.
    std::function<bool()> cancelled;
    /// Called for a percentage that cannot be computed, whose cell then stays empty; without it the standard
    /// error box asks. @param place the value and the head of the column
    std::function<void(const QString& place, const dao::Error& error)> onFailure;
    /// Marks set by hand, which decide in place of the definition if they are of just these values; may be null.
    const Marks* marks = nullptr;
};

/// Most values that a table takes.
constexpr int maxFrequencyRows = 25000;

/// Builds the frequency table: a header, one row per value in order of number (system-missing counts as 0),
/// "Summe", a blank row with SeparateValidCases, "Gültige Fälle". Percentages rest on the counts as
/// displayed, rounded to whole numbers.
///
/// The table's `markedBy` says whether the marks of the input decided. A row that they mark keeps the cumulated percent
/// that it had. Warnings and failures are shown; see BuildOutcome.
BuildOutcome BuildFrequencyTable(ResultTable& table, const FrequencyInput& input);

/// Computes the cumulated percentages for the rows as they stand now, on the counts as displayed; those of values that
/// were missing when the table was made stay.
/// @param commaInPercent the option of that name that the table was made with
void cumulateAnew(ResultTable& table, bool commaInPercent);
