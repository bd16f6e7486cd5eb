#pragma once

#include "config/OptionsModel.h"
#include "widgets/Form.h"

#include <QDialog>

class QAbstractButton;
class QTabWidget;

/// The options dialog: shows an OptionsModel on the tabs of tbsOptions and hands every gesture on to it.
class frmOptions : public QDialog, public Form {
public:
    /// Shows the dialog modally over the main window.
    static void showOptions(QWidget* parent);

    explicit frmOptions(QWidget* parent = nullptr);
    ~frmOptions() override;

    OptionsModel& model() { return model_; }

    void cmdApply_Click();
    void cmdOK_Click();
    /// Leaves the dialog and gives the focus back to the main window.
    void cmdCancel_Click();
    void cmdLoad_Click();
    void cmdSave_Click();

    void refreshTitles() override;
    void reject() override { cmdCancel_Click(); }

protected:
    void keyPressEvent(QKeyEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    OptionsModel model_;
    QTabWidget* tbsOptions_ = nullptr;
    bool showing_ = false;

    void resizeToContent();
    void fillLists();
    void connectControls();
    void connectButtons();
    /// Gives every control the value and the state that the model has for it.
    void showModel();
    void showValue(QObject* object, const QString& control);
    void showSamples();
    void take(const QString& control, const QString& value);
    void browse(const QString& field, bool byDoubleClick);
    void turnTab(int step);
};
