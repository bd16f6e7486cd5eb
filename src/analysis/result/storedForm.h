#pragma once

#include "analysis/result/TableResult.h"
#include "tables/StoredTable.h"

/// The table that a result shows, as it is kept with its variable. Of a complete table only: result.facts are needed.
/// @param view of a crosstab, as in cbValues
StoredTable storedTableOf(const TableResult& result, int view);
