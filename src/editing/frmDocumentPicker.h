#pragma once

#include "editing/DocumentList.h"
#include "widgets/Form.h"

#include <QDialog>

class QLineEdit;
class QListWidget;
class frmExplorer;

/// A small dialog over the documents of the studies: one is chosen, found by typing if need be, and opened.
class frmDocumentPicker : public QDialog, public Form {
public:
    frmDocumentPicker(const QString& windowName, DocumentList::Kind kind, QWidget* parent);
    ~frmDocumentPicker() override;

    /// Makes the first line of a study the current one, at the top of the list; without one all stays.
    void goTo(const QString& study);
    /// Opens the document of the current line, and leaves the dialog unless something hinders that.
    void cmdOK_Click();
    void cmdCancel_Click();
    void reject() override { cmdCancel_Click(); }
    void refreshTitles() override;
    QSize sizeHint() const override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void showEvent(QShowEvent* event) override;

    /// Shows the dialog with the study that the window in front has selected.
    void run(const frmExplorer* active);

private:
    DocumentList list_;
    QLineEdit* txtFilter_;
    QListWidget* lstAuswahl_;

    void buildControls();
    void narrow(const QString& words);
};
