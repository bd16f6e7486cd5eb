#include "widgets/Icons.h"

#include <QFile>
#include <QGuiApplication>
#include <QHash>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <QPixmapCache>
#include <QSvgRenderer>

using namespace Qt::StringLiterals;

namespace {

/// Draws an SVG text whose "currentColor" stands for the colour of text. Each size and colour is drawn once.
class LineDrawing : public QIconEngine {
public:
    LineDrawing(const QString& name, const QByteArray& svg) : name_(name), svg_(svg) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
        const qreal scale = painter->device() ? painter->device()->devicePixelRatioF() : 1.0;
        painter->drawPixmap(rect, drawing(rect.size() * scale, mode));
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State) override { return drawing(size, mode); }

    QIconEngine* clone() const override { return new LineDrawing(*this); }

private:
    QString name_;
    QByteArray svg_;

    QPixmap drawing(const QSize& size, QIcon::Mode mode) const {
        const QPalette palette = QGuiApplication::palette();
        const QPalette::ColorGroup group = mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
        const QPalette::ColorRole role = mode == QIcon::Selected ? QPalette::HighlightedText : QPalette::ButtonText;
        const QString colour = palette.color(group, role).name();
        const QString key = u"icon/%1/%2x%3/%4/%5"_s.arg(name_).arg(size.width()).arg(size.height()).arg(colour).arg(mode);
        QPixmap picture;
        if (QPixmapCache::find(key, &picture))
            return picture;
        picture = QPixmap(size);
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        if (mode == QIcon::Disabled)
            painter.setOpacity(0.5);
        QSvgRenderer renderer(QByteArray(svg_).replace("currentColor", colour.toLatin1()));
        renderer.setAspectRatioMode(Qt::KeepAspectRatio);
        renderer.render(&painter);
        painter.end();
        QPixmapCache::insert(key, picture);
        return picture;
    }
};

} // namespace

QIcon Icons::get(const QString& name) {
    static QHash<QString, QIcon> known;
    const auto found = known.constFind(name);
    if (found != known.constEnd())
        return *found;
    QFile file(u":/icons/"_s + name + u".svg"_s);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return known[name] = QIcon(new LineDrawing(name, file.readAll()));
}

QIcon Icons::numbered(int number, bool study) {
    constexpr int variable = 24;
    if (number == variable)
        return get(u"variable"_s);
    const bool described = number > variable;
    // Without a description the closed picture is the even one, with it the odd one.
    const bool open = described ? number % 2 == 0 : number % 2 == 1;
    return get((study ? u"study"_s : u"category"_s) + (described ? u"-described"_s : QString()) +
               (open ? u"-open"_s : QString()));
}

QString Icons::ofView(const QString& type, const QString& comparison) {
    if (type == u"1")
        return u"view-study"_s;
    return comparison == u"1" ? u"view-trend"_s : u"view-category"_s;
}
