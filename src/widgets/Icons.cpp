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

constexpr char accent[] = "#3f86c6";
constexpr char accentOnDark[] = "#6cb0ea"; ///< thin lines of the other would sink into a dark ground

/// Draws an SVG text whose "currentColor" stands for the colour of text. Each size and colour is drawn once.
class LineDrawing : public QIconEngine {
public:
    LineDrawing(const QString& name, const QByteArray& svg, int number = 0) : name_(name), svg_(svg), number_(number) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
        const qreal scale = painter->device() ? painter->device()->devicePixelRatioF() : 1.0;
        painter->drawPixmap(rect, drawing(rect.size() * scale, mode));
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State) override { return drawing(size, mode); }

    QIconEngine* clone() const override { return new LineDrawing(*this); }

private:
    QString name_;
    QByteArray svg_;
    int number_;

    /// The digit in the lower right corner, for which the lines give way.
    void drawNumber(QPainter& painter, const QSize& size, const QColor& colour) const {
        const QRectF corner(size.width() * 0.54, size.height() * 0.42, size.width() * 0.46, size.height() * 0.58);
        painter.setCompositionMode(QPainter::CompositionMode_Clear);
        painter.fillRect(corner, Qt::transparent);
        painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
        QFont font = QGuiApplication::font();
        font.setBold(true);
        font.setPixelSize(qMax(8, qRound(corner.height())));
        painter.setFont(font);
        painter.setPen(colour);
        painter.drawText(corner, Qt::AlignCenter | Qt::TextDontClip, QString::number(number_));
    }

    QPixmap drawing(const QSize& size, QIcon::Mode mode) const {
        const QPalette palette = QGuiApplication::palette();
        const QPalette::ColorGroup group = mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
        const QPalette::ColorRole role = mode == QIcon::Selected ? QPalette::HighlightedText : QPalette::ButtonText;
        const QString colour = palette.color(group, role).name();
        const QString key = u"icon/%1%6/%2x%3/%4/%5"_s.arg(name_)
                                .arg(size.width())
                                .arg(size.height())
                                .arg(colour)
                                .arg(mode)
                                .arg(number_);
        QPixmap picture;
        if (QPixmapCache::find(key, &picture))
            return picture;
        picture = QPixmap(size);
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        QByteArray drawn = QByteArray(svg_).replace("currentColor", colour.toLatin1());
        // On a selection, which has the accent's own colour, all is drawn in that of selected text.
        if (mode == QIcon::Selected)
            drawn.replace(accent, colour.toLatin1());
        else if (palette.color(QPalette::Window).lightness() < 128)
            drawn.replace(accent, accentOnDark);
        QSvgRenderer renderer(drawn);
        renderer.setAspectRatioMode(Qt::KeepAspectRatio);
        renderer.render(&painter);
        if (number_ > 0)
            drawNumber(painter, size, colour);
        // Once for the whole: where shapes overlap, each drawn pale by itself would come out darker.
        if (mode == QIcon::Disabled) {
            painter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
            painter.fillRect(picture.rect(), QColor(0, 0, 0, 128));
        }
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

QIcon Icons::withNumber(const QString& name, int number) {
    static QHash<std::pair<QString, int>, QIcon> known;
    const auto found = known.constFind({name, number});
    if (found != known.constEnd())
        return *found;
    QFile file(u":/icons/"_s + name + u".svg"_s);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return known[{name, number}] = QIcon(new LineDrawing(name, file.readAll(), number));
}

QString Icons::ofView(const QString& type, const QString& comparison) {
    if (type == u"1")
        return u"view-study"_s;
    return comparison == u"1" ? u"view-trend"_s : u"view-category"_s;
}
