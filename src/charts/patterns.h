#pragma once

#include <QPolygonF>
#include <QRectF>
#include <vector>

inline constexpr int patternCount = 14;

/// A pattern cut to a rectangle: what of it has the colour that isn't the ground's.
struct PatternFill {
    bool darkGround = false; ///< the rectangle is black and the shapes white; else the other way round
    std::vector<QPolygonF> shapes;
};

/// The fill patterns, 1 to 14, in millimetres, fixed to the lower left corner of the rectangle.
/// @param scale makes the pattern finer, for rectangles too narrow for it
PatternFill patternFill(int pattern, const QRectF& rectangle, double scale = 1);
/// The scale at which a rectangle of this width shows what it is filled with.
double patternScale(double width);

/// What of a convex polygon lies in a rectangle; empty if nothing does.
QPolygonF clipped(const QPolygonF& polygon, const QRectF& rectangle);
