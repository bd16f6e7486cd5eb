#pragma once

#include "printing/PreviewModel.h"
#include "widgets/Form.h"

#include <QElapsedTimer>
#include <QTimer>
#include <QWidget>
#include <functional>

class EntryFindBar;
class FlowLayout;
class PreviewArea;
class QLabel;
class QProgressBar;
class QSpinBox;
class QToolButton;

/// A report as it will be on paper: its first page at once, the others as they are laid out between events. It does not
/// follow what is edited meanwhile. Printing and saving begin here.
class frmPreview : public QWidget, public Form {
public:
    /// Shows a report in a window of its own, or says why there is none.
    static void Preview(const ReportRequest& request);
    /// @return null where there is nothing to report
    static frmPreview* openReport(std::unique_ptr<ReportRun> run);
    /// Prints a report without showing it.
    static void PrintReport(const ReportRequest& request);

    /// @param model an open one
    explicit frmPreview(std::unique_ptr<PreviewModel> model);
    ~frmPreview() override;

    PreviewModel& model() { return *model_; }

    void cmdPrint_Click();
    void cmdSave_Click();
    /// Stops the laying out of pages, or goes on with it.
    void cmdStop_Click();
    /// Gives the keyboard to the field that names a page, or a variable.
    void askForPage();
    void askForEntry();

    void refreshTitles() override;
    QSize sizeHint() const override;

protected:
    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    std::unique_ptr<PreviewModel> model_;
    QTimer slice_;
    QElapsedTimer sinceShown_;

    PreviewArea* area_;
    EntryFindBar* find_;
    QToolButton *cmdPrint_, *cmdSave_, *cmdPrevious_, *cmdNext_, *cmdBack_, *cmdZoomOut_, *cmdZoomIn_, *cmdWidth_,
        *cmdWhole_, *cmdTwo_, *cmdFind_, *cmdStop_;
    QLabel *lblPage_, *lblCount_, *lblState_;
    QSpinBox *txtPage_, *txtZoom_;
    QProgressBar* pgbPages_;

    void build();
    FlowLayout* buildToolbar();
    QWidget* buildFoot();
    QToolButton* button(const QString& name, const QString& icon, const std::function<void()>& steps);
    void connectControls();
    void addShortcuts();
    void offerMenu();
    void change(const std::function<void()>& steps);
    void work();
    void carryOut(const std::function<QString(ReportRun&)>& output);
    void showState();
    void showStop(PreviewModel::State state);
    void nameControls();
    void leaveFields();
};
