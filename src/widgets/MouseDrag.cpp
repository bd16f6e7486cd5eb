#include "widgets/MouseDrag.h"

#include "app/globals.h"
#include "widgets/CatalogueTreeModel.h"
#include "widgets/dragPointers.h"
#include "widgets/gestures.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QTreeView>
#include <algorithm>

using namespace Qt::StringLiterals;

/// What shows that the place under the mouse takes what is dragged.
class DropMark : public QWidget {
public:
    explicit DropMark(QWidget* parent) : QWidget(parent) {
        setObjectName(u"dropMark"_s);
        setAttribute(Qt::WA_TransparentForMouseEvents);
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        QColor color = palette().color(QPalette::Highlight);
        painter.setPen(QPen(color, 2));
        color.setAlpha(60);
        painter.setBrush(color);
        painter.drawRect(rect().adjusted(1, 1, -1, -1));
    }
};

namespace {

constexpr int interval = 50; ///< milliseconds

bool isHeld(Qt::MouseButtons buttons) {
    return buttons == Qt::LeftButton || buttons == Qt::RightButton;
}

} // namespace

MouseDrag::MouseDrag(QAbstractItemView& view, DragPlace::Part part, ExplorerModel& model,
                     std::function<std::vector<int>()> selectedRows)
    : QObject(&view), view_(view), port_(view.viewport()), place_{part, &model, {}, std::move(selectedRows)} {
    view.viewport()->installEventFilter(this);
    ticks_.setInterval(interval);
    connect(&ticks_, &QTimer::timeout, this, [this] { follow(); });
    all().push_back(this);
}

MouseDrag::~MouseDrag() {
    std::erase(all(), this);
    giveUp();
}

std::vector<MouseDrag*>& MouseDrag::all() {
    static std::vector<MouseDrag*> watched;
    return watched;
}

/// The tree or list under a point of the screen, in whichever window; null where there is none.
MouseDrag* MouseDrag::under(const QPoint& where) {
    const QWidget* widget = QApplication::widgetAt(where);
    const auto found = std::ranges::find_if(all(), [&](const MouseDrag* drag) {
        return widget && (widget == &drag->view_ || drag->view_.isAncestorOf(widget));
    });
    return found == all().end() ? nullptr : *found;
}

/// The node whose line, beside the mark that opens it, is under a point.
QModelIndex MouseDrag::nodeAt(const QPoint& where) const {
    const QPoint here = view_.viewport()->mapFromGlobal(where);
    const QModelIndex node = view_.indexAt(here);
    const auto* tree = qobject_cast<const QTreeView*>(&view_);
    const int fromText = node.isValid() ? view_.visualRect(node).left() - here.x() : 0;
    const bool onMark = tree && fromText > 0 && fromText <= tree->indentation() && node.model()->hasChildren(node);
    return onMark ? QModelIndex() : node;
}

DragPlace MouseDrag::placeAt(const QPoint& where) const {
    DragPlace place = place_;
    if (place.part == DragPlace::Part::Tree)
        if (const QModelIndex node = nodeAt(where); node.isValid())
            place.key = CatalogueTreeModel::nodeOf(node)->Key;
    return place;
}

/// -1 near the upper edge and 1 near the lower one, where there is more beyond.
int MouseDrag::edgeAt(const QPoint& where) const {
    const QWidget& port = *view_.viewport();
    const int y = port.mapFromGlobal(where).y(), near = port.fontMetrics().height();
    const QScrollBar& bar = *view_.verticalScrollBar();
    if (y < near && bar.value() > bar.minimum())
        return -1;
    return y >= port.height() - near && bar.value() < bar.maximum() ? 1 : 0;
}

bool MouseDrag::eventFilter(QObject* watched, QEvent* event) {
    if (watched != port_)
        return ofProgram(watched, *event);
    switch (event->type()) {
    case QEvent::MouseButtonPress:
        return press(*static_cast<QMouseEvent*>(event));
    case QEvent::MouseMove:
        return move(*static_cast<QMouseEvent*>(event));
    case QEvent::MouseButtonRelease:
        return release(*static_cast<QMouseEvent*>(event));
    case QEvent::MouseButtonDblClick:
        giveUp();
        pressed_ = false;
        return false;
    case QEvent::UngrabMouse:
    case QEvent::Hide:
        giveUp();
        return false;
    default:
        return false;
    }
}

