#include "widgets/ContextMenu.h"

#include "app/globals.h"
#include "widgets/Desktop.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAction>
#include <QApplication>
#include <QContextMenuEvent>
#include <QMenu>
#include <QMouseEvent>
#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

ContextMenu::ContextMenu(QAbstractItemView& view, std::function<void(QMenu&)> fill, Selection selection)
    : QObject(&view), widget_(*view.viewport()), view_(&view), fill_(std::move(fill)), selection_(selection) {
    view.installEventFilter(this);
    view.viewport()->installEventFilter(this);
}

ContextMenu::ContextMenu(QWidget& picture, std::function<void(QMenu&)> fill)
    : QObject(&picture), widget_(picture), view_(nullptr), fill_(std::move(fill)), selection_(Selection::Stays) {
    picture.installEventFilter(this);
}

bool ContextMenu::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
    case QEvent::KeyPress: {
        // Not every window system makes a menu event of both.
        const auto* key = static_cast<QKeyEvent*>(event);
        if (key->key() != Qt::Key_Menu && (key->key() != Qt::Key_F10 || key->modifiers() != Qt::ShiftModifier))
            return false;
        openAtCurrent();
        return true;
    }
    case QEvent::ContextMenu: {
        const auto* wanted = static_cast<QContextMenuEvent*>(event);
        if (wanted->reason() != QContextMenuEvent::Mouse)
            openAtCurrent();
        else if (right_ == Right::Up)
            open(wanted->globalPos());
        return true;
    }
    case QEvent::MouseButtonPress:
    case QEvent::MouseMove:
    case QEvent::MouseButtonRelease:
        return view_ && watched == &widget_ && click(*event);
    default:
        return false;
    }
}

/// @return true if the view is to hear nothing of it
bool ContextMenu::click(QEvent& event) {
    const auto& mouse = static_cast<const QMouseEvent&>(event);
    const QPoint where = mouse.globalPosition().toPoint();
    if (event.type() == QEvent::MouseMove) {
        if (right_ == Right::Down && (where - pressedAt_).manhattanLength() >= QApplication::startDragDistance())
            right_ = Right::Moved;
        return false;
    }
    if (mouse.button() != Qt::RightButton)
        return false;
    if (selection_ == Selection::Stays)
        return true;
    if (event.type() == QEvent::MouseButtonPress) {
        right_ = Right::Down;
        pressedAt_ = where;
    } else if (std::exchange(right_, Right::Up) == Right::Down) {
        open(where);
    }
    return false;
}

void ContextMenu::openAtCurrent() {
    const QModelIndex current = view_ ? view_->currentIndex() : QModelIndex();
    if (current.isValid())
        view_->scrollTo(current);
    const QRect cell = current.isValid() ? view_->visualRect(current) : QRect();
    const QRect inView = cell & widget_.rect();
    open(widget_.mapToGlobal(inView.isValid() ? inView.bottomLeft() : QPoint(0, 0)));
}

void ContextMenu::open(const QPoint& place) {
    if (open_ || gBusy > 0)
        return;
    open_ = new QMenu(view_ ? view_ : &widget_);
    open_->setObjectName(u"mnuContext"_s);
    open_->setProperty("CtrlTyp", QString());
    open_->setToolTipsVisible(true);
    open_->setAttribute(Qt::WA_DeleteOnClose);
    fill_(*open_);
    if (open_->isEmpty())
        delete open_;
    else
        open_->popup(place);
}

void ContextMenu::addCommands(QMenu& menu, const QStringList& names) {
    for (const QString& name : names)
        if (name.isEmpty())
            menu.addSeparator();
        else if (QAction* command = desktop().command(name))
            addCommand(menu, *command);
}

/// Letters are chosen for the menus of the frame. Where one is taken here the entry has none.
void ContextMenu::addCommand(QMenu& menu, QAction& command) {
    const auto letterOf = [](const QAction* entry) { return QKeySequence::mnemonic(entry->text()); };
    const QKeySequence letter = letterOf(&command);
    const QList<QAction*> entries = menu.actions();
    if (letter.isEmpty() || std::ranges::find(entries, letter, letterOf) == entries.end()) {
        menu.addAction(&command);
        return;
    }
    QAction* entry = menu.addAction(command.icon(), command.text().remove(u'&'));
    entry->setObjectName(command.objectName());
    entry->setShortcut(command.shortcut());
    entry->setShortcutContext(Qt::WidgetShortcut); // shown only: the key is the command's
    entry->setEnabled(command.isEnabled());
    entry->setCheckable(command.isCheckable());
    entry->setChecked(command.isChecked());
    entry->setToolTip(command.toolTip());
    QObject::connect(entry, &QAction::triggered, &command, &QAction::trigger);
}

void ContextMenu::addButton(QMenu& menu, QAbstractButton& button) {
    if (!button.isVisible())
        return;
    QAction* entry = menu.addAction(button.icon(), button.text());
    entry->setEnabled(button.isEnabled());
    entry->setToolTip(button.toolTip());
    QObject::connect(entry, &QAction::triggered, &button, &QAbstractButton::click);
}
