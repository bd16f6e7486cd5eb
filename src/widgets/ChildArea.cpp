#include "widgets/ChildArea.h"

#include "app/globals.h"
#include "widgets/ProgramStyle.h"
#include "widgets/RunGuard.h"
#include "widgets/contrast.h"

#include <QApplication>
#include <QEvent>
#include <QMdiSubWindow>
#include <QMenu>
#include <QPainter>
#include <QPointer>
#include <QShortcut>
#include <QTimer>
#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace {

/// The menu of a window's frame has the texts of the window system, made once; these follow the program's language.
void prepareSystemMenu(QMenu* menu) {
    if (!menu)
        return;
    // Their shortcuts would take those of the frame's own commands; closing has one of the area's.
    for (QAction* action : menu->actions())
        action->setShortcuts(QList<QKeySequence>());
    QObject::connect(menu, &QMenu::aboutToShow, menu, [menu] {
        static const QStringList german = {u"&Wiederherstellen"_s, u"&Verschieben"_s, u"&Größe ändern"_s,
                                           u"M&inimieren"_s,       u"Ma&ximieren"_s,  u"Immer im V&ordergrund"_s,
                                           u"&Schließen"_s};
        static const QStringList english = {u"&Restore"_s,  u"&Move"_s,        u"&Size"_s, u"Mi&nimize"_s,
                                            u"Ma&ximize"_s, u"Stay on &Top"_s, u"&Close"_s};
        qsizetype place = 0;
        for (QAction* action : menu->actions())
            if (!action->isSeparator() && place < german.size()) {
                action->setText(said(german[place], english[place]));
                ++place;
            }
    });
}

/// Title bars have the colour of a selection.
QIcon onTitleBar(const QIcon& icon, int size) {
    return QIcon(icon.pixmap(QSize(size, size) * 2, QIcon::Selected));
}

QMdiSubWindow* frameOf(const QWidget& child) {
    return qobject_cast<QMdiSubWindow*>(child.parentWidget());
}

} // namespace

ChildArea::ChildArea(QWidget* parent) : QMdiArea(parent), ownTitleBar_(new ProgramStyle) {
    ownTitleBar_->setParent(this);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    setFrameShape(QFrame::NoFrame);
    followPalette();
    connect(this, &QMdiArea::subWindowActivated, this, [this](QMdiSubWindow* frame) {
        if (frame && maximiseNext_) {
            maximiseNext_ = false;
            if (!frame->isMaximized())
                frame->showMaximized();
        }
        fillIfMaximised(frame);
        showIcons(frame);
        if (frame)
            restoreFocus(*frame);
        if (onActivated)
            onActivated();
    });
    connect(qApp, &QApplication::focusChanged, this, [this] {
        // While windows change places the focus wanders; what counts is where it comes to rest.
        QTimer::singleShot(0, this, [this] {
            const QMdiSubWindow* frame = frontFrame();
            QWidget* now = QApplication::focusWidget();
            if (frame && now && frame->isAncestorOf(now))
                focusOf_[frame] = now;
        });
    });
    connect(new QShortcut(Qt::CTRL | Qt::Key_F4, this), &QShortcut::activated, this, [this] {
        if (QMdiSubWindow* frame = frontFrame())
            frame->close();
    });
}

/// A title bar in front has the colour of a selection, the others that of a window.
void ChildArea::showIcons(const QMdiSubWindow* front) {
    for (QMdiSubWindow* frame : subWindowList()) {
        const auto icons = iconsOf_.constFind(frame);
        if (icons == iconsOf_.constEnd())
            continue;
        const QIcon& wanted = frame == front ? icons->first : icons->second;
        if (frame->windowIcon().cacheKey() != wanted.cacheKey())
            frame->setWindowIcon(wanted);
    }
}

/// A window that comes back has its keyboard where it was, unless the mouse has just put it elsewhere.
void ChildArea::restoreFocus(const QMdiSubWindow& frame) {
    QWidget* last = focusOf_.value(&frame);
    const QWidget* now = QApplication::focusWidget();
    const bool clicked = now && QApplication::mouseButtons() != Qt::NoButton && frame.isAncestorOf(now) &&
                         now->rect().contains(now->mapFromGlobal(QCursor::pos()));
    if (last && !clicked && frame.isAncestorOf(last) && last->isVisible() && last->isEnabled())
        last->setFocus(Qt::ActiveWindowFocusReason);
}

ChildArea::~ChildArea() {
    onActivated = nullptr;
    // While the frames go, the last ones would still report that they come to the front.
    disconnect(this, &QMdiArea::subWindowActivated, this, nullptr);
    for (QMdiSubWindow* frame : subWindowList())
        delete frame;
}

void ChildArea::setHint(const QString& hint) {
    hint_ = hint;
    viewport()->update();
}

void ChildArea::followPalette() {
    setBackground(
        palette().color(QPalette::Window).darker(palette().color(QPalette::Window).lightness() < 128 ? 125 : 108));
}

