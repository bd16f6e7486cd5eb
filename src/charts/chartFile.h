#pragma once

#include "charts/ChartLayout.h"
#include "charts/StoredGraph.h"

#include <QByteArray>
#include <QSize>

class QImage;

/// The resolution of stored plots, in pixels per inch.
inline constexpr int storedPlotDpi = 192;
inline constexpr int standardPictureDpi = 300;

/// Whether Qt reads and writes JPEG here: without it no plot can be stored.
bool jpegSupported();
/// A size in whole twips (1440 to the inch).
QSize chartTwips(const QSizeF& millimetres);
/// The JPEG of the plot alone, as it is stored: 192 pixels to the inch, of the size that chartTwips() gives.
/// @param quality limited to 0 to 100
/// @return empty where it cannot be made; without JPEG in Qt a box has said so
QByteArray plotJpeg(const ChartModel& model, const QSizeF& millimetres = defaultChartSize, int quality = 100);
/// What is stored of a chart: this picture, and what it has no room for beside it. Without bytes where plotJpeg() has
/// none. @param dpi of one that is for paper, where more of them are seen
StoredGraph storedGraphOf(const ChartModel& model, const QSizeF& millimetres = defaultChartSize,
                          int dpi = storedPlotDpi);

/// A chart as a picture on white. Null where there is no memory for it.
QImage chartImage(const ChartLayout& layout, int dpi);
/// The same as an SVG document; empty where it cannot be made.
QByteArray chartSvg(const ChartModel& model, const ChartLayout& layout);
/// Whether a chart can be saved in this size: 40 to 2,000 millimetres each way, 36 to 2,400 pixels per inch and at most
/// 100 million pixels. @return what is wrong, in words; empty if nothing is
QString chartSizeFault(const QSizeF& millimetres, int dpi);
/// Saves the whole chart to a file, all of it or nothing: by the name's ending SVG, PNG, JPEG or PDF. SVG and PDF are
/// as large as the chart, pictures say their resolution.
/// @return the reason of a failure, in words; empty on success
QString saveChart(const ChartModel& model, const QString& path, const QSizeF& millimetres = defaultChartSize,
                  int dpi = standardPictureDpi);
