#include "widgets/ChartView.h"

#include "app/globals.h"
#include "charts/paintChart.h"
#include "widgets/toolTips.h"

#include <QAccessible>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QToolTip>
#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace {

/// Values that a reader of the screen hears of a chart at once; the keys lead to all of them.
constexpr int mostSpoken = 60;
constexpr double twipsPerInch = 1440;

} // namespace

ChartView::ChartView(const QString& name, QWidget* parent) : QWidget(parent) {
    setObjectName(name);
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

void ChartView::forget() {
    model_ = {};
    layout_ = {};
    picture_ = {};
    painted_ = {};
    point_ = -1;
    update();
}

void ChartView::clear() {
    forget();
    describe();
}

void ChartView::showChart(const ChartModel& model, const QSizeF& millimetres, ChartParts parts) {
    forget();
    model_ = model;
    layout_ = layOut(model, millimetres, parts);
    describe();
}

void ChartView::showPicture(const QImage& picture, const QSizeF& twips) {
    forget();
    picture_ = picture;
    original_ = twips;
    describe();
}

QSize ChartView::sizeHint() const {
    return {fontMetrics().averageCharWidth() * 90, fontMetrics().height() * 26};
}

QSize ChartView::minimumSizeHint() const {
    return {fontMetrics().averageCharWidth() * 24, fontMetrics().height() * 7};
}

QSizeF ChartView::pageSize() const {
    return picture_.isNull() ? layout_.size : QSizeF(picture_.size());
}

QRectF ChartView::page() const {
    const QRectF room = QRectF(rect()).adjusted(1, 1, -1, -1);
    const bool limited = !picture_.isNull() && std::min(original_.width(), original_.height()) >= twipsPerInch;
    const QSizeF most = limited ? (original_ * logicalDpiX() / twipsPerInch).boundedTo(room.size()) : room.size();
    const QSizeF size = pageSize().scaled(most, Qt::KeepAspectRatio);
    QRectF page(QPointF(), size);
    page.moveCenter(room.center());
    return page;
}

QPointF ChartView::onPage(const QPointF& place) const {
    const QRectF shown = page();
    return (place - shown.topLeft()) * (layout_.size.width() / std::max(shown.width(), 1.0));
}

QPolygonF ChartView::inWidget(const QPolygonF& area) const {
    const QRectF shown = page();
    const double scale = shown.width() / layout_.size.width();
    QPolygonF placed;
    for (const QPointF& corner : area)
        placed << shown.topLeft() + corner * scale;
    return placed;
}

void ChartView::paintEvent(QPaintEvent*) {
    if (!isShown())
        return;
    const QRectF shown = page();
    const double ratio = devicePixelRatioF();
    const QSize pixels = (shown.size() * ratio).toSize().expandedTo({1, 1});
    if (painted_.size() != pixels) {
        painted_ = QPixmap(pixels);
        painted_.fill(Qt::white);
        QPainter page(&painted_);
        if (picture_.isNull())
            paintChartInto(page, layout_, QRectF(painted_.rect()));
        else
            page.drawImage(painted_.rect(), picture_.scaled(pixels, Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
    }
    QPainter painter(this);
    // On the pixels of the screen, so that none is smeared over two.
    const QPointF corner = QPointF(std::round(shown.left() * ratio), std::round(shown.top() * ratio)) / ratio;
    painter.drawPixmap(QRectF(corner, QSizeF(pixels) / ratio), painted_, QRectF(painted_.rect()));
    painter.setPen(palette().color(hasFocus() ? QPalette::Highlight : QPalette::Mid));
    painter.drawRect(QRectF(corner, QSizeF(pixels) / ratio).adjusted(-0.5, -0.5, 0, 0));
    if (point_ < 0 || !hasFocus())
        return;
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(palette().color(QPalette::Highlight), 2));
    painter.drawRect(inWidget(layout_.hits[static_cast<size_t>(point_)].area).boundingRect().adjusted(-3, -3, 3, 3));
}

bool ChartView::event(QEvent* event) {
    if (event->type() != QEvent::ToolTip)
        return QWidget::event(event);
    const auto* help = static_cast<QHelpEvent*>(event);
    const ChartHit* hit = layout_.size.isEmpty() ? nullptr : layout_.hitAt(onPage(help->pos()));
    const QString words = hit ? chartTip(model_, *hit) : QString();
    if (words.isEmpty()) {
        QToolTip::hideText();
        event->ignore();
    } else {
        QToolTip::showText(help->globalPos(), plainToolTip(words), this,
                           inWidget(hit->area).boundingRect().toAlignedRect());
    }
    return true;
}

void ChartView::choose(const ChartHit* hit) {
    if (onChosen && isShown())
        onChosen(hit ? hit->series : -1, hit ? hit->category : -1);
}

void ChartView::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton)
        choose(layout_.size.isEmpty() ? nullptr : layout_.hitAt(onPage(event->position())));
}