void ChildArea::changeEvent(QEvent* event) {
    QMdiArea::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        followPalette();
}

void ChildArea::paintEvent(QPaintEvent* event) {
    QMdiArea::paintEvent(event);
    if (hint_.isEmpty() || !framesInView().isEmpty())
        return;
    QPainter painter(viewport());
    painter.setPen(faintText(palette().color(QPalette::WindowText), background().color()));
    const int margin = fontMetrics().height();
    painter.drawText(viewport()->rect().adjusted(margin, margin, -margin, -margin), Qt::AlignCenter | Qt::TextWordWrap,
                     hint_);
}

QMdiSubWindow* ChildArea::frontFrame() const {
    QMdiSubWindow* frame = currentSubWindow();
    return frame && frame->isVisibleTo(viewport()) && frame->widget() ? frame : nullptr;
}

QWidget* ChildArea::current() const {
    const QMdiSubWindow* frame = frontFrame();
    return frame ? frame->widget() : nullptr;
}

QList<QMdiSubWindow*> ChildArea::framesInView() const {
    QList<QMdiSubWindow*> frames;
    for (QMdiSubWindow* frame : subWindowList(CreationOrder))
        if (frame->isVisibleTo(viewport()))
            frames << frame;
    return frames;
}

bool ChildArea::isHiddenChild(const QWidget& child) {
    const QMdiSubWindow* frame = frameOf(child);
    return frame ? frame->isHidden() : !child.isVisible();
}

void ChildArea::adopt(QWidget& child) {
    const QMdiSubWindow* front = frontFrame();
    const bool maximised = !front || front->isMaximized();
    // Where the child wants the keyboard; the one in front may lend its place to a control on the way.
    const QPointer<QWidget> focus = child.focusWidget();
    QMdiSubWindow* frame = addSubWindow(&child);
    frame->setAttribute(Qt::WA_DeleteOnClose);
    // Going from control to control one never stops at the frame, which does not show that it has the keyboard.
    frame->setFocusPolicy(Qt::ClickFocus);
    frame->setStyle(ownTitleBar_);
    if (child.testAttribute(Qt::WA_SetWindowIcon))
        iconsOf_[frame] = {onTitleBar(child.windowIcon(), fontMetrics().height()), child.windowIcon()};
    connect(frame, &QObject::destroyed, this, [this, frame] { iconsOf_.remove(frame); });
    frame->installEventFilter(this);
    prepareSystemMenu(frame->systemMenu());
    frame->resize(frame->sizeHint().expandedTo(viewport()->size() * 3 / 4).boundedTo(viewport()->size()));
    if (maximised)
        frame->showMaximized();
    else
        frame->show();
    keepInside(*frame);
    setActiveSubWindow(frame);
    fillIfMaximised(frame);
    showIcons(frame);
    if (focus) {
        focus->setFocus();
        focusOf_[frame] = focus;
    }
    // Its title bar may have been drawn before it had its icon.
    frame->update();
}

/// A frame that is maximised in place of another one keeps the size that it would have had beside it.
void ChildArea::fillIfMaximised(QMdiSubWindow* frame) {
    if (frame && frame->isMaximized() && frame->geometry() != viewport()->rect())
        frame->setGeometry(viewport()->rect());
}

/// Moves a window that would reach beyond the edge.
void ChildArea::keepInside(QMdiSubWindow& frame) const {
    if (frame.isMaximized() || frame.isMinimized())
        return;
    const QRect room = roomForWindows();
    QRect place = frame.geometry();
    place.setSize(place.size().boundedTo(room.size()));
    place.moveLeft(std::max(room.left(), std::min(place.left(), room.right() + 1 - place.width())));
    place.moveTop(std::max(room.top(), std::min(place.top(), room.bottom() + 1 - place.height())));
    frame.setGeometry(place);
}

void ChildArea::activate(QWidget& child) {
    QMdiSubWindow* frame = frameOf(child);
    if (!frame) {
        child.show();
        return;
    }
    if (frame->isMinimized())
        frame->showNormal();
    else if (frame->isHidden())
        frame->show();
    setActiveSubWindow(frame);
}

void ChildArea::hideCurrent() {
    QMdiSubWindow* frame = frontFrame();
    if (!frame)
        return;
    const bool maximised = frame->isMaximized();
    frame->hide();
    const QList<QMdiSubWindow*> frames = subWindowList(ActivationHistoryOrder);
    for (auto next = frames.crbegin(); next != frames.crend(); ++next)
        if ((*next)->isVisibleTo(viewport())) {
            setActiveSubWindow(*next);
            if (maximised && !(*next)->isMaximized())
                (*next)->showMaximized();
            return;
        }
    setActiveSubWindow(nullptr);
    if (onActivated)
        onActivated();
    viewport()->update();
}