/// Keys go to whoever has the keyboard, and a window may be lost that is none of ours.
bool MouseDrag::ofProgram(QObject* watched, QEvent& event) {
    if (!shown_)
        return false;
    switch (event.type()) {
    case QEvent::ShortcutOverride:
    case QEvent::KeyPress:
        if (static_cast<const QKeyEvent&>(event).key() != Qt::Key_Escape)
            return false;
        event.accept(); // it is nobody's shortcut
        if (event.type() == QEvent::KeyPress)
            giveUp();
        return true;
    case QEvent::WindowDeactivate:
    case QEvent::WindowBlocked:
        if (watched == view_.window())
            giveUp();
        return false;
    case QEvent::ApplicationStateChange:
    case QEvent::ApplicationDeactivate:
        giveUp();
        return false;
    default:
        return false;
    }
}

bool MouseDrag::press(const QMouseEvent& event) {
    // A second button ends what the first has begun.
    const bool held = pressed_ && event.buttons() != event.button();
    giveUp();
    pressed_ = false;
    // With Shift the mouse goes on drawing a selection over the rows.
    const bool selects = place_.part == DragPlace::Part::List && event.button() == Qt::LeftButton &&
                         event.modifiers().testFlag(Qt::ShiftModifier);
    if (held || selects || !dragFollower() || gBusy > 0 || !isHeld(event.button()))
        return held;
    where_ = event.globalPosition().toPoint();
    pressed_ = dragFollower()->press(
        placeAt(where_), event.button() == Qt::RightButton ? DragFollower::Button::Right : DragFollower::Button::Left,
        where_);
    return false;
}

/// While the button is held the view draws no selection of its own.
bool MouseDrag::move(const QMouseEvent& event) {
    if (event.buttons() == Qt::NoButton) {
        giveUp();
        pressed_ = false;
    }
    if (!pressed_ || !dragFollower())
        return false;
    where_ = event.globalPosition().toPoint();
    if (gBusy == 0 && dragFollower()->move(where_)) {
        if (!shown_)
            begin();
        follow();
    }
    return true;
}

bool MouseDrag::release(const QMouseEvent& event) {
    if (!pressed_)
        return false;
    pressed_ = false;
    if (!shown_) {
        if (dragFollower())
            dragFollower()->cancel();
        return false;
    }
    end();
    where_ = event.globalPosition().toPoint();
    const MouseDrag* target = under(where_);
    const DragPlace place = target ? target->placeAt(where_) : DragPlace();
    if (gBusy > 0 && dragFollower())
        dragFollower()->cancel();
    onGesture([&] {
        if (dragFollower())
            dragFollower()->release(place);
    });
    return true;
}

void MouseDrag::begin() {
    shown_ = true;
    clock_.start();
    ticks_.start();
    QApplication::setOverrideCursor(Qt::ArrowCursor);
    qApp->installEventFilter(this);
}

void MouseDrag::follow() {
    if (!shown_ || !dragFollower())
        return;
    MouseDrag* target = under(where_);
    const QModelIndex node =
        target && target->place_.part == DragPlace::Part::Tree ? target->nodeAt(where_) : QModelIndex();
    auto* tree = target ? qobject_cast<QTreeView*>(&target->view_) : nullptr;
    const bool closed = tree && node.isValid() && node.model()->hasChildren(node) && !tree->isExpanded(node);
    const DragView view = dragFollower()->hover(target ? target->placeAt(where_) : DragPlace(),
                                                target ? target->edgeAt(where_) : 0, closed, clock_.elapsed());
    if (!dragFollower()->isDragging()) {
        end();
        return;
    }
    QApplication::changeOverrideCursor(dragPointer(view.pointer, view.variables, view_));
    if (!view.open.isEmpty() && tree)
        tree->expand(node);
    if (view.scroll != 0)
        if (QScrollBar* bar = target->view_.verticalScrollBar())
            bar->setValue(bar->value() + view.scroll * bar->singleStep());
    markTarget(view.marksTarget ? target : nullptr);
}

void MouseDrag::markTarget(MouseDrag* target) {
    QWidget* port = target ? target->view_.viewport() : nullptr;
    if (mark_ && mark_->parentWidget() != port)
        delete mark_;
    if (!port)
        return;
    if (!mark_)
        mark_ = new DropMark(port);
    const bool tree = target->place_.part == DragPlace::Part::Tree;
    const QModelIndex node = tree ? target->nodeAt(where_) : QModelIndex();
    mark_->setGeometry(tree ? target->view_.visualRect(node) & port->rect() : port->rect());
    mark_->setVisible(!tree || node.isValid());
}

/// Shows nothing more of it.
void MouseDrag::end() {
    if (!shown_)
        return;
    shown_ = false;
    ticks_.stop();
    qApp->removeEventFilter(this);
    QApplication::restoreOverrideCursor();
    delete mark_;
}

void MouseDrag::giveUp() {
    end();
    if (pressed_ && dragFollower())
        dragFollower()->cancel();
}
