#pragma once

#include "config/Options.h"
#include "tables/TableShape.h"

/// What a table was made with, as far as drawing, storing or printing it needs that: the request is not known there.
struct TableOrigin {
    Options options;                ///< of the run
    std::vector<StatedCases> cases; ///< N of the counts, whatever view of them is shown
};