bool ChartView::isPoint(int hit) const {
    const ChartHit& at = layout_.hits[static_cast<size_t>(hit)];
    return at.series >= 0 && at.category >= 0;
}

/// To the next point of the series, or that of another series in the same category; past those that are empty.
void ChartView::step(int series, int category) {
    const auto key = [&](int hit) {
        const ChartHit& at = layout_.hits[static_cast<size_t>(hit)];
        return category != 0 ? std::pair(at.series, at.category) : std::pair(at.category, at.series);
    };
    std::vector<int> points;
    for (int i = 0; i < static_cast<int>(layout_.hits.size()); ++i)
        if (isPoint(i))
            points.push_back(i);
    if (points.empty())
        return;
    std::ranges::stable_sort(points, {}, key);
    const auto now = std::ranges::find(points, point_);
    const int at = now == points.end() ? (series + category > 0 ? -1 : static_cast<int>(points.size()))
                                       : static_cast<int>(now - points.begin());
    goTo(points[static_cast<size_t>(std::clamp(at + series + category, 0, static_cast<int>(points.size()) - 1))]);
}

void ChartView::goTo(int hit) {
    point_ = hit;
    const ChartHit& at = layout_.hits[static_cast<size_t>(hit)];
    const QString words = chartTip(model_, at);
    const QRect area = inWidget(at.area).boundingRect().toAlignedRect();
    QToolTip::showText(mapToGlobal(QPoint(area.center().x(), area.top())), plainToolTip(words), this, area);
    setAccessibleDescription(QString(words).replace(u'\n', u", "_s));
    QAccessibleEvent said(this, QAccessible::DescriptionChanged);
    QAccessible::updateAccessibility(&said);
    update();
}

void ChartView::keyPressEvent(QKeyEvent* event) {
    const bool plain = (event->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
    const int key = plain ? event->key() : 0;
    if (key == Qt::Key_Right || key == Qt::Key_Left)
        step(0, key == Qt::Key_Right ? 1 : -1);
    else if (key == Qt::Key_Down || key == Qt::Key_Up)
        step(key == Qt::Key_Down ? 1 : -1, 0);
    else if (key == Qt::Key_Home || key == Qt::Key_End) {
        point_ = -1;
        step(0, key == Qt::Key_Home ? 1 : -1);
    } else if (key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Space)
        choose(point_ < 0 ? nullptr : &layout_.hits[static_cast<size_t>(point_)]);
    else
        QWidget::keyPressEvent(event);
}

void ChartView::focusInEvent(QFocusEvent* event) {
    QWidget::focusInEvent(event);
    update();
}

void ChartView::focusOutEvent(QFocusEvent* event) {
    QWidget::focusOutEvent(event);
    QToolTip::hideText();
    update();
}

/// All that the picture says, in words.
void ChartView::describe() {
    QStringList words;
    int points = 0;
    for (int i = 0; i < static_cast<int>(layout_.hits.size()); ++i)
        if (isPoint(i) && ++points <= mostSpoken)
            words << chartTip(model_, layout_.hits[static_cast<size_t>(i)]).replace(u'\n', u", "_s);
    if (points > mostSpoken)
        words << u"..."_s;
    setAccessibleDescription(words.join(u"; "_s));
}
