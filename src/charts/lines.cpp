#include "charts/lines.h"

#include "charts/palette.h"
#include "charts/symbols.h"

#include <QLineF>

namespace {

constexpr double linePen = 0.5, loneDot = 1.4, reach = 1.6;
constexpr double rounding = 1e-6; ///< a value at the end of the axis is on it

/// Points of a series one after the other, broken where one is empty.
std::vector<std::vector<std::pair<int, QPointF>>> runs(const ChartFrame& frame, int series) {
    std::vector<std::vector<std::pair<int, QPointF>>> found;
    const auto& values = frame.model.values;
    if (series >= static_cast<int>(values.size()))
        return found;
    const std::vector<ChartPoint>& points = values[static_cast<size_t>(series)];
    bool open = false;
    for (int c = 0; c < frame.model.categoryCount() && c < static_cast<int>(points.size()); ++c) {
        const std::optional<double> value = drawnValue(points[static_cast<size_t>(c)]);
        if (value && !open)
            found.emplace_back();
        open = value.has_value();
        if (value)
            found.back().push_back({c, {frame.x(c), frame.y(*value)}});
    }
    return found;
}

/// The part of a line between two heights; nothing of it may be there.
std::optional<QLineF> between(QLineF line, double top, double bottom) {
    const auto cut = [&line](double y, bool below) {
        const auto outside = [&](const QPointF& p) { return below ? p.y() > y + rounding : p.y() < y - rounding; };
        if (outside(line.p1()) && outside(line.p2()))
            return false;
        const auto crossing = [&] {
            return QPointF(line.x1() + (y - line.y1()) / (line.y2() - line.y1()) * (line.x2() - line.x1()), y);
        };
        if (outside(line.p1()))
            line.setP1(crossing());
        else if (outside(line.p2()))
            line.setP2(crossing());
        return true;
    };
    if (!cut(top, false) || !cut(bottom, true))
        return std::nullopt;
    return line;
}

bool isOnPlot(const ChartFrame& frame, const QPointF& point) {
    const QRectF& plot = frame.layout.plot;
    return point.y() >= plot.top() - rounding && point.y() <= plot.bottom() + rounding;
}

} // namespace

std::vector<QPolygonF> linePieces(const ChartFrame& frame, int series) {
    const QRectF& plot = frame.layout.plot;
    std::vector<QPolygonF> pieces;
    for (const auto& run : runs(frame, series)) {
        QPolygonF piece;
        for (size_t i = 1; i < run.size(); ++i) {
            const std::optional<QLineF> part = between({run[i - 1].second, run[i].second}, plot.top(), plot.bottom());
            if (!part || piece.isEmpty() || piece.last() != part->p1()) {
                if (piece.size() > 1)
                    pieces.push_back(piece);
                piece.clear();
            }
            if (part && piece.isEmpty())
                piece << part->p1();
            if (part)
                piece << part->p2();
        }
        if (piece.size() > 1)
            pieces.push_back(piece);
    }
    return pieces;
}

std::vector<ChartMark> pointMarks(const ChartFrame& frame) {
    std::vector<ChartMark> marks;
    for (int s = 0; s < frame.model.seriesCount(); ++s) {
        const bool marker = drawnStyle(frame.model, s).symbol != noSymbol;
        const double half = (marker ? symbolSize * 1.2 : linePen) / 2;
        for (const auto& run : runs(frame, s))
            for (const auto& [category, at] : run)
                if (isOnPlot(frame, at))
                    marks.push_back({s, category, QRectF(at.x() - half, at.y() - half, 2 * half, 2 * half)});
    }
    return marks;
}

void drawLines(ChartFrame& frame) {
    for (int s = 0; s < frame.model.seriesCount(); ++s) {
        const DrawnStyle style = drawnStyle(frame.model, s);
        if (std::vector<QPolygonF> pieces = linePieces(frame, s); !pieces.empty())
            frame.layout.shapes.push_back({std::move(pieces), style.color, linePen});
        for (const auto& run : runs(frame, s)) {
            for (const auto& [category, at] : run) {
                if (!isOnPlot(frame, at))
                    continue;
                for (ChartShape& shape : symbolShapes(style.symbol, at, style.color))
                    frame.layout.shapes.push_back(std::move(shape));
                if (style.symbol == noSymbol && run.size() == 1)
                    frame.layout.shapes.push_back(dotShape(at, style.color, loneDot));
                const QRectF area(at.x() - reach, at.y() - reach, 2 * reach, 2 * reach);
                frame.layout.hits.push_back({QPolygonF(area), s, category});
            }
        }
    }
}

void drawLineSample(ChartFrame& frame, const QRectF& area, int series) {
    const DrawnStyle style = drawnStyle(frame.model, series);
    const double y = area.center().y();
    frame.layout.shapes.push_back({{{{area.left(), y}, {area.right(), y}}}, style.color, linePen});
    const double size = std::min(symbolSize, area.height());
    for (ChartShape& shape : symbolShapes(style.symbol, area.center(), style.color, size))
        frame.layout.shapes.push_back(std::move(shape));
}
