#pragma once

#include "analysis/AnalysisModel.h"
#include "widgets/Form.h"

#include <memory>

class ChoicePicker;
class frmExplorer;

/// The analysis window: the request, the table, the chart.
class frmAuswertung : public QWidget, public Form {
public:
    /// Opens a window; what is selected in an explorer is chosen in it.
    /// @param explorer null without one in front
    static frmAuswertung* openFrom(const frmExplorer* explorer);

    frmAuswertung();
    ~frmAuswertung() override;

    AnalysisModel& model() { return model_; }
    ComparisonList& comparison() { return model_.comparison(); }
    /// Copies what the tab in front shows: the table, or the selected text.
    void copy();
    /// Asks for a file and writes the table to it, as csv or as an HTML page.
    void saveTableAs();

    void optionsApplied() override;
    void refreshTitles() override;

protected:
    void closeEvent(QCloseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct Widgets;

    AnalysisModel model_;
    std::unique_ptr<Widgets> w_;
    bool showing_ = false;     ///< the window is being set from the model
    bool filterTyped_ = false; ///< the filter was edited and has not counted yet

    void build();
    QWidget* buildRequest();
    QWidget* buildStudy();
    QWidget* buildVariable(bool second);
    QWidget* buildMode();
    QWidget* buildWeight();
    QWidget* buildFilter();
    QWidget* buildComparison();
    QWidget* buildTable();
    QWidget* buildTableCommands();
    void connectRequest();
    void connectChoices();
    void connectFilter();
    void connectComparison();
    void connectTable();
    void alignCaptions();
    void nameForReaders();

    void act(const std::function<void()>& step);
    void run(const std::function<void()>& step);
    void changeTab(int tab);
    void chooseStudy(int index);
    void finishFilter();
    void selectEntries();
    void changeMode(const std::function<void(AnalysisRequest&)>& step);
    QStringList whatItStandsOn() const;
    void cmdDescriptives_Click();
    void preselect(const frmExplorer& explorer);
    void showModel();
    void showRunning();
    void showRequest(const AnalysisView& view);
    void showLongLabels();
    void showWeight(const AnalysisView& view);
    void showFilter(const AnalysisView& view);
    void showFilterCheck();
    void showComparison(const AnalysisView& view);
    void showTable(const AnalysisView& view);
    void showFacts();
    void showTableState();
    void marked(ClickEffect effect);
};
