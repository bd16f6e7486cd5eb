#include "charts/bars.h"

#include "charts/palette.h"
#include "charts/patterns.h"

#include <cmath>

namespace {

constexpr double widestBar = 22; ///< millimetres; two bars needn't fill a page
constexpr double outlinePen = 0.2;
constexpr double thinnestPattern = 0.2; ///< a bar that is narrower shows nothing of one
constexpr double breakHeight = 0.9, breakRise = 1.2, breakFromEnd = 2.4;

double barWidth(const ChartFrame& frame) {
    const int series = std::max(frame.model.seriesCount(), 1);
    return std::min(frame.pitch() * (series == 1 ? 0.68 : 0.82) / series, widestBar);
}

QPolygonF corners(const QRectF& area) {
    return {area.topLeft(), area.topRight(), area.bottomRight(), area.bottomLeft()};
}

/// Along the inside of an area, so that the area stays as large as it is.
ChartShape outline(const QRectF& area, double pen, QRgb color) {
    const double inset = pen / 2;
    const QRectF path = area.adjusted(inset, inset, -inset, -inset);
    return {
        {{path.topLeft(), path.topRight(), path.bottomRight(), path.bottomLeft(), path.topLeft()}}, color, pen, true};
}

/// Too light to stand on white by itself.
bool needsOutline(QRgb color) {
    return 0.2126 * qRed(color) + 0.7152 * qGreen(color) + 0.0722 * qBlue(color) > 200;
}

QPolygonF breakBand(double middle, double left, double right, double rise) {
    return {{left, middle + rise / 2 - breakHeight / 2},
            {right, middle - rise / 2 - breakHeight / 2},
            {right, middle - rise / 2 + breakHeight / 2},
            {left, middle + rise / 2 + breakHeight / 2}};
}

/// Whether the axis that a user has set ends before the bar does.
bool goesBeyond(const ChartFrame& frame, const ChartMark& bar) {
    const std::vector<ChartPoint>& points = frame.model.values[static_cast<size_t>(bar.series)];
    const std::optional<double> value = drawnValue(points[static_cast<size_t>(bar.category)]);
    return value && (bar.hanging ? *value < frame.axis.low : *value > frame.axis.high);
}

} // namespace

std::vector<ChartMark> barMarks(const ChartFrame& frame) {
    const ChartModel& model = frame.model;
    const double width = barWidth(frame), group = width * model.seriesCount();
    const QRectF& plot = frame.layout.plot;
    const auto inPlot = [&](double y) { return std::clamp(y, plot.top(), plot.bottom()); };
    std::vector<ChartMark> marks;
    for (int s = 0; s < model.seriesCount() && s < static_cast<int>(model.values.size()); ++s) {
        const std::vector<ChartPoint>& points = model.values[static_cast<size_t>(s)];
        for (int c = 0; c < model.categoryCount() && c < static_cast<int>(points.size()); ++c) {
            const std::optional<double> value = drawnValue(points[static_cast<size_t>(c)]);
            if (!value)
                continue;
            const double base = inPlot(frame.y(frame.axis.base)), end = inPlot(frame.y(*value));
            const double left = frame.x(c) - group / 2 + width * s;
            marks.push_back(
                {s, c, QRectF(left, std::min(base, end), width, std::abs(base - end)), frame.axis.hangs(*value)});
        }
    }
    return marks;
}

double barPatternScale(const ChartFrame& frame) {
    return patternScale(barWidth(frame));
}

void drawFilled(ChartFrame& frame, const QRectF& area, int item, double scale) {
    const DrawnStyle style = drawnStyle(frame.model, item);
    // A thin bar is all outline unless that gets thin with it.
    const double pen = std::min({outlinePen, area.width() / 8, area.height() / 2});
    if (style.pattern == 0) {
        frame.fill(area, style.color);
        if (needsOutline(style.color))
            frame.layout.shapes.push_back(outline(area, pen, quietColor));
        return;
    }
    const QRectF shown = area.width() > thinnestPattern ? area : QRectF();
    PatternFill pattern = patternFill(style.pattern, shown, scale);
    frame.fill(area, pattern.darkGround ? 0xff000000 : paperColor);
    if (!pattern.shapes.empty())
        frame.layout.shapes.push_back(
            {std::move(pattern.shapes), pattern.darkGround ? paperColor : 0xff000000, 0, style.pattern < 13});
    frame.layout.shapes.push_back(outline(area, pen, 0xff000000));
}

void drawBars(ChartFrame& frame, const std::vector<ChartMark>& marks) {
    const bool frequency = frame.model.kind == TableKind::Frequency;
    const double scale = barPatternScale(frame);
    for (const ChartMark& mark : marks) {
        if (mark.area.height() > 0)
            drawFilled(frame, mark.area, frequency ? mark.category : mark.series, scale);
        // One that is hardly to be seen can be pointed at all the same.
        const double missing = std::max(0.0, 2.5 - mark.area.height());
        const QRectF area = mark.area.adjusted(0, mark.hanging ? 0 : -missing, 0, mark.hanging ? missing : 0);
        frame.layout.hits.push_back({corners(area), mark.series, mark.category});
    }
}

void drawBreak(ChartFrame& frame, const std::vector<ChartMark>& bars) {
    const QRectF& plot = frame.layout.plot;
    const double top = plot.top() + breakFromEnd, bottom = plot.bottom() - breakFromEnd;
    const double atBase = frame.axis.high < 0 ? top : bottom;
    const auto part = [&](const ChartMark& bar, double middle) {
        const double rise = std::min(breakRise, bar.area.width() * 0.4);
        if (bar.area.height() > breakFromEnd + breakHeight + breakRise)
            frame.layout.shapes.push_back(
                {{breakBand(middle, bar.area.left() - 0.05, bar.area.right() + 0.05, rise)}, paperColor});
    };
    for (const ChartMark& bar : bars) {
        if (frame.axis.broken)
            part(bar, atBase);
        // Bars that the axis cuts would look alike, whatever their values.
        if (goesBeyond(frame, bar))
            part(bar, bar.hanging ? bottom : top);
    }
    if (!frame.axis.broken)
        return;
    const QPolygonF gap = breakBand(atBase, plot.left() - 1.2, plot.left() + 1.2, breakRise);
    frame.layout.shapes.push_back({{gap}, paperColor});
    frame.layout.shapes.push_back({{{gap[0], gap[1]}, {gap[3], gap[2]}}, inkColor, 0.25});
}
