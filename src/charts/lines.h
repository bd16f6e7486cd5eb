#pragma once

#include "charts/chartFrame.h"

/// Where the points of lines lie; those beyond the axis aren't there.
std::vector<ChartMark> pointMarks(const ChartFrame& frame);
/// Lines from point to point, broken at empty points, cut where they leave the plot. A point between two gaps shows as
/// a dot where it has no marker.
void drawLines(ChartFrame& frame);
/// The pieces of the lines of a series, within the plot.
std::vector<QPolygonF> linePieces(const ChartFrame& frame, int series);
void drawLineSample(ChartFrame& frame, const QRectF& area, int series);
