#pragma once

#include "app/ImportModel.h"
#include "app/VdxProcess.h"
#include "widgets/Form.h"

#include <QDialog>
#include <functional>

class QCheckBox;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QProgressBar;
class QPushButton;

/// Imports a survey file through a child process: asks what goes where, shows how far it is and what it has done, and
/// stops it.
class frmImport : public QDialog, public Form {
public:
    /// @param catalogue that is proposed
    frmImport(const QString& file, const QString& catalogue, QWidget* parent);
    ~frmImport() override;

    /// Called before the import is run; false keeps it from running. The frame closes a catalogue that is open.
    std::function<bool(const QString& catalogue)> mayWrite;
    /// The catalogue that has taken the study and is to be opened; empty without one.
    const QString& wanted() const { return wanted_; }
    /// A catalogue into which a study was imported while the dialog was open; empty without one.
    const QString& imported() const { return imported_; }

    void cmdImport_Click();
    void cmdStop_Click();
    void cmdOpen_Click();
    void cmdCancel_Click() { reject(); }
    void refreshTitles() override;
    /// While an import runs it asks first, and stops it.
    void reject() override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    /// A field with its caption, what is wrong with it below, and a button to choose a file where it names one.
    struct Row {
        QLineEdit* field = nullptr;
        QLabel* words = nullptr;
        QPushButton* browse = nullptr;
    };
    ImportModel model_;
    VdxProcess process_;
    QString wanted_, imported_;
    bool beginning_ = false;
    Row file_, catalogue_, study_, title_;
    QCheckBox* chkReplace_ = nullptr;
    QCheckBox* chkEncode_ = nullptr;
    QLabel* lblState_ = nullptr;
    QProgressBar* pgbProgress_ = nullptr;
    QPlainTextEdit* txtFacts_ = nullptr;
    QPushButton *cmdImport_ = nullptr, *cmdStop_ = nullptr, *cmdOpen_ = nullptr, *cmdCancel_ = nullptr;

    Row addRow(class QGridLayout& grid, const QString& name, const QString& caption, const QString& tip = {});
    void build();
    QWidget* buildButtons();
    void connectControls();
    void browseFile();
    void browseCatalogue();
    void offerImport();
    void showModel();
    void ended(const VdxProcess::End& end);
};
