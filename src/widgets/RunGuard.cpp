#include "widgets/RunGuard.h"

#include "app/globals.h"
#include "widgets/Desktop.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMetaObject>
#include <QPointer>
#include <QWidget>
#include <algorithm>

namespace {

bool isInput(QEvent::Type type) {
    switch (type) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::NonClientAreaMouseButtonPress:
    case QEvent::Wheel:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::Shortcut:
    case QEvent::ContextMenu:
    case QEvent::InputMethod:
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::TabletPress:
    case QEvent::TabletRelease:
    case QEvent::DragEnter:
    case QEvent::DragMove:
    case QEvent::Drop:
        return true;
    default:
        return false;
    }
}

class InputWatch : public QObject {
public:
    InputWatch(std::function<void()> stop, std::vector<QWidget*> controls)
        : stop_(std::move(stop)), controls_(std::move(controls)) {
        qApp->installEventFilter(this);
    }

    void stop() { stop_(); }
    void closeLater(QWidget& window) {
        if (std::find(closing_.begin(), closing_.end(), &window) == closing_.end())
            closing_.emplace_back(&window);
    }

    /// Closes what was asked to close, once the run is off the stack.
    void finish() {
        qApp->removeEventFilter(this);
        for (const QPointer<QWidget>& window : closing_)
            QMetaObject::invokeMethod(
                qApp,
                [window] {
                    if (!window)
                        return;
                    // A child lives in a frame of its own within the main window, which goes with it.
                    QWidget* holder = window->parentWidget();
                    (holder && holder->inherits("QMdiSubWindow") ? holder : window.data())->close();
                },
                Qt::QueuedConnection);
    }

protected:
    bool eventFilter(QObject* receiver, QEvent* event) override {
        if (event->type() == QEvent::ShortcutOverride && !isModal(receiver)) {
            // Taken as a plain key, so that no shortcut of any window fires.
            event->accept();
            return true;
        }
        if (!isInput(event->type()))
            return false;
        auto* widget = qobject_cast<QWidget*>(receiver);
        if (event->type() == QEvent::Shortcut)
            return !QApplication::activeModalWidget();
        if (!widget || isModal(widget))
            return false;
        const bool goesThrough = passes(widget);
        const bool inMenu = goesThrough && widget->inherits("QMenu");
        if (!inMenu && event->type() == QEvent::KeyPress && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape) {
            // A key that is held down is pressed once.
            if (!static_cast<QKeyEvent*>(event)->isAutoRepeat())
                stop();
            return true;
        }
        return !goesThrough;
    }

private:
    std::function<void()> stop_;
    std::vector<QWidget*> controls_;
    std::vector<QPointer<QWidget>> closing_;

    static bool isModal(const QObject* receiver) {
        const QWidget* modal = QApplication::activeModalWidget();
        if (!modal)
            return false;
        const auto* widget = qobject_cast<const QWidget*>(receiver);
        // What is no widget belongs to the window that is modal: the others get no input then anyway.
        return !widget || widget->window() == modal || modal->isAncestorOf(widget);
    }

    bool passes(const QWidget* widget) const {
        if (std::find(controls_.begin(), controls_.end(), widget) != controls_.end())
            return true;
        // What the menus keep enabled, and the frames of child windows, by which these are closed.
        if (widget->inherits("QMenu") || widget->inherits("QMenuBar"))
            return true;
        return widget->inherits("QMdiSubWindow") || QByteArray(widget->metaObject()->className()).startsWith("QMdi");
    }
};

InputWatch* watch = nullptr;

} // namespace

RunGuard::Scope::Scope(std::function<void()> stop, std::vector<QWidget*> controls) {
    watch = new InputWatch(std::move(stop), std::move(controls));
    ++gBusy;
    desktop().panelsChanged();
}

RunGuard::Scope::~Scope() {
    watch->finish();
    watch->deleteLater();
    watch = nullptr;
    --gBusy;
    desktop().panelsChanged();
}

bool RunGuard::running() {
    return watch != nullptr;
}

bool RunGuard::closeAfterRun(QWidget& window) {
    if (!watch)
        return false;
    watch->stop();
    watch->closeLater(window);
    return true;
}
