#pragma once

#include "charts/ChartLayout.h"

class QPainter;

/// Paints a chart at the origin of a painter that has been scaled so that its unit is a millimetre. Everything comes
/// from the layout, nothing from a palette or a window; the painter is left as it was.
void paintChart(QPainter& painter, const ChartLayout& layout);

/// The same, fitted into a rectangle of the painter's own units: as large as it will go, centred.
/// @return where the page came to lie
QRectF paintChartInto(QPainter& painter, const ChartLayout& layout, const QRectF& target);
