#pragma once

#include <QKeyEvent>
#include <QListWidget>
#include <functional>

/// A list whose entries can be added, removed and taken by keys: Insert, Delete and Enter go to onKey, also where a
/// menu has one of them as its shortcut.
class EntryList : public QListWidget {
public:
    using QListWidget::QListWidget;

    /// @param key Qt::Key_Insert, Key_Delete or Key_Return
    std::function<void(int key)> onKey;

    /// It takes the room that there is, and asks for no more than it needs.
    QSize sizeHint() const override { return minimumSizeHint().expandedTo(minimumSize()); }

protected:
    bool event(QEvent* event) override {
        if (event->type() == QEvent::ShortcutOverride && keyOf(static_cast<QKeyEvent*>(event)) != 0) {
            event->accept();
            return true;
        }
        return QListWidget::event(event);
    }
    void keyPressEvent(QKeyEvent* event) override {
        const int key = keyOf(event);
        if (key == 0 || !onKey) {
            QListWidget::keyPressEvent(event);
            return;
        }
        event->accept();
        onKey(key);
    }

private:
    static int keyOf(const QKeyEvent* event) {
        if ((event->modifiers() & ~Qt::KeypadModifier) != Qt::NoModifier)
            return 0;
        switch (event->key()) {
        case Qt::Key_Insert:
        case Qt::Key_Delete:
            return event->key();
        case Qt::Key_Return:
        case Qt::Key_Enter:
            return Qt::Key_Return;
        default:
            return 0;
        }
    }
};
