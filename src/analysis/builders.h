#pragma once

#include "tables/TableBuilder.h"

#include <array>
#include <functional>

class AnalysisModel;

/// The table builder of each mode, in the order of AnalysisMode; empty for a mode whose tables this version
/// does not build. A builder finds `counts` and the labels (or the stored queries stat and stat2) ready and
/// fills the model's tables.
std::array<std::function<BuildOutcome(AnalysisModel&)>, 4> tableBuilders();
