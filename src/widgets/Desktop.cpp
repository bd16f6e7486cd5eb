#include "widgets/Desktop.h"

namespace {
Desktop plain;
Desktop* current = &plain;
} // namespace

Desktop& desktop() {
    return *current;
}

void setDesktop(Desktop* desktop) {
    current = desktop ? desktop : &plain;
}

void unloadChildWindows() {
    // Closing one may close others with it, so the list is read anew each time.
    for (;;) {
        Form* child = nullptr;
        for (Form* form : Form::open())
            if (form->windowName().compare(QLatin1String("frmMain"), Qt::CaseInsensitive) != 0)
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
