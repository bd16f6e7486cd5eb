#pragma once

#include "app/globals.h"
#include "explorer/frmExplorer.h"
#include "widgets/Desktop.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QDeadlineTimer>
#include <QDialog>
#include <QDir>
#include <QItemSelectionModel>
#include <QKeyEvent>
#include <QTimer>
#include <functional>
#include <stdexcept>

struct Wanted {
    std::string catalogue, data, folder, language = "de";
    bool dark = false;
    double scale = 1;
    int fontSize = 0;
};

/// What every walk through the windows does: it takes pictures, waits and presses keys.
class PictureWalk {
public:
    PictureWalk(const Wanted& wanted, const QString& folder) : folder_(folder) {
        suffix_ = QLatin1Char('-') + QString::fromLatin1(wanted.language) +
                  (wanted.dark ? QStringLiteral("-dark") : QStringLiteral("-light"));
        if (wanted.scale != 1)
            suffix_ += QLatin1Char('-') + QString::number(qRound(wanted.scale * 100));
        if (wanted.fontSize > 0)
            suffix_ += QStringLiteral("-pt") + QString::number(wanted.fontSize);
    }

protected:
    /// Takes the picture of what a step shows modally, and leaves it.
    template<class Step>
    void modal(const QString& name, Step&& step) {
        // A dialog gives event turns while it is being made.
        QTimer watch;
        QObject::connect(&watch, &QTimer::timeout, qApp, [&] {
            auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
            if (!dialog)
                return;
            watch.stop();
            take(*dialog, name);
            dialog->reject();
        });
        watch.start(10);
        step();
    }

    static void settle() {
        for (int i = 0; i < 5; ++i) {
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            QCoreApplication::processEvents();
        }
    }

    static void waitUntil(const std::function<bool()>& done, int milliseconds) {
        for (QDeadlineTimer end(milliseconds); !done() && !end.hasExpired();)
            QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    }

    void take(QWidget& window, const QString& name) {
        settle();
        const QString file = QDir(folder_).filePath(name + suffix_ + QStringLiteral(".png"));
        if (!window.grab().save(file))
            throw std::runtime_error(qPrintable(file + QStringLiteral(" cannot be written")));
    }

    template<class Widget>
    static Widget& in(Form& form, const QString& name) {
        auto* widget = form.widget().findChild<Widget*>(name);
        if (!widget)
            throw std::runtime_error(qPrintable(QStringLiteral("no control ") + name));
        return *widget;
    }

    static frmExplorer& explorer() {
        auto* window = dynamic_cast<frmExplorer*>(desktop().activeForm());
        if (!window)
            throw std::runtime_error("no explorer in front");
        return *window;
    }

    /// Presses a key on a widget, or types a text.
    static void press(QWidget& widget, int key, const QString& text = QString(),
                      Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QKeyEvent down(QEvent::KeyPress, key, modifiers, text);
        QCoreApplication::sendEvent(&widget, &down);
        QKeyEvent up(QEvent::KeyRelease, key, modifiers, text);
        QCoreApplication::sendEvent(&widget, &up);
        settle();
    }

    /// Selects the row of the list that shows a variable.
    static bool selectVariable(frmExplorer& window, const QString& name) {
        auto& list = in<QAbstractItemView>(window, QStringLiteral("lvListView"));
        const QModelIndexList found = list.model()->match(list.model()->index(0, 0), Qt::DisplayRole, name);
        if (found.isEmpty())
            return false;
        list.setFocus();
        list.setCurrentIndex(found.first());
        settle();
        return true;
    }

private:
    QString folder_, suffix_;
};
