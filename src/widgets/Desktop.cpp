#include "widgets/Desktop.h"

#include <QDialog>

namespace {
Desktop plain;
Desktop* current = &plain;

bool isModalDialog(const QWidget* window) {
    return qobject_cast<const QDialog*>(window) && window->isModal() && window->isVisible();
}
} // namespace

Desktop& desktop() {
    return *current;
}

void setDesktop(Desktop* desktop) {
    current = desktop ? desktop : &plain;
}

void focusMainWindow() {
    for (Form* form : Form::open())
        if (form->windowName() == QLatin1String("frmMain")) {
            form->widget().activateWindow();
            form->widget().setFocus();
        }
}

void unloadChildWindows() {
    // Who waits for a dialog's end owns it; it is told to end, and goes with its owner.
    for (Form* form : Form::open())
        if (isModalDialog(&form->widget()))
            static_cast<QDialog&>(form->widget()).reject();
    // Closing one may close others with it, so the list is read anew each time.
    for (;;) {
        Form* child = nullptr;
        for (Form* form : Form::open())
            if (form->windowName().compare(QLatin1String("frmMain"), Qt::CaseInsensitive) != 0 && !form->widget().isModal())
                child = form;
        if (!child)
            return;
        QWidget* window = &child->widget();
        // A child lives in a frame of its own within the main window, which goes with it.
        QWidget* holder = window->parentWidget();
        if (holder && holder->inherits("QMdiSubWindow"))
            window = holder;
        delete window;
    }
}
