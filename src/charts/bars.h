#pragma once

#include "charts/chartFrame.h"

/// Where the bars of a chart lie, as far as they lie in the plot; a bar of height 0 is there, an empty point isn't.
std::vector<ChartMark> barMarks(const ChartFrame& frame);
void drawBars(ChartFrame& frame, const std::vector<ChartMark>& marks);
/// A rectangle filled as an item is, with the outline that bars have.
void drawFilled(ChartFrame& frame, const QRectF& area, int item, double scale);
/// How fine the patterns of a chart are.
double barPatternScale(const ChartFrame& frame);
/// A break in the axis, and in the bars that cross it, where zero isn't on the axis; and one near the end of each bar
/// that goes beyond the axis.
void drawBreak(ChartFrame& frame, const std::vector<ChartMark>& bars);
