#pragma once

#include "widgets/Form.h"

class PrinterCTL;
class QAction;

/// The frame window as its child windows know it. Without a frame (a test of one window) a plain one stands in.
class Desktop {
public:
    virtual ~Desktop() = default;
    /// Takes a child window into the frame, shows it and brings it to the front. It is deleted when it is closed.
    virtual void adopt(Form& child) { child.widget().show(); }
    /// Brings a child window to the front, restored if it was minimised, shown if it was hidden.
    virtual void activate(Form& child) { child.widget().show(); }
    /// Minimises all child windows but these, which stand side by side from then on.
    virtual void arrangeBeside(const std::vector<Form*>&) {}
    /// The child window in front; null without one.
    virtual Form* activeForm() const { return nullptr; }
    /// The panels of an explorer were opened or closed, its tree or list has got the keyboard, a chart came into view
    /// or left it: entries, buttons and check marks follow.
    virtual void panelsChanged() {}
    /// The entry of the main menu of that name, as enabled and checked as it is now; null without one.
    virtual QAction* command(const QString&) { return nullptr; }
    /// Says for a moment, without a box, that something was done.
    virtual void mention(const QString&) {}
    /// Says where the catalogue is named how far something is that takes long; an empty text brings the catalogue back.
    virtual void showProgress(const QString&) {}
    /// The report writer of the main window; null without one.
    virtual PrinterCTL* PrinterCTL1() { return nullptr; }
};

/// The desktop of the process; never null.
Desktop& desktop();
/// Sets the desktop (not owned); nullptr brings the plain one back.
void setDesktop(Desktop* desktop);

/// Gives the focus to the main window, as a dialog does that closes.
void focusMainWindow();

/// Closes every loaded window but the main one. Windows are deleted at once, but a dialog only ends.
void unloadChildWindows();
