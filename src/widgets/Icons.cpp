#include "widgets/Icons.h"

#include <QFile>
#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <QSvgRenderer>

using namespace Qt::StringLiterals;

namespace {

/// Draws an SVG text whose "currentColor" stands for the colour of text.
class LineDrawing : public QIconEngine {
public:
    explicit LineDrawing(const QByteArray& svg) : svg_(svg) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
        const QPalette palette = QGuiApplication::palette();
        const QPalette::ColorGroup group = mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
        const QPalette::ColorRole role = mode == QIcon::Selected ? QPalette::HighlightedText : QPalette::ButtonText;
        QByteArray coloured = svg_;
        coloured.replace("currentColor", palette.color(group, role).name().toLatin1());
        QSvgRenderer renderer(coloured);
        if (mode == QIcon::Disabled)
            painter->setOpacity(0.55);
        renderer.render(painter, QRectF(rect));
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        QPixmap picture(size);
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        paint(&painter, QRect(QPoint(), size), mode, state);
        return picture;
    }

    QIconEngine* clone() const override { return new LineDrawing(*this); }

private:
    QByteArray svg_;
};

} // namespace

QIcon Icons::get(const QString& name) {
    QFile file(u":/icons/"_s + name + u".svg"_s);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QIcon(new LineDrawing(file.readAll()));
}
