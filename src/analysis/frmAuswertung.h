#pragma once

#include "analysis/AnalysisModel.h"
#include "widgets/Form.h"

#include <array>
#include <memory>
#include <vector>

class PrinterCTL;
class QPushButton;
class QTabWidget;
class frmAuswertungCases;
class frmAuswertungChart;
class frmAuswertungComparison;
class frmAuswertungInstructions;
class frmAuswertungPart;
class frmAuswertungRequest;
class frmAuswertungTable;
class frmAuswertungValues;
class frmExplorer;

/// The analysis window: the request, the table, the chart. Its parts own the controls; it lets one gesture at a time
/// through to the model and has the parts show what came of it.
class frmAuswertung : public QWidget, public Form {
public:
    /// What of the window is printed.
    enum class Printed { Table, Chart };

    /// Opens a window; what is selected in an explorer is chosen in it.
    /// @param explorer null without one in front
    static frmAuswertung* openFrom(const frmExplorer* explorer);

    frmAuswertung();
    ~frmAuswertung() override;

    AnalysisModel& model() { return model_; }
    ComparisonList& comparison() { return model_.comparison(); }
    /// A gesture that changes the request: the model decides, the window shows what came of it.
    void act(const std::function<void()>& step);
    /// A gesture that may compute. Nothing else may happen meanwhile but what stops it.
    void run(const std::function<void()>& step);
    /// A gesture that runs the instructions of many variables: only what stops that may happen meanwhile.
    void runBatch(const std::function<void()>& step);
    /// False, with a message, while something stands typed in a field that is none of its choices: nothing may be made
    /// of the choice before then.
    bool isTypedOut();
    /// Copies what the tab in front shows: the table, the chart, or the selected text.
    void copy();
    void copyChart();
    /// Copies the line of vdx that makes the table again.
    void copyCommand();
    /// Asks for a file and writes the table to it, as csv or as an HTML page.
    void saveTableAs();
    /// Shows the table, or the chart, as it looks on paper.
    void cmdPreview(Printed what);
    /// Prints it, after asking on what.
    void cmdPrint(Printed what);
    /// Whether the table in front has rows or columns that can be put into another order, and asks for it.
    bool canOrder() const { return model_.canOrder(); }
    void showPosition();
    void order(TableLines lines);
    /// True if there is a chart in front.
    bool showsChart() const;
    void showChartOptions();

    void optionsApplied() override;
    void refreshTitles() override;

protected:
    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    AnalysisModel model_;
    QTabWidget* SSTab_ = nullptr;
    std::unique_ptr<frmAuswertungRequest> request_;
    std::unique_ptr<frmAuswertungCases> cases_;
    std::unique_ptr<frmAuswertungInstructions> instructions_;
    std::unique_ptr<frmAuswertungComparison> comparison_;
    std::unique_ptr<frmAuswertungValues> values_;
    std::unique_ptr<frmAuswertungTable> table_;
    std::unique_ptr<frmAuswertungChart> chart_;
    QPushButton* cmdCompute_ = nullptr;
    bool showing_ = false;   ///< the window is being set from the model
    bool finishing_ = false; ///< what was typed is being taken
    bool chartInView_ = false;
    int shownTab_ = 0; ///< the tab that the window has followed; another one in SSTab is on its way

    void build();
    QWidget* buildRequest();
    void setHooks();
    void showTitle();
    void preselect(const frmExplorer& explorer);
    std::array<frmAuswertungPart*, 7> parts() const;
    void alignCaptions();
    void showParts(void (frmAuswertungPart::*what)());
    void runGuarded(const std::function<void()>& step, const std::function<void()>& stop,
                    const std::vector<QWidget*>& controls, const std::function<void()>& after);
    void resultChanged();
    void changeTab(int tab);
    static void tellOfCopy(const QString& text);
    void handToReport(Printed what, void (PrinterCTL::*outlet)());
    void finishTyping();
    void compute();
};
