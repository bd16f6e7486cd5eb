#pragma once

#include "widgets/Form.h"

#include <QDialog>

class QLabel;

/// The wait window: one line, in the middle of the screen, under a wait pointer.
class frmStatus : public QDialog, public Form {
public:
    frmStatus();
    ~frmStatus() override;

    void refreshTitles() override;

    /// Shows the one wait window of the program, not modally.
    static void showWait();
    /// Takes it away again if it is there.
    static void unload();

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    QLabel* lblInfo;
};
