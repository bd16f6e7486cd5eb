#pragma once

#include "charts/ChartModel.h"

#include <vector>

/// The axis of the values: its ends, and where it is marked.
struct ValueAxis {
    double low = 0, high = 1;
    std::vector<double> ticks; ///< ascending, both ends among them
    QStringList labels;        ///< a text a tick
    double base = 0;           ///< where bars begin: at zero, or at the end that is nearest to it
    bool broken = false;       ///< zero isn't on it

    /// Place of a value from 0 (low) to 1 (high); beyond where the value lies beyond.
    double place(double value) const { return (value - low) / (high - low); }
    /// Whether the bar of a value goes down from the base.
    bool hangs(double value) const { return broken ? high < 0 : value < 0; }
};

/// Marks at steps of 1, 2 or 5 times a power of ten, zero always among them; or what the user has set. Percentages go
/// to 100 at most unless one of them is larger.
/// @param parts about how many steps there is room for
ValueAxis valueAxis(const ChartModel& model, int parts);

/// The value of a point; nothing where it is empty, or no number that can be drawn.
std::optional<double> drawnValue(const ChartPoint& point);
