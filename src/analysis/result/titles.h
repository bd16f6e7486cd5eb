#pragma once

#include "analysis/request/AnalysisRequest.h"
#include "tables/ResultTable.h"

struct Options;

/// The title of a result: what was asked, the N where the table has the sum that it means, weight and filter.
///
/// N is that of all cases or of the valid ones, whichever the options make the base of the percentages; "Count" of the
/// statistics. Where the table states none, "(N=" is left out.
QString resultTitle(const AnalysisRequest& request, const ResultTable& table, const Options& options);

/// Header of a comparison's column. @param entry with the weight and filter of its round
QString comparisonHeader(const ComparisonEntry& entry, const Options& options);
/// The same for all columns without what all entries share; each head still tells its entry from the others, and where
/// nothing tells them apart it is the variable's name.
/// @param firstColumn of the entries; columns before it have an empty text
/// @return empty where nothing is shared or there is one entry only
std::vector<QString> shortHeads(const QList<ComparisonEntry>& entries, const Options& options, int firstColumn);
