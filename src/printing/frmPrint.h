#pragma once

#include "printing/PrintChoices.h"
#include "printing/PrinterChoice.h"
#include "printing/reportRequest.h"
#include "widgets/Form.h"

#include <QDialog>

class QCheckBox;
class QComboBox;
class QGridLayout;
class QLabel;
class QRadioButton;

/// The print dialog: what of a window's selection is reported, in which languages of the contents, and for which
/// printer. The report comes into view first and is printed from there.
class frmPrint : public QDialog, public Form {
public:
    /// Without a printer a report can still be looked at and saved; the dialog then asks for none.
    enum class For { Printing, Viewing };

    /// Shows the dialog for a source that has something to print, and after OK the report.
    static void showPrint(QWidget* parent, const PrintSource& source, For purpose);

    frmPrint(const PrintSource& source, PrinterChoice printers, For purpose, QWidget* parent = nullptr);
    ~frmPrint() override;

    const PrintChoices& choices() const { return choices_; }

    void cmd_OK_Click();
    void cmd_Cancel_Click() { reject(); }
    void cmd_ShowOptions_Click();

    void refreshTitles() override;

private:
    PrintSource source_;
    PrintChoices choices_;
    PrinterChoice printers_;
    For purpose_;
    QCheckBox *original_ = nullptr, *english_ = nullptr;
    QWidget* printerLine_ = nullptr;
    QComboBox* cmbPrinter_ = nullptr;
    QLabel* printername_ = nullptr;

    void build();
    QWidget* buildChoices();
    QRadioButton* addChoice(QGridLayout& grid, PrintChoice choice);
    QWidget* buildLanguages();
    QWidget* buildPrinterLine();
    void addHiddenFields();
    QRadioButton* radio(PrintChoice choice) const;
    void showPrinter();
    int paper() const;
};
