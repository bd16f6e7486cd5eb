#pragma once

#include "charts/ChartModel.h"

/// The colours that a chart gives its series by itself, in this order, and from the start again.
/// Neighbours differ in lightness, so that they also do in print without colours, and for people who see no red, no
/// green or no blue.
QRgb seriesColor(int series);
inline constexpr int seriesColors = 20;

/// How an item is drawn in the end, with what the model leaves to the chart.
struct DrawnStyle {
    int pattern = 0; ///< 1 to 14; 0: the colour
    int symbol = 15; ///< 0 to 15; 15: none
    QRgb color = 0xff000000;
};
/// @param item a category of a frequency, else a series
DrawnStyle drawnStyle(const ChartModel& model, int item);

/// The colours of what isn't data.
inline constexpr QRgb paperColor = 0xffffffff, inkColor = 0xff1a1a1a, quietColor = 0xff595959, gridColor = 0xffdedede;
