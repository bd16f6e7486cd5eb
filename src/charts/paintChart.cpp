#include "charts/paintChart.h"

#include "charts/chartType.h"

#include <QGlyphRun>
#include <QPaintEngine>
#include <QPainter>
#include <QPainterPath>
#include <QRawFont>
#include <QTextLayout>
#include <QTransform>
#include <algorithm>
#include <cmath>

namespace {

/// The pixels of a painter that only scales and moves.
struct Pixels {
    QTransform toDevice;

    /// A line along a side of the page, as wide as every other that is to be as wide, and on whole pixels.
    /// @param corners it goes on round a corner at both ends
    QRectF bar(const QPointF& from, const QPointF& to, double pen, bool corners) const {
        const double scale = toDevice.m11(), width = std::max(1.0, std::round(pen * scale));
        const QPointF a = toDevice.map(from), b = toDevice.map(to);
        const QRectF along = QRectF(a, b).normalized();
        const double more = corners ? width / 2 : 0;
        const QRectF onDevice =
            from.y() == to.y()
                ? QRectF(along.left() - more, std::round(a.y() - width / 2), along.width() + 2 * more, width)
                : QRectF(std::round(a.x() - width / 2), along.top() - more, width, along.height() + 2 * more);
        return toDevice.inverted().mapRect(onDevice);
    }
};

void paintLines(QPainter& painter, const ChartShape& shape, const Pixels* pixels) {
    if (pixels && shape.upright) {
        for (const QPolygonF& line : shape.lines)
            for (qsizetype i = 1; i < line.size(); ++i)
                painter.fillRect(pixels->bar(line[i - 1], line[i], shape.pen, line.isClosed()),
                                 QColor::fromRgb(shape.color));
        return;
    }
    QPen pen(QColor::fromRgb(shape.color), shape.pen, Qt::SolidLine, Qt::FlatCap, Qt::MiterJoin);
    if (!shape.upright) {
        pen.setJoinStyle(Qt::RoundJoin);
        pen.setCapStyle(Qt::RoundCap);
    }
    painter.setPen(pen);
    painter.setBrush(Qt::NoBrush);
    for (const QPolygonF& line : shape.lines)
        painter.drawPolyline(line);
}

void paintShape(QPainter& painter, const ChartShape& shape, const Pixels* pixels) {
    painter.setRenderHint(QPainter::Antialiasing, !(pixels && shape.upright));
    if (shape.pen > 0)
        return paintLines(painter, shape, pixels);
    if (shape.upright && shape.lines.size() == 1) {
        painter.fillRect(shape.lines.front().boundingRect(), QColor::fromRgb(shape.color));
        return;
    }
    if (pixels) { // thousands of polygons take a third of the time that one path of them takes, rectangles less
        painter.setRenderHint(QPainter::Antialiasing); // set on the pixels they would all become of another size
        painter.setPen(Qt::NoPen);
        painter.setBrush(QColor::fromRgb(shape.color));
        for (const QPolygonF& polygon : shape.lines) {
            if (shape.upright)
                painter.fillRect(polygon.boundingRect(), QColor::fromRgb(shape.color));
            else
                painter.drawPolygon(polygon, Qt::WindingFill);
        }
        return;
    }
    QPainterPath path;
    path.setFillRule(Qt::WindingFill);
    for (const QPolygonF& polygon : shape.lines) {
        path.addPolygon(polygon);
        path.closeSubpath();
    }
    painter.fillPath(path, QColor::fromRgb(shape.color));
}

/// Readers of SVG order the pieces that a line of two directions comes in as each sees fit: they get its outlines.
void paintOutlines(QPainter& painter, const ChartText& text, const QFont& font) {
    QTextLayout layout(text.text, font);
    QTextOption option;
    option.setTextDirection(text.rightToLeft ? Qt::RightToLeft : Qt::LeftToRight);
    option.setWrapMode(QTextOption::NoWrap);
    layout.setTextOption(option);
    layout.beginLayout();
    QTextLine line = layout.createLine();
    layout.endLayout();
    if (!line.isValid())
        return;
    line.setPosition({0, -line.ascent()});
    QPainterPath path;
    path.setFillRule(Qt::WindingFill);
    for (const QGlyphRun& run : layout.glyphRuns()) {
        const QList<quint32> glyphs = run.glyphIndexes();
        const QList<QPointF> places = run.positions();
        for (qsizetype i = 0; i < glyphs.size(); ++i)
            path.addPath(run.rawFont().pathForGlyph(glyphs[i]).translated(places[i]));
    }
    painter.fillPath(path, QColor::fromRgb(text.color));
}

bool hasTwoDirections(const QString& text) {
    return std::any_of(text.begin(), text.end(),
                       [](QChar sign) { return sign.direction() == QChar::DirR || sign.direction() == QChar::DirAL; });
}

void paintText(QPainter& painter, const ChartText& text, const QFont fonts[2], bool svg) {
    painter.save();
    painter.translate(text.at);
    painter.rotate(-text.angle);
    painter.scale(text.size / referencePixels, text.size / referencePixels);
    if (svg && hasTwoDirections(text.text)) {
        paintOutlines(painter, text, fonts[text.bold]);
    } else {
        painter.setFont(fonts[text.bold]);
        painter.setPen(QColor::fromRgb(text.color));
        painter.setLayoutDirection(text.rightToLeft ? Qt::RightToLeft : Qt::LeftToRight);
        painter.drawText(QPointF(), text.text);
    }
    painter.restore();
}

} // namespace

void paintChart(QPainter& painter, const ChartLayout& layout) {
    painter.save();
    painter.setRenderHint(QPainter::TextAntialiasing);
    const QPaintEngine* engine = painter.paintEngine();
    const Pixels onDevice{painter.deviceTransform()};
    const bool raster = engine && engine->type() == QPaintEngine::Raster;
    const Pixels* pixels = raster && onDevice.toDevice.type() <= QTransform::TxScale ? &onDevice : nullptr;
    for (const ChartShape& shape : layout.shapes)
        paintShape(painter, shape, pixels);
    painter.setRenderHint(QPainter::Antialiasing);
    const QFont fonts[2] = {chartFont(false), chartFont(true)};
    for (const ChartText& text : layout.texts)
        paintText(painter, text, fonts, engine && engine->type() == QPaintEngine::SVG);
    painter.restore();
}

QRectF paintChartInto(QPainter& painter, const ChartLayout& layout, const QRectF& target) {
    const QSizeF size = layout.size.scaled(target.size(), Qt::KeepAspectRatio);
    QRectF page(QPointF(), size);
    page.moveCenter(target.center());
    if (layout.size.isEmpty() || size.isEmpty())
        return page;
    painter.save();
    painter.translate(page.topLeft());
    painter.scale(size.width() / layout.size.width(), size.height() / layout.size.height());
    paintChart(painter, layout);
    painter.restore();
    return page;
}