bool ChildArea::eventFilter(QObject* object, QEvent* event) {
    if (event->type() == QEvent::Close) {
        const QPointer<QMdiSubWindow> frame = qobject_cast<QMdiSubWindow*>(object);
        // Nothing goes away under a run or while windows are being made or refilled.
        if (frame && frame->widget() && (RunGuard::closeAfterRun(*frame->widget()) || gBusy > 0)) {
            event->ignore();
            return true;
        }
        if (frame && frame == frontFrame() && frame->isMaximized()) {
            maximiseNext_ = true;
            // A window that refused to close must not maximise another one later.
            QTimer::singleShot(0, this, [this, frame] {
                maximiseNext_ = false;
                QMdiSubWindow* next = frontFrame();
                if (next && next != frame && !next->isMaximized())
                    next->showMaximized();
            });
        }
    }
    return QMdiArea::eventFilter(object, event);
}

/// The area above the minimised windows.
QRect ChildArea::roomForWindows() const {
    QRect room = viewport()->rect();
    for (const QMdiSubWindow* frame : framesInView())
        if (frame->isMinimized())
            room.setBottom(std::min(room.bottom(), viewport()->height() - frame->height() - 1));
    return room;
}

/// After windows have changed places the one in front is in front again, with its keyboard where it was.
void ChildArea::comeToRest(QMdiSubWindow* front) {
    if (!front)
        return;
    setActiveSubWindow(front);
    restoreFocus(*front);
}

void ChildArea::arrangeBeside(const QList<QWidget*>& kept) {
    const QPointer<QMdiSubWindow> front = frontFrame();
    const QPointer<QWidget> focus = QApplication::focusWidget();
    // As long as one fills the area, every other one that comes to the front would.
    for (QMdiSubWindow* frame : framesInView())
        if (frame->isMaximized())
            frame->showNormal();
    for (QMdiSubWindow* frame : framesInView())
        if (frame->widget() && !kept.contains(frame->widget()) && !frame->isMinimized())
            frame->showMinimized();
    if (front)
        setActiveSubWindow(front);
    arrangeIcons();
    tileVertically();
    comeToRest(front);
    // The window may have been given another place for the keyboard just before.
    if (front && focus && front->isAncestorOf(focus))
        focus->setFocus();
}

void ChildArea::cascade() {
    QMdiSubWindow* front = frontFrame();
    const QRect room = roomForWindows();
    int place = 0;
    for (QMdiSubWindow* frame : framesInView()) {
        if (frame->isMinimized())
            continue;
        if (frame->isMaximized())
            frame->showNormal();
        const int step = frame->style()->pixelMetric(QStyle::PM_TitleBarHeight, nullptr, frame) + 4;
        const QSize size = frame->minimumSizeHint().expandedTo(room.size() * 2 / 3);
        const int steps = std::max(1, (room.height() - size.height()) / step + 1);
        frame->setGeometry(QRect(room.topLeft() + QPoint(1, 1) * (place % steps * step), size));
        frame->raise();
        ++place;
    }
    comeToRest(front);
}

void ChildArea::tileVertically() {
    tile(1, 0, 3);
}

void ChildArea::tileHorizontally() {
    tile(0, 1, 3);
}

/// @param columns,rows 1 for the direction in which up to `count` windows stand beside each other
void ChildArea::tile(int columns, int rows, int count) {
    QMdiSubWindow* front = frontFrame();
    QList<QMdiSubWindow*> frames;
    for (QMdiSubWindow* frame : framesInView())
        if (!frame->isMinimized())
            frames << frame;
    if (frames.isEmpty())
        return;
    const int all = static_cast<int>(frames.size());
    const int along = all <= count ? all : static_cast<int>(std::ceil(std::sqrt(all)));
    const int across = (all + along - 1) / along;
    columns = columns ? along : across;
    rows = rows ? along : across;
    const QRect room = roomForWindows();
    for (int i = 0; i < all; ++i) {
        QMdiSubWindow* frame = frames[i];
        if (frame->isMaximized())
            frame->showNormal();
        const int column = i % columns, row = i / columns;
        const int left = room.width() * column / columns, top = room.height() * row / rows;
        frame->setGeometry(room.left() + left, room.top() + top, room.width() * (column + 1) / columns - left,
                           room.height() * (row + 1) / rows - top);
    }
    comeToRest(front);
}

void ChildArea::arrangeIcons() {
    int left = 0, bottom = viewport()->height();
    for (QMdiSubWindow* frame : framesInView()) {
        if (!frame->isMinimized())
            continue;
        if (left > 0 && left + frame->width() > viewport()->width()) {
            left = 0;
            bottom -= frame->height();
        }
        frame->move(left, bottom - frame->height());
        left += frame->width();
    }
}

void ChildArea::activateNext(bool backwards) {
    const QList<QMdiSubWindow*> frames = framesInView();
    if (frames.isEmpty())
        return;
    const qsizetype now = frames.indexOf(frontFrame()), count = frames.size();
    setActiveSubWindow(frames[now < 0 ? 0 : (now + (backwards ? count - 1 : 1)) % count]);
}
