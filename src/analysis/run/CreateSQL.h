#pragma once

#include "analysis/result/TableResult.h"
#include "analysis/run/RunInput.h"

/// A run: from a request to its tables, by the catalogue and the options that are given with it.
/// @param before what is shown; its tables stay where they show just this or where a check ends the run. An empty
/// ResultCacheKey in it makes the run compute in any case. Its marks are taken over where the request says so and they
/// are of the same values
/// @return tables, title, what they stand on, and how the run ended. Messages have been shown then
TableResult CreateSQL(const RunInput& input, TableResult before);
