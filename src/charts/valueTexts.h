#pragma once

#include "charts/chartFrame.h"
#include "charts/chartType.h"

/// The type of the values at bars and points.
struct ValueType {
    double size = 0;
    bool upright = false; ///< reads upwards
};

/// Sizes and directions to try, best first.
std::vector<ValueType> valueTypes(const ChartModel& model, double factor);
/// What the plot must leave free above and below for values to stand there.
struct ValueMargins {
    double above = 0, below = 0;
};
ValueMargins valueMargins(const ChartFrame& frame, Typesetter& type, const ValueType& as);

/// Puts the value at every mark, or none if one would meet another, a bar or a line, or leave the page.
/// @return whether they are there
bool drawValues(ChartFrame& frame, Typesetter& type, const ValueType& as, const std::vector<ChartMark>& marks);
