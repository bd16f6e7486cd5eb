#include "widgets/PictureSurface.h"

#include "explorer/PictureView.h"
#include "explorer/ScaledPicture.h"
#include "widgets/Icons.h"
#include "widgets/wheel.h"

#include <QKeyEvent>
#include <QPainter>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr double panOfNotch = 60;    ///< pixels
constexpr double zoomOfKey = 1.25;   ///< factor
constexpr double panOfKey = 0.1;     ///< share of the surface
constexpr double panOfPageKey = 0.9; ///< share of the surface

} // namespace

PictureSurface::PictureSurface(PictureView& view, QWidget* parent) : QFrame(parent), view_(view) {
    setFrameShape(QFrame::StyledPanel);
    setFrameShadow(QFrame::Sunken);
    setFocusPolicy(Qt::StrongFocus);
}

QSize PictureSurface::sizeHint() const {
    return {fontMetrics().averageCharWidth() * 40, fontMetrics().height() * 15};
}

QSize PictureSurface::minimumSizeHint() const {
    return {fontMetrics().averageCharWidth() * 6, fontMetrics().height()};
}

void PictureSurface::show(const ScaledPicture* picture) {
    picture_ = picture && !picture->isNull() ? picture : nullptr;
    fault_.clear();
    empty_.clear();
    stopDragging();
    measure();
    update();
}

void PictureSurface::showFault(const QString& words) {
    show(nullptr);
    fault_ = words;
}

void PictureSurface::showEmpty(const QString& words) {
    show(nullptr);
    empty_ = words;
}

void PictureSurface::measure() {
    view_.room = contentsRect().size();
    if (picture_)
        view_.picture = picture_->size();
}

void PictureSurface::fit() {
    if (!picture_)
        return;
    view_.fit();
    viewChanged();
}

void PictureSurface::reset() {
    if (!picture_)
        return;
    view_.reset();
    viewChanged();
}

void PictureSurface::viewChanged() {
    update();
    if (onZoom)
        onZoom();
}

void PictureSurface::zoomAboutMiddle(double factor) {
    view_.zoomAbout({view_.room.width() / 2, view_.room.height() / 2}, factor);
    viewChanged();
}

void PictureSurface::stopDragging() {
    view_.release();
    unsetCursor();
}

void PictureSurface::paintEvent(QPaintEvent* event) {
    QFrame::paintEvent(event);
    QPainter painter(this);
    painter.setClipRect(contentsRect());
    if (picture_) {
        painter.translate(contentsRect().topLeft());
        picture_->paint(painter, view_.target());
        painter.resetTransform();
    } else if (!fault_.isEmpty()) {
        paintFault(painter);
    } else {
        painter.setPen(palette().color(QPalette::PlaceholderText));
        painter.drawText(contentsRect(), Qt::AlignCenter | Qt::TextWordWrap, empty_);
    }
    if (!hasFocus())
        return;
    // What styles fill with their focus would tint the picture.
    painter.setPen(QPen(palette().color(QPalette::Highlight), 1));
    painter.drawRect(contentsRect().adjusted(0, 0, -1, -1));
}

void PictureSurface::paintFault(QPainter& painter) {
    const int line = fontMetrics().height(), icon = 3 * line;
    const QRect room = contentsRect().adjusted(line, line, -line, -line);
    const int flags = Qt::AlignHCenter | Qt::AlignTop | Qt::TextWrapAnywhere | Qt::TextWordWrap;
    const int height = icon + line / 2 + fontMetrics().boundingRect(room, flags, fault_).height();
    const int top = std::max(room.top(), room.center().y() - height / 2);
    Icons::get(u"showcard-lost"_s).paint(&painter, QRect(room.center().x() - icon / 2, top, icon, icon));
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawText(QRect(room.left(), top + icon + line / 2, room.width(), room.height()), flags, fault_);
}

void PictureSurface::resizeEvent(QResizeEvent* event) {
    QFrame::resizeEvent(event);
    measure();
}

void PictureSurface::mousePressEvent(QMouseEvent* event) {
    if (!picture_ || event->button() != Qt::LeftButton)
        return QFrame::mousePressEvent(event);
    view_.press(inView(event->position()));
    setCursor(Qt::ClosedHandCursor);
}

void PictureSurface::mouseMoveEvent(QMouseEvent* event) {
    if (view_.drag(inView(event->position())))
        update();
}

void PictureSurface::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton)
        stopDragging();
}

void PictureSurface::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton)
        reset();
}

void PictureSurface::wheelEvent(QWheelEvent* event) {
    if (!picture_)
        return QFrame::wheelEvent(event);
    event->accept();
    if (event->modifiers() & Qt::ControlModifier) {
        view_.zoomAbout(inView(event->position()), zoomOfWheel(*event));
        viewChanged();
        return;
    }
    QPointF distance = event->pixelDelta();
    if (distance.isNull())
        distance = QPointF(event->angleDelta()) / wheelStep * panOfNotch;
    if (event->modifiers() & Qt::ShiftModifier)
        distance = distance.transposed();
    view_.panBy(distance);
    update();
}

void PictureSurface::keyPressEvent(QKeyEvent* event) {
    constexpr Qt::KeyboardModifiers ours = Qt::ShiftModifier | Qt::ControlModifier | Qt::KeypadModifier;
    if (!picture_ || (event->modifiers() & ~ours))
        return QFrame::keyPressEvent(event);
    const auto pan = [this](double x, double y) {
        view_.panBy({x * view_.room.width(), y * view_.room.height()});
        update();
    };
    switch (event->key()) {
    case Qt::Key_Left:
        return pan(panOfKey, 0);
    case Qt::Key_Right:
        return pan(-panOfKey, 0);
    case Qt::Key_Up:
        return pan(0, panOfKey);
    case Qt::Key_Down:
        return pan(0, -panOfKey);
    case Qt::Key_PageUp:
        return pan(0, panOfPageKey);
    case Qt::Key_PageDown:
        return pan(0, -panOfPageKey);
    case Qt::Key_Plus:
    case Qt::Key_Equal: // the key of the plus, without Shift
        return zoomAboutMiddle(zoomOfKey);
    case Qt::Key_Minus:
        return zoomAboutMiddle(1 / zoomOfKey);
    case Qt::Key_0:
    case Qt::Key_Home:
        return reset();
    case Qt::Key_F:
        return fit();
    default:
        QFrame::keyPressEvent(event);
    }
}
