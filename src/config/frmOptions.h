#pragma once

#include "widgets/Form.h"

#include <QDialog>

/// The options dialog.
class frmOptions : public QDialog, public Form {
public:
    /// Shows the dialog modally over the main window.
    static void showOptions(QWidget* parent);

    explicit frmOptions(QWidget* parent = nullptr);
    ~frmOptions() override;
};
