#pragma once

#include "charts/ChartModel.h"

#include <QPolygonF>
#include <QRectF>
#include <QSizeF>
#include <vector>

/// The size that a chart has unless told otherwise, in millimetres.
inline constexpr QSizeF defaultChartSize{180, 110};

/// What of a chart is laid out: the plot alone, as it is stored beside its title and explanation, or all of it.
enum class ChartParts { Plot, Whole };

/// One line of text. All lengths are in millimetres from the page's upper left corner.
struct ChartText {
    QString text;
    QPointF at;       ///< left end of the baseline
    double size = 0;  ///< of the type: height of its em
    double width = 0; ///< of the line
    double angle = 0; ///< degrees anticlockwise about `at`
    bool bold = false;
    bool rightToLeft = false; ///< direction of the paragraph that the line is of
    QRgb color = 0xff000000;

    /// The four corners of the room that the line takes.
    QPolygonF bounds() const;
};

/// Polygons that are filled, or lines that are drawn with a pen.
struct ChartShape {
    std::vector<QPolygonF> lines; ///< closed by themselves where they are filled
    QRgb color = 0xff000000;
    double pen = 0;       ///< width of the pen; 0: filled
    bool upright = false; ///< all sides run along those of the page, and may be set on the pixels of a screen
};

/// Where the pointer finds something of the model; -1 where it is about all series or all categories.
struct ChartHit {
    QPolygonF area;
    int series = -1, category = -1;
};

/// A chart as texts and shapes, in the order in which they are painted: shapes first.
struct ChartLayout {
    QSizeF size; ///< of the page
    QRectF plot; ///< the area that the axes span
    std::vector<ChartShape> shapes;
    std::vector<ChartText> texts;
    std::vector<ChartHit> hits;
    double axisMinimum = 0, axisMaximum = 1; ///< values at the lower and the upper edge of the plot
    int axisDivision = 1;                    ///< parts between them
    bool valuesShown = false;                ///< at every bar or point: all, or none where they would collide
    bool secondLevelHidden = false;          ///< the categories had no room for it
    /// Then: for each category "first level = second level\r\n". Empty otherwise.
    QString explanation;

    /// What lies uppermost at a point of the page; nothing if there is nothing.
    const ChartHit* hitAt(const QPointF& millimetres) const;
};

/// Lays a chart out on a page. Needs a QGuiApplication for the fonts; neither screen nor window come into it, so the
/// same model gives the same layout everywhere.
/// @param millimetres the page; see chartFile.h for the bounds that files have
ChartLayout layOut(const ChartModel& model, const QSizeF& millimetres = defaultChartSize,
                   ChartParts parts = ChartParts::Whole);

/// The text of a series as the legend shows it: with its code where another has the same label.
QString shownSeries(const ChartModel& model, int series);
/// What a place of the chart says when it is pointed at: item, series and value, a line each; plain text.
QString chartTip(const ChartModel& model, const ChartHit& hit);
