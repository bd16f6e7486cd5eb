#pragma once

#include "config/OptionsModel.h"
#include "widgets/Form.h"

#include <QDialog>
#include <QHash>
#include <optional>

class QAbstractButton;
class QTabWidget;

/// The options dialog: shows an OptionsModel on the tabs of tbsOptions and hands every gesture on to it.
class frmOptions : public QDialog, public Form {
public:
    /// Shows the dialog modally over the main window, on the page of an option or on the one that it was left on.
    static void showOptions(QWidget* parent, const std::optional<OptionDescriptor::Member>& option = {});
    /// The same with the page of a path in front and its field ready to be typed in; a path that is not set has the
    /// proposal as its text, which holds once it is applied.
    static void showOptionsAt(QWidget* parent, QString Options::*path, const QString& proposal);

    explicit frmOptions(QWidget* parent = nullptr);
    ~frmOptions() override;

    OptionsModel& model() { return model_; }

    void cmdApply_Click();
    void cmdOK_Click();
    /// Leaves the dialog and gives the focus back to the main window.
    void cmdCancel_Click();
    void cmdLoad_Click();
    void cmdSave_Click();
    /// The page in view gets the values of a fresh installation, to be applied or not.
    void cmdDefaults_Click();

    void refreshTitles() override;
    void reject() override { cmdCancel_Click(); }

protected:
    void keyPressEvent(QKeyEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    OptionsModel model_;
    QTabWidget* tbsOptions_ = nullptr;
    bool showing_ = false;
    bool led_ = false; ///< to a field by the program: the page is not one that somebody was on
    QHash<QString, std::pair<QString, QString>> faults_; ///< of a path field: what was looked at, and what is wrong

    void resizeToContent();
    void fillLists();
    void connectControls();
    void connectButtons();
    /// Gives every control the value and the state that the model has for it.
    void showModel();
    void showValue(QObject* object, const QString& control);
    void showSamples();
    void showFaults();
    void goTo(const QString& field);
    void turnToPageOf(const QString& field);
    void done(int result) override;
    void take(const QString& control, const QString& value);
    void browse(const QString& field, bool byDoubleClick);
    void turnTab(int step);
};
