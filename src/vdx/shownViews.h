#pragma once

#include "analysis/result/TableResult.h"

#include <array>
#include <string>

/// The views of a table in the order of cbValues, as they are called on the command line; a comparison has the first
/// two.
inline const std::array<std::string, 4> viewNames{"absolute", "column", "row", "total"};

/// Shows a view of a crosstab. @return its title: that of the table, with the view's own words behind it for
/// percentages
QString showCrosstabView(TableResult& result, int view);
