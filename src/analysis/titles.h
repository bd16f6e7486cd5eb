#pragma once

#include "analysis/AnalysisRequest.h"
#include "tables/ResultTable.h"

#include <optional>

struct Options;

/// The title of a result: what was asked, the N where the table has the sum that it means, weight and filter.
///
/// The N is read from the row (and column) that bears the sum's label, in its place at the table's end:
/// "Summe" or "Gültige Fälle" of a frequency table, "Summe" or "Gült. Summe" of a crosstab, "Count" of the
/// statistics. Where the table has none, "(N=" is left out.
QString resultTitle(const AnalysisRequest& request, const ResultTable& table, const Options& options);

/// Header of a comparison's column. @param entry with the weight and filter of its round
QString comparisonHeader(const ComparisonEntry& entry, const Options& options);

/// Where a crosstab's sums stand; -1 where there are none.
struct CrosstabSums {
    int column, row;
};
CrosstabSums crosstabSums(const ResultTable& table);

/// The numbers of cases that a table states, all of them and the valid ones; nothing for what it does not state.
struct StatedCases {
    std::optional<QString> all, valid;
};
/// @param column of an entry in a comparison
StatedCases statedCases(AnalysisMode mode, const ResultTable& table, int column = 0);
