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

private:
    QLabel* lblInfo;
};
