#pragma once

#include "analysis/StoredResults.h"
#include "analysis/WindowChart.h"
#include "analysis/request/ComparisonList.h"
#include "analysis/request/RequestEditor.h"
#include "analysis/result/TableResult.h"
#include "analysis/run/RunInput.h"
#include "analysis/run/userFilter.h"
#include "charts/pictures.h"
#include "tables/StoredTable.h"

#include <array>
#include <functional>

/// What the window shows and lets the user do, as data; everything follows from request, study and tab.
struct AnalysisView {
    bool secondVariable = false, comparison = false, cmdDescriptives = false;
    bool dt_WeightRE = false, dt_WeightHH = false; ///< fields shown
    std::array<bool, 4> Option3{};                 ///< enabled
    bool userWeight = false;                       ///< the three user-weight pickers enabled
    std::array<bool, 3> optFilter{};               ///< enabled
    bool dbcPartsShown = false, dbcPartsEnabled = false, txtFilterEnabled = false;
    bool chkVaridexCreation = false; ///< offered
    bool cbValuesShown = false;      ///< on the tabs of table and chart
    bool cbValuesEnabled = false;    ///< whenever it is shown, but for a table that was stored in one view
    bool cmd_ClearTrend = false, cmd_SaveTrend = false; ///< enabled
    bool tableCommands = false, chartCommands = false;  ///< what prints the table, the chart that is shown: enabled
};

/// The model of the analysis window: its request, the last result, the tab in front, and the run that goes on.
class AnalysisModel {
public:
    AnalysisModel();
    AnalysisModel(const AnalysisModel&) = delete;
    AnalysisModel& operator=(const AnalysisModel&) = delete;

    /// What happens when the window opens: the request is empty, nothing is shown, tab 0.
    void open();

    const AnalysisRequest& request() const { return editor_.request(); }
    /// The way to change the request.
    RequestEditor& edit() { return editor_; }
    ComparisonList& comparison() { return comparison_; }
    /// What a run would say to a filter text; asks no engine and attaches nothing.
    FilterResult checkFilter(const QString& text) const;
    AnalysisView view() const;

    // ---- the run
    int tab() const { return tab_; }
    /// Goes to a tab; 1 and 2 run the request, and a run that is refused ends on tab 0. While a run goes on it is
    /// cancelled instead, and no other starts.
    RunOutcome changeTab(int tab);
    /// New calculation on demand; asks its two questions.
    void cmdCalculate();
    /// Runs the request for a table that no longer fits it: marks that the user has set are kept where they still
    /// apply.
    void computeAnew();
    /// Ends the run that goes on.
    void stop() { bCancelRun_ = true; }
    /// True while any model runs: other windows leave the engine alone then.
    static bool running();
    /// Runs of no window: as long as it lives no model runs, and others know it.
    class RunApart {
    public:
        RunApart();
        ~RunApart();
        RunApart(const RunApart&) = delete;
        RunApart& operator=(const RunApart&) = delete;
    };
    /// Options were applied: marks count no more at the next run.
    void optionsApplied();

    /// What a run may ask of the window and let it know. Whether it is cancelled is this model's.
    void setHooks(RunHooks hooks);
    const RunHooks& hooks() const { return hooks_; }

    // ---- the result
    const TableResult& result() const { return result_; }
    const RunFacts& facts() const { return result_.run; }
    TableState tableState() const;
    /// The line of vdx that makes the table again as it is shown. Nothing where none does: see vdxArguments(), and
    /// where an entry of a comparison, perhaps kept long ago, is not what the catalogue has under its names now.
    std::optional<QString> command() const;
    /// Shows one of the views of a crosstab or comparison (0 "absolute Werte", 1 "Spaltenprozente", 2 "Zeilenprozente",
    /// 3 "Gesamtprozente"). Nothing in other modes and while a run goes on. A comparison refuses 2 and 3 with a message
    /// and shows 0.
    void chooseValues(int view);
    bool marksCanBeSet() const { return result_.marksCanBeSet(request().cbValues); }
    /// A selection in mfgGrid, by mouse or key: changes the marks of data rows, or asks for a new calculation.
    ClickEffect mfgGrid_Click(const GridSelection& selection);
    /// A click on the head of a column, or of a crosstab's mark row: only asks.
    ClickEffect headerClick();
    /// The click on one selected cell of a frequency table or comparison; for a larger selection nothing.
    ClickEffect cmdSetMissing(const GridSelection& selection);

    /// Whether rows or columns of the table in view can be put into another order.
    bool canOrder() const;
    /// Asks for the order of the rows or of the columns, and puts them into it. What follows from the table, its chart
    /// and its other views, follows; a new calculation brings the table's own order back. @return whether it is another
    bool order(TableLines lines);
    /// The same, after asking which of the two where both are possible.
    bool showPosition();

    /// Gives a column or row of the table another size in twips, in every view of it.
    void setColWidth(int column, int twips);
    void setRowHeight(int row, int twips);

    // ---- what the catalogue keeps
    StoredResults& stored() { return stored_; }
    const StoredResults& stored() const { return stored_; }
    const KeptWithVariable& kept() const { return editor_.kept(); }
    /// Shows a table that was stored in place of the one that was made; what was marked by hand in that one holds for
    /// the next run.
    void showStored(const StoredTable& stored, StoredOrigin origin);

    // ---- the chart
    WindowChart& chart() { return chart_; }
    const WindowChart& chart() const { return chart_; }
    /// True if the options of the chart may mark values as missing: of a frequency and of the rows of a crosstab in
    /// absolute values.
    bool chartMarksOffered() const;
    /// Takes what was changed in the options of the chart. Other marks go to the table, which is computed anew with
    /// them; nothing is asked.
    void changeChart(const LabelTable& changed);
    /// Asks anew which part of too many values is drawn.
    void chooseFirstValue();
    /// Whether charts can be kept as pictures; a window starts it when it opens.
    PictureSupport& pictures() { return pictures_; }
    const PictureSupport& pictures() const { return pictures_; }

private:
    RequestEditor editor_;
    ComparisonList comparison_{editor_};
    StoredResults stored_{*this};
    TableResult result_;
    WindowChart chart_;
    PictureSupport pictures_;
    RunHooks hooks_;
    int tab_ = 0;
    bool bCancelRun_ = false;
    int chosenView_ = 0; ///< of cbValues, through all runs of the window

    void run();
    void runAnew();
    void carryMarks();
    void showChosenView();
    void rebuildChart();
    bool isInCatalogue(const ComparisonEntry& entry) const;
    TableResult withWeightByName() const;
    bool isInOtherLanguage() const;
};
