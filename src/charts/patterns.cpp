#include "charts/patterns.h"

#include <algorithm>
#include <cmath>

namespace {

/// The shapes of a pattern are laid out from the lower left corner upwards; whoever asks for more than this has a
/// rectangle as large as a wall.
constexpr double mostShapes = 40000;

class Weaver {
public:
    Weaver(const QRectF& rectangle, double scale) : area_(rectangle) {
        const double finest = std::sqrt(std::max(area_.width() * area_.height(), 1e-9) / mostShapes);
        scale_ = std::max(scale, 4 * finest);
    }

    std::vector<QPolygonF> take() { return std::move(shapes_); }

    /// A rectangle in units of the pattern, from the lower left corner.
    void box(double x, double y, double width, double height) {
        const QRectF placed(area_.left() + x * scale_, area_.bottom() - (y + height) * scale_, width * scale_,
                            height * scale_);
        const QRectF seen = placed.intersected(area_);
        if (seen.width() > 0 && seen.height() > 0)
            shapes_.push_back({seen.topLeft(), seen.topRight(), seen.bottomRight(), seen.bottomLeft()});
    }
    double width() const { return area_.width() / scale_; }
    double height() const { return area_.height() / scale_; }

    void horizontalLines(double step, double thick) {
        for (double y = (step - thick) / 2; y < height(); y += step)
            box(0, y, width(), thick);
    }
    void verticalLines(double step, double thick) {
        for (double x = (step - thick) / 2; x < width(); x += step)
            box(x, 0, thick, height());
    }
    /// Squares in rows, each row moved by half a step; together they cover `share` of the area.
    void dots(double step, double share) {
        const double side = step * std::sqrt(share / 2);
        int row = 0;
        for (double y = (step / 2 - side) / 2; y < height(); y += step / 2, ++row)
            for (double x = (step / 2 - side) / 2 - (row % 2) * step / 2; x < width(); x += step)
                box(x, y, side, side);
    }
    void checks(double side) {
        int row = 0;
        for (double y = 0; y < height(); y += side, ++row)
            for (double x = (row % 2) * side; x < width(); x += 2 * side)
                box(x, y, side, side);
    }
    /// Short bars that lie and stand by turns.
    void weave(double cell) {
        int row = 0;
        for (double y = 0; y < height(); y += cell, ++row) {
            int column = row;
            for (double x = 0; x < width(); x += cell, ++column) {
                for (const double along : {0.14, 0.6}) {
                    if (column % 2 == 0)
                        box(x, y + along * cell, cell, 0.26 * cell);
                    else
                        box(x + along * cell, y, 0.26 * cell, cell);
                }
            }
        }
    }
    /// Lines from corner to corner, both ways.
    void trellis(double step, double thick) {
        const double half = thick * std::sqrt(2.0) / 2;
        for (double x = -std::ceil(height() / step) * step; x < width() + step; x += step) {
            stripe(x, half, false);
            stripe(x + step / 2, half, true);
        }
    }

private:
    QRectF area_;
    double scale_;
    std::vector<QPolygonF> shapes_;

    /// A diagonal stripe that crosses the lower edge at x, or the upper one when it falls.
    void stripe(double x, double half, bool falling) {
        const double rise = height();
        const auto at = [&](double along, double up) {
            return QPointF(area_.left() + along * scale_, area_.bottom() - (falling ? height() - up : up) * scale_);
        };
        QPolygonF whole{at(x - half, 0), at(x + half, 0), at(x + rise + half, height()), at(x + rise - half, height())};
        if (falling) // all turn the same way round: where two cross there is no hole
            std::reverse(whole.begin(), whole.end());
        QPolygonF seen = clipped(whole, area_);
        if (!seen.isEmpty())
            shapes_.push_back(std::move(seen));
    }
};

/// One side of the rectangle cuts away what lies beyond it.
template<typename Inside, typename Cross>
QPolygonF cutOff(const QPolygonF& polygon, Inside inside, Cross cross) {
    QPolygonF kept;
    for (qsizetype i = 0; i < polygon.size(); ++i) {
        const QPointF& from = polygon[i];
        const QPointF& to = polygon[(i + 1) % polygon.size()];
        if (inside(from))
            kept << from;
        if (inside(from) != inside(to))
            kept << cross(from, to);
    }
    return kept;
}

QPointF crossing(const QPointF& from, const QPointF& to, double part) {
    return from + (to - from) * part;
}

} // namespace

QPolygonF clipped(const QPolygonF& polygon, const QRectF& r) {
    const auto atX = [](double x) {
        return [x](const QPointF& a, const QPointF& b) { return crossing(a, b, (x - a.x()) / (b.x() - a.x())); };
    };
    const auto atY = [](double y) {
        return [y](const QPointF& a, const QPointF& b) { return crossing(a, b, (y - a.y()) / (b.y() - a.y())); };
    };
    QPolygonF kept = cutOff(
        polygon, [&](const QPointF& p) { return p.x() >= r.left(); }, atX(r.left()));
    kept = cutOff(
        kept, [&](const QPointF& p) { return p.x() <= r.right(); }, atX(r.right()));
    kept = cutOff(
        kept, [&](const QPointF& p) { return p.y() >= r.top(); }, atY(r.top()));
    return cutOff(
        kept, [&](const QPointF& p) { return p.y() <= r.bottom(); }, atY(r.bottom()));
}

double patternScale(double width) {
    return std::clamp(width / 3, 0.4, 1.0);
}

PatternFill patternFill(int pattern, const QRectF& rectangle, double scale) {
    Weaver weaver(rectangle, scale);
    PatternFill fill;
    fill.darkGround = pattern <= 3 || pattern == 14;
    switch (pattern) {
    case 1:
        weaver.dots(1.9, 0.06);
        break;
    case 2:
        weaver.dots(1, 0.12);
        break;
    case 3:
        weaver.dots(0.8, 0.25);
        break;
    case 4:
        weaver.checks(0.4);
        break;
    case 5:
        weaver.dots(0.9, 0.25);
        break;
    case 6:
        weaver.horizontalLines(1.4, 0.7);
        break;
    case 7:
        weaver.verticalLines(1.4, 0.7);
        break;
    case 8:
        weaver.checks(1);
        break;
    case 9:
        weaver.weave(1.5);
        break;
    case 10:
        weaver.horizontalLines(1, 0.2);
        break;
    case 11:
        weaver.verticalLines(1, 0.2);
        break;
    case 12:
        weaver.horizontalLines(1, 0.2);
        weaver.verticalLines(1, 0.2);
        break;
    default:
        weaver.trellis(1.4, 0.25);
        break;
    }
    fill.shapes = weaver.take();
    return fill;
}
