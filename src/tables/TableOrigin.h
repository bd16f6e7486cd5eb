#pragma once

#include "config/Options.h"
#include "tables/TableShape.h"

/// What a table was made with, as far as those need it who draw, store or print it: the request itself is not theirs.
struct TableOrigin {
    Options options;                ///< of the run
    std::vector<StatedCases> cases; ///< N of the counts, whatever view of them is shown
};
