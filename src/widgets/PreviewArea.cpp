#include "widgets/PreviewArea.h"

#include "app/globals.h"
#include "printing/outlets.h"
#include "widgets/toolTips.h"
#include "widgets/wheel.h"

#include <QHelpEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QToolTip>
#include <cmath>
#include <limits>

using namespace Qt::StringLiterals;

namespace {

constexpr int lineStep = 40; ///< pixels

/// Around the paper: darker than the window, so that the paper stands out on it in every palette.
QColor groundOf(const QPalette& palette) {
    const QColor window = palette.color(QPalette::Window);
    return window.lightness() < 128 ? window.darker(140) : window.darker(125);
}

} // namespace

PreviewArea::PreviewArea(PreviewModel& model, QWidget* parent) : QAbstractScrollArea(parent), model_(model) {
    setFocusPolicy(Qt::StrongFocus);
    // A bar that came with the second page would change the page's width.
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    viewport()->setMouseTracking(true);
    viewport()->setAutoFillBackground(false);
}

QSize PreviewArea::sizeHint() const {
    return {fontMetrics().averageCharWidth() * 110, fontMetrics().height() * 36};
}

void PreviewArea::follow() {
    if (following_)
        return;
    const QScopedValueRollback<bool> quiet(following_, true);
    const QSizeF most = model_.contentSize() - QSizeF(viewport()->size());
    const auto set = [](QScrollBar& bar, double range, double page, double value) {
        bar.setRange(0, std::max(0, static_cast<int>(std::ceil(range))));
        bar.setPageStep(static_cast<int>(page));
        bar.setSingleStep(lineStep);
        bar.setValue(static_cast<int>(value));
    };
    // A bar that appears or goes takes of the room, and the model puts its place right.
    set(*horizontalScrollBar(), most.width(), viewport()->width(), model_.at().x());
    set(*verticalScrollBar(), most.height(), viewport()->height(), model_.at().y());
    horizontalScrollBar()->setValue(static_cast<int>(model_.at().x()));
    verticalScrollBar()->setValue(static_cast<int>(model_.at().y()));
    viewport()->update();
}

void PreviewArea::change(const std::function<void()>& step) {
    step();
    follow();
    if (onChanged)
        onChanged();
}

void PreviewArea::resizeEvent(QResizeEvent*) {
    model_.setRoom(viewport()->size(), logicalDpiX());
    if (!following_)
        change([] {});
}

void PreviewArea::scrollContentsBy(int, int) {
    if (!following_)
        change([this] { model_.scrollTo(QPointF(horizontalScrollBar()->value(), verticalScrollBar()->value())); });
}

// ---- painting

void PreviewArea::paintEvent(QPaintEvent* event) {
    QPainter painter(viewport());
    painter.fillRect(event->rect(), groundOf(palette()));
    const auto [first, last] = model_.inView();
    for (int page = first; page <= last; ++page) {
        const QRectF rect = model_.pageRect(page).translated(-model_.at());
        if (rect.adjusted(-1, -1, 3, 3).intersects(event->rect()))
            paintSheet(painter, page, rect, event->rect());
    }
    if (last < first) {
        painter.setPen(palette().color(QPalette::WindowText));
        painter.drawText(viewport()->rect(), Qt::AlignCenter | Qt::TextWordWrap, model_.status());
    }
    if (!hasFocus())
        return;
    painter.setPen(QPen(palette().color(QPalette::Highlight), 1));
    painter.drawRect(viewport()->rect().adjusted(0, 0, -1, -1));
}

void PreviewArea::paintSheet(QPainter& painter, int page, const QRectF& rect, const QRect& exposed) {
    const double ratio = viewport()->devicePixelRatioF();
    painter.fillRect(rect.translated(2, 2), QColor(0, 0, 0, 60));
    painter.setPen(QPen(QColor(0, 0, 0, 120), 1));
    painter.drawRect(rect.adjusted(-0.5, -0.5, 0.5, 0.5));
    const ReportLayout& layout = model_.run().layout();
    const QSize dots = (rect.size() * ratio).toSize();
    const QImage& picture = model_.pictures().picture(layout, page, dots);
    if (!picture.isNull()) {
        QImage sharp = picture;
        sharp.setDevicePixelRatio(ratio);
        painter.drawImage(rect.topLeft(), sharp);
    } else {
        const ReportPage& sheet = model_.pictures().page(layout, page);
        painter.save();
        painter.setClipRect(rect.intersected(exposed));
        painter.fillRect(rect, Qt::white);
        painter.translate(rect.topLeft());
        painter.scale(rect.width() / sheet.size.width(), rect.height() / sheet.size.height());
        paintPage(painter, sheet);
        painter.restore();
    }
    markFound(painter, page, rect);
}

