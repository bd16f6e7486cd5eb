#include "charts/paintChart.h"

#include "charts/chartType.h"

#include <QPaintEngine>
#include <QPainter>
#include <QPainterPath>

namespace {

void paintShape(QPainter& painter, const ChartShape& shape, bool pixels) {
    painter.setRenderHint(QPainter::Antialiasing, !(pixels && shape.upright));
    if (shape.pen > 0) {
        QPen pen(QColor::fromRgb(shape.color), shape.pen, Qt::SolidLine, Qt::FlatCap, Qt::MiterJoin);
        if (!shape.upright) {
            pen.setJoinStyle(Qt::RoundJoin);
            pen.setCapStyle(Qt::RoundCap);
        }
        painter.setPen(pen);
        painter.setBrush(Qt::NoBrush);
        for (const QPolygonF& line : shape.lines)
            painter.drawPolyline(line);
        return;
    }
    if (shape.upright && shape.lines.size() == 1) {
        painter.fillRect(shape.lines.front().boundingRect(), QColor::fromRgb(shape.color));
        return;
    }
    if (pixels) { // thousands of polygons take a third of the time that one path of them takes
        painter.setPen(Qt::NoPen);
        painter.setBrush(QColor::fromRgb(shape.color));
        for (const QPolygonF& polygon : shape.lines)
            painter.drawPolygon(polygon, Qt::WindingFill);
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

void paintText(QPainter& painter, const ChartText& text, const QFont fonts[2]) {
    painter.save();
    painter.translate(text.at);
    painter.rotate(-text.angle);
    painter.scale(text.size / referencePixels, text.size / referencePixels);
    painter.setFont(fonts[text.bold]);
    painter.setPen(QColor::fromRgb(text.color));
    painter.setLayoutDirection(text.rightToLeft ? Qt::RightToLeft : Qt::LeftToRight);
    painter.drawText(QPointF(), text.text);
    painter.restore();
}

} // namespace

void paintChart(QPainter& painter, const ChartLayout& layout) {
    painter.save();
    painter.setRenderHint(QPainter::TextAntialiasing);
    const QPaintEngine* engine = painter.paintEngine();
    const bool pixels =
        engine && engine->type() == QPaintEngine::Raster && painter.deviceTransform().type() <= QTransform::TxScale;
    for (const ChartShape& shape : layout.shapes)
        paintShape(painter, shape, pixels);
    painter.setRenderHint(QPainter::Antialiasing);
    const QFont fonts[2] = {chartFont(false), chartFont(true)};
    for (const ChartText& text : layout.texts)
        paintText(painter, text, fonts);
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
