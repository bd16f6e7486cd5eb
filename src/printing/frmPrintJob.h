#pragma once

#include "platform/ui/Asker.h"
#include "widgets/Form.h"

#include <QDialog>
#include <vector>

class QCheckBox;
class QComboBox;
class QGridLayout;
class QLabel;
class QSpinBox;

/// What of a report is printed, on which printer and how often. What will come of it stands below the fields.
class frmPrintJob : public QDialog, public Form {
public:
    frmPrintJob(const ui::PrintJob& proposal, int pages, QWidget* parent);
    ~frmPrintJob() override;

    /// Shows the dialog until it is closed. @return nothing on Cancel
    static std::optional<ui::PrintJob> ask(const ui::PrintJob& proposal, int pages);

    ui::PrintJob job() const;
    void cmdOK_Click();
    void cmdCancel_Click() { reject(); }
    void refreshTitles() override;

private:
    ui::PrintJob proposal_;
    int pages_;
    std::vector<ui::Printer> printers_;

    QComboBox* cmbPrinter_;
    QSpinBox *txtFirst_, *txtCount_, *txtNumber_, *txtCopies_;
    QCheckBox* chkColor_;
    QLabel *lblTold_, *lblPaper_;

    void build();
    QSpinBox* number(QGridLayout& fields, const QString& name, const QString& caption, int value);
    QLabel* note(const QString& name);
    void listPrinters();
    void showState();
    QString paperNote() const;
};
