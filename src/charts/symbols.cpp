#include "charts/symbols.h"

#include "charts/palette.h"

#include <cmath>
#include <numbers>

namespace {

constexpr double stroke = 0.3;

QPolygonF regular(const QPointF& center, double radius, int corners, double firstAngle) {
    QPolygonF polygon;
    for (int i = 0; i < corners; ++i) {
        const double angle = firstAngle + 2 * std::numbers::pi * i / corners;
        polygon << center + QPointF(radius * std::sin(angle), -radius * std::cos(angle));
    }
    return polygon;
}

/// As large as the circle beside them to the eye, not in width.
QPolygonF outline(int kind, const QPointF& center, double half) {
    constexpr double turn = std::numbers::pi;
    switch (kind) {
    case 0:
        return regular(center, half, 24, 0);
    case 1:
        return regular(center, half * 0.9 * std::sqrt(2.0), 4, turn / 4);
    case 2:
        return regular(center, half * 1.2, 4, 0);
    case 3:
        return regular(center + QPointF(0, half * 0.15), half * 1.25, 3, 0);
    default:
        return regular(center - QPointF(0, half * 0.15), half * 1.25, 3, turn);
    }
}

ChartShape strokes(int kind, const QPointF& center, QRgb color, double half) {
    ChartShape shape{{}, color, stroke * 1.3};
    const auto line = [&](double x, double y) {
        shape.lines.push_back({center - QPointF(x, y), center + QPointF(x, y)});
    };
    if (kind == 0)
        line(half, 0);
    if (kind == 1 || kind == 3)
        line(half, 0), line(0, half);
    if (kind == 2 || kind == 3)
        line(half * 0.75, half * 0.75), line(half * 0.75, -half * 0.75);
    return shape;
}

} // namespace

ChartShape dotShape(const QPointF& center, QRgb color, double size) {
    return {{regular(center, size / 2, 24, 0)}, color};
}

std::vector<ChartShape> symbolShapes(int symbol, const QPointF& center, QRgb color, double size) {
    const double half = size / 2;
    if (symbol < 0 || symbol >= noSymbol)
        return {};
    if (symbol <= 3)
        return {strokes(symbol, center, color, half)};
    if (symbol == 14) // a ball: its light comes from the upper left
        return {dotShape(center, color, size * 1.1),
                dotShape(center - QPointF(half, half) * 0.36, paperColor, half * 0.6)};
    const QPolygonF shape = outline((symbol - 4) % 5, center, half);
    if (symbol >= 9)
        return {{{shape}, color}};
    QPolygonF closed = shape;
    closed << shape.first();
    return {{{shape}, paperColor}, {{closed}, color, stroke}};
}
