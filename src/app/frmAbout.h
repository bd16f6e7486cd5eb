#pragma once

#include "widgets/Form.h"

#include <QDialog>

class QPlainTextEdit;
class QPushButton;

/// The about box: name, version, what the program is, and what it runs on.
class frmAbout : public QDialog, public Form {
public:
    explicit frmAbout(QWidget* parent = nullptr);
    ~frmAbout() override;

    /// Shows the window and waits for its end.
    static void showInfo(QWidget* parent);

    /// Versions of program, libraries and system, one a line.
    static QString systemInformation();

private:
    QPlainTextEdit* txtSysInfo_;
    QPushButton* cmdCopy_;

    void showInformation();
};
