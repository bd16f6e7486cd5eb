#pragma once

#include "widgets/Form.h"

#include <QDialog>

class QCheckBox;

/// The start window: name and version of the program, and the choice of the language. A key pressed on the window
/// itself does nothing; its buttons take keys as ever. Closing it by its frame changes nothing.
class frmSplash : public QDialog, public Form {
public:
    frmSplash();
    ~frmSplash() override;

    /// Shows the window and waits for its end.
    static void showModal();

    /// Takes a language, shows the wait window and stores language and start-window flag.
    void cmdLanguage_Click(int language);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    QCheckBox* chkSys_;
};
