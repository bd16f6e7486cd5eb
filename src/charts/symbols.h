#pragma once

#include "charts/ChartLayout.h"

/// The markers of lines, 0 to 15, about 2 mm across; 15 is none.
inline constexpr int noSymbol = 15;
inline constexpr double symbolSize = 2.4;

std::vector<ChartShape> symbolShapes(int symbol, const QPointF& center, QRgb color, double size = symbolSize);
/// A dot for a point that nothing else would show.
ChartShape dotShape(const QPointF& center, QRgb color, double size);
