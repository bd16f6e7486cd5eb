#include "widgets/dragPointers.h"

#include "widgets/Icons.h"

#include <QHash>
#include <QIcon>
#include <QPainter>
#include <QPainterPath>
#include <QPixmap>
#include <QWidget>
#include <tuple>

using namespace Qt::StringLiterals;

namespace {

constexpr int side = 40; ///< of the picture, before it is scaled

QPolygonF arrow() {
    return QPolygonF({{1, 1}, {1, 17}, {5, 13.5}, {8, 20}, {11, 18.5}, {8, 12.5}, {13, 12.5}});
}

void drawArrow(QPainter& painter) {
    painter.setPen(QPen(Qt::white, 1.4, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(Qt::black);
    painter.drawPolygon(arrow());
}

/// What is dragged, on the ground that its icon is drawn for.
void drawContent(QPainter& painter, bool variables, const QPalette& colors) {
    const QRectF card(14, 14, 20, 20);
    painter.setPen(QPen(colors.color(QPalette::Text), 1));
    painter.setBrush(colors.color(QPalette::Base));
    if (variables)
        painter.drawRoundedRect(card.translated(2.5, 2.5), 3, 3);
    painter.drawRoundedRect(card, 3, 3);
    Icons::get(variables ? u"variable"_s : u"category"_s).paint(&painter, card.adjusted(2, 2, -2, -2).toRect());
}

void drawMark(QPainter& painter, DragView::Pointer pointer) {
    const QRectF ground(25, 1, 14, 14);
    const QColor colors[] = {QColor(0, 120, 60), QColor(20, 80, 170), QColor(190, 20, 30)};
    painter.setPen(QPen(Qt::white, 1.4));
    painter.setBrush(colors[static_cast<int>(pointer)]);
    painter.drawEllipse(ground);
    painter.setPen(QPen(Qt::white, 2, Qt::SolidLine, Qt::RoundCap));
    const QPointF middle = ground.center();
    if (pointer == DragView::Pointer::No) {
        painter.drawLine(middle + QPointF(-3, -3), middle + QPointF(3, 3));
        return;
    }
    painter.drawLine(middle - QPointF(3.5, 0), middle + QPointF(3.5, 0));
    if (pointer == DragView::Pointer::Copy) {
        painter.drawLine(middle - QPointF(0, 3.5), middle + QPointF(0, 3.5));
    } else {
        painter.drawLine(middle + QPointF(3.5, 0), middle + QPointF(0.5, -3));
        painter.drawLine(middle + QPointF(3.5, 0), middle + QPointF(0.5, 3));
    }
}

} // namespace

QCursor dragPointer(DragView::Pointer pointer, bool variables, const QWidget& widget) {
    // As large as letters are, in the pixels of the screen.
    const double scale = qMax(1.0, widget.fontMetrics().height() / 16.0);
    const double pixels = widget.devicePixelRatioF();
    static QHash<QString, QCursor> made;
    const QString key = u"%1 %2 %3 %4 %5"_s.arg(static_cast<int>(pointer))
                            .arg(variables)
                            .arg(scale)
                            .arg(pixels)
                            .arg(widget.palette().color(QPalette::Text).name());
    if (const auto known = made.constFind(key); known != made.constEnd())
        return *known;
    const int logical = qRound(side * scale);
    QPixmap picture(QSize(logical, logical) * pixels);
    picture.setDevicePixelRatio(pixels);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.scale(scale, scale);
    drawContent(painter, variables, widget.palette());
    drawArrow(painter);
    drawMark(painter, pointer);
    painter.end();
    return *made.insert(key, QCursor(picture, 1, 1));
}
