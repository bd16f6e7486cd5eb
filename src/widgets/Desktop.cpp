#include "widgets/Desktop.h"

#include <QDialog>

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

void focusMainWindow() {
    for (Form* form : Form::open())
        // Of its children, the one that had the keyboard before gets it again.
        if (form->windowName() == QLatin1String("frmMain"))
            form->widget().activateWindow();
}

void unloadChildWindows() {
    // Whoever made a dialog owns it; it is asked to end, and deleted by its owner.
    for (Form* form : std::vector<Form*>(Form::open()))
        if (Form::isOpen(form))
            if (auto* dialog = qobject_cast<QDialog*>(&form->widget()); dialog && dialog->isVisible())
                dialog->reject();
    // Closing one may close others with it, so the list is read anew each time.
    for (;;) {
        Form* child = nullptr;
        for (Form* form : Form::open())
            if (form->windowName().compare(QLatin1String("frmMain"), Qt::CaseInsensitive) != 0 &&
                !qobject_cast<QDialog*>(&form->widget()))
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
