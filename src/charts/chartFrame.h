#pragma once

#include "charts/ChartLayout.h"
#include "charts/valueAxis.h"

#include <algorithm>

/// A chart while its plot is drawn: where its axes lie, and what its parts are put into.
struct ChartFrame {
    const ChartModel& model;
    ChartLayout& layout;
    ValueAxis axis;

    double pitch() const { return layout.plot.width() / std::max(model.categoryCount(), 1); }
    double x(int category) const { return layout.plot.left() + pitch() * (category + 0.5); }
    double y(double value) const { return layout.plot.bottom() - axis.place(value) * layout.plot.height(); }

    void line(const QPointF& from, const QPointF& to, QRgb color, double pen) {
        const bool upright = from.x() == to.x() || from.y() == to.y();
        layout.shapes.push_back({{{from, to}}, color, pen, upright});
    }
    void fill(const QRectF& area, QRgb color) {
        layout.shapes.push_back(
            {{{area.topLeft(), area.topRight(), area.bottomRight(), area.bottomLeft()}}, color, 0, true});
    }
};

/// A value as it is drawn.
struct ChartMark {
    int series, category;
    QRectF area;          ///< of the bar, or of the marker
    bool hanging = false; ///< its value stands below it
};
