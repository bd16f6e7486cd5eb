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
    /// Hears of a percentage that cannot be computed, whose cell then stays empty; without it the standard
    /// error box asks. @param place the value and the head of the column
    std::function<void(const QString& place, const dao::Error& error)> onFailure;
    bool* marksKept = nullptr; ///< told whether the marks of the table before decide
};

/// Most values that a table takes.
constexpr int maxFrequencyRows = 25000;

/// Builds the frequency table: a header, one row per value in order of number (system-missing counts as 0),
/// "Summe", a blank row with SeparateValidCases, "Gültige Fälle". Percentages rest on the counts as
/// displayed, rounded to whole numbers.
///
/// With `bUserMissing` the table is the one built before from the same values, and the marks in its column 2
/// decide; a table that does not hold these values is built anew. A table that was completed leaves the flag
/// false. Warnings and failures are shown; see BuildOutcome.
BuildOutcome BuildFrequencyTable(ResultTable& table, const FrequencyInput& input, bool& bUserMissing);