/// A bar in the margin beside what was found.
void PreviewArea::markFound(QPainter& painter, int page, const QRectF& rect) {
    const int found = model_.found();
    if (found < 0 || model_.run().layout().pageOf(found) != page)
        return;
    const PageSetup& setup = model_.run().layout().setup();
    const double dots = model_.dotsPerTwip(), height = setup.fontSize * twipsPerPoint * 1.6 * dots;
    for (const ReportPage::Anchor& anchor : model_.pictures().page(model_.run().layout(), page).anchors)
        if (anchor.entry == found) {
            const double width = std::max(4.0, height / 4), left = setup.margins.left() * dots - 2 * width;
            painter.fillRect(QRectF(rect.left() + std::max(0.0, left), rect.top() + anchor.y * dots, width, height),
                             palette().color(QPalette::Highlight));
        }
}

// ---- gestures

void PreviewArea::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton)
        return;
    pressed_ = model_.linkAt(event->position());
    if (pressed_)
        return;
    dragged_ = event->position().toPoint();
    viewport()->setCursor(Qt::ClosedHandCursor);
}

void PreviewArea::mouseMoveEvent(QMouseEvent* event) {
    if (!dragged_) {
        viewport()->setCursor(model_.linkAt(event->position()) ? Qt::PointingHandCursor : Qt::ArrowCursor);
        return;
    }
    const QPoint now = event->position().toPoint();
    const QPoint way = *dragged_ - now;
    dragged_ = now;
    change([&] { model_.scrollTo(model_.at() + way); });
}

void PreviewArea::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton)
        return;
    dragged_.reset();
    viewport()->unsetCursor();
    if (pressed_ && pressed_ == model_.linkAt(event->position()))
        change([this] { model_.goToEntry(*pressed_); });
    pressed_.reset();
}

void PreviewArea::wheelEvent(QWheelEvent* event) {
    if (!(event->modifiers() & Qt::ControlModifier))
        return QAbstractScrollArea::wheelEvent(event);
    change([&] { model_.zoomAbout(event->position(), model_.zoom() * zoomOfWheel(*event)); });
    event->accept();
}

bool PreviewArea::goByKey(int key, bool control) {
    const bool sideways = horizontalScrollBar()->maximum() > 0;
    switch (key) {
    case Qt::Key_PageDown:
        change([&] { control ? model_.nextPage() : model_.turn(true); });
        return true;
    case Qt::Key_PageUp:
        change([&] { control ? model_.previousPage() : model_.turn(false); });
        return true;
    case Qt::Key_Home:
        change([this] { model_.goToPage(0); });
        return true;
    case Qt::Key_End: // the last one there will be
        change([this] { model_.goToPage(std::numeric_limits<int>::max()); });
        return true;
    case Qt::Key_Down:
    case Qt::Key_Up:
        change([&] { model_.scrollTo(model_.at() + QPointF(0, key == Qt::Key_Down ? lineStep : -lineStep)); });
        return true;
    case Qt::Key_Right:
    case Qt::Key_Left:
        change([&] {
            const bool right = key == Qt::Key_Right;
            if (sideways)
                model_.scrollTo(model_.at() + QPointF(right ? lineStep : -lineStep, 0));
            else
                right ? model_.nextPage() : model_.previousPage();
        });
        return true;
    case Qt::Key_Backspace:
        change([this] { model_.back(); });
        return true;
    default:
        return false;
    }
}

bool PreviewArea::zoomByKey(int key) {
    using Fit = PreviewModel::Fit;
    switch (key) {
    case Qt::Key_Plus:
    case Qt::Key_Equal: // the key of the plus, without Shift
        change([this] { model_.zoomIn(); });
        return true;
    case Qt::Key_Minus:
        change([this] { model_.zoomOut(); });
        return true;
    case Qt::Key_0:
        change([this] { model_.resetZoom(); });
        return true;
    case Qt::Key_F:
        change([this] { model_.setFit(Fit::Page); });
        return true;
    case Qt::Key_W:
        change([this] { model_.setFit(Fit::Width); });
        return true;
    case Qt::Key_2:
        change([this] { model_.setTwoPages(!model_.twoPages()); });
        return true;
    default:
        return false;
    }
}

void PreviewArea::keyPressEvent(QKeyEvent* event) {
    const Qt::KeyboardModifiers with = event->modifiers() & ~(Qt::KeypadModifier | Qt::ShiftModifier);
    const bool control = with == Qt::ControlModifier;
    if (event->key() == Qt::Key_Space && !with)
        return change([&] { model_.turn(!(event->modifiers() & Qt::ShiftModifier)); });
    if ((!with || control) && goByKey(event->key(), control))
        return;
    if (!with && zoomByKey(event->key()))
        return;
    event->ignore(); // for the window
}

void PreviewArea::focusInEvent(QFocusEvent* event) {
    QAbstractScrollArea::focusInEvent(event);
    viewport()->update();
}

void PreviewArea::focusOutEvent(QFocusEvent* event) {
    QAbstractScrollArea::focusOutEvent(event);
    viewport()->update();
}

bool PreviewArea::viewportEvent(QEvent* event) {
    if (event->type() != QEvent::ToolTip)
        return QAbstractScrollArea::viewportEvent(event);
    const auto* help = static_cast<QHelpEvent*>(event);
    const std::optional<int> link = model_.linkAt(help->pos());
    QToolTip::showText(help->globalPos(), link && tellLink ? plainToolTip(tellLink(*link)) : QString(), this);
    return true;
}
