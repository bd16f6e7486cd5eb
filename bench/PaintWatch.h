#pragma once

#include <QCoreApplication>
#include <QEvent>
#include <QWidget>

/// Tells when a widget has been painted: what a person waits for.
class PaintWatch : public QObject {
public:
    explicit PaintWatch(QWidget* widget) { widget->installEventFilter(this); }

    /// Runs what is pending until the widget has been painted (at once if it already is) and nothing else is due.
    void wait() {
        while (!painted_)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        QCoreApplication::processEvents();
    }

protected:
    bool eventFilter(QObject*, QEvent* event) override {
        painted_ = painted_ || event->type() == QEvent::Paint;
        return false;
    }

private:
    bool painted_ = false;
};
