#pragma once

#include "analysis/AnalysisRequest.h"
#include "analysis/TableFacts.h"
#include "analysis/caseData.h"
#include "analysis/runTrap.h"
#include "analysis/tableClick.h"
#include "analysis/userFilter.h"
#include "platform/dao/DBEngine.h"
#include "tables/ResultTable.h"
#include "tables/TableBuilder.h"

#include <array>
#include <functional>
#include <optional>
#include <vector>

/// A recordset with the statement it came from, and a tag.
struct DataHolder {
    QString source;
    dao::RecordsetPtr recordset;
    QString Tag;
};

/// How a run ended.
enum class RunOutcome {
    NotRun,    ///< nothing was asked of the catalogue yet
    Computed,  ///< the tables are new
    Reused,    ///< the request is the one that the tables show
    Refused,   ///< a check or a failure ended it; its words have been shown, tab 0 is in front
    Cancelled, ///< bCancelRun; nothing valid is shown
    Truncated  ///< more values than the table takes; its words have been shown, the table is incomplete
};

/// What a run handed to the engine, as it stood.
struct RunFacts {
    RunOutcome outcome = RunOutcome::NotRun;
    QStringList q; ///< text of the stored query, one a round (a comparison has one round per entry)
    QStringList
        counts; ///< the count statement, likewise; behind it the one without its condition where that was asked too
};

/// What the window shows and lets the user do, as data; everything follows from request, study and tab.
struct AnalysisView {
    bool requestTab = false, tableTab = false, chartTab = false; ///< the tab in front
    bool tableCommands = false; ///< cmdPreview, cmdPrint, cmdCalculate, cmdSetMissing shown
    bool printInColour = false; ///< what the printer is set to for the tab
    bool secondVariable = false, comparison = false, cmdDescriptives = false;
    bool dt_WeightRE = false, dt_WeightHH = false; ///< fields shown
    std::array<bool, 4> Option3{};                 ///< enabled
    bool userWeight = false;                       ///< the three user-weight pickers enabled
    std::array<bool, 3> optFilter{};               ///< enabled
    bool dbcPartsShown = false, dbcPartsEnabled = false, txtFilterEnabled = false;
    bool chkVaridexCreation = false; ///< offered
    bool cbValuesShown = false;      ///< on tab 1, enabled whenever it is shown
    bool storedTableCommands = false, instructionCommands = false;
    bool cmdInstructionLoad = false, cmdTableLoad = false, cmdGraphLoad = false; ///< enabled; delete likewise
    bool cmd_ClearTrend = false, cmd_SaveTrend = false;                          ///< enabled
    std::array<bool, 4> mode{};                                                  ///< modes that can be chosen
};

/// A variable of the study that is chosen.
struct StudyVariable {
    QString name, label;
    VariablePlace place;
};

/// The model of the analysis window: one request, its tables, its run. Works on the catalogue open in
/// gDatabase.
///
/// Without a window: open(), StudyClick(), chooseVariable(), what else is wanted, then changeTab(1); read
/// mfgGrid, lblLabel and facts(). Operations that return bool answer false for a choice that the window would
/// not offer (a weight that the study has not got, an unknown variable); the model is then as before. They
/// show no box unless their comment says so.
class AnalysisModel {
public:
    AnalysisModel();
    AnalysisModel(const AnalysisModel&) = delete;
    AnalysisModel& operator=(const AnalysisModel&) = delete;

    // ---- the request
    AnalysisRequest request;

    /// What happens when the window opens: creation mode, studies, an empty variable list, tab 0.
    void open();
    /// The statement that lists the studies, from the view definitions.
    static QString studyQuerySource();
    /// The language of studies, parts and labels: that of the contents when the model was opened.
    bool englishContents() const { return englishContents_; }
    /// The choices for a variable, "<id_Varname>: <label>", in order of position.
    const QStringList& variableChoices() const { return variableChoices_; }
    const std::vector<StudyVariable>& variables() const { return variables_; }
    /// The studies of the catalogue, value the number and text the title.
    std::vector<BoundPicker> studies();
    /// The parts of the study for separate analysis.
    std::vector<BoundPicker> parts();

    /// Loads all that hangs on a study. @return false if the catalogue lists no such study
    bool StudyClick(const QString& study);
    /// Sets the first variable and runs dbcVariable_Change.
    bool chooseVariable(const QString& name);
    bool chooseVariable2(const QString& name);
    /// Loads the fields of the variable in request.dbcVariable.
    void dbcVariable_Change();
    void dbcVariable2_Change();
    /// A definition that stands in place of the catalogue's for the first variable, in dtMissing and
    /// sMissing, through every change of variable until it is taken back with nothing. An empty text: no
    /// value is missing.
    void overrideMissing(const std::optional<QString>& definition);

    /// Runs nothing. @return false for a mode whose tables this version does not build
    bool chooseMode(AnalysisMode mode);
    /// @param variable the weight's variable for WeightUser, else not read
    bool chooseWeight(WeightKind kind, const QString& variable = QString());
    /// The user's own weight, with the variable that was chosen for it last or none yet.
    void chooseUserWeight();
    /// FilterParts needs a study with parts; FilterUser brings back its last text.
    bool chooseFilter(FilterKind kind);
    /// Sets FilterUser and the text, which is read at the run.
    void chooseFilterText(const QString& text);
    /// The same while the text is still being typed: an entry of a comparison does not follow yet.
    void typeFilterText(const QString& text);
    /// What the run's pass would say to a filter text; asks no engine and attaches nothing.
    FilterResult checkFilter(const QString& text) const;
    /// Sets FilterParts and the part. May show "Variable zum Datensatz-Teil nicht gefunden:". @param id
    /// id_Part
    bool choosePart(const QString& id);
    void dbcParts_Change();
    void Update_Filter();
    /// A key in dbcParts: 46 (Delete) empties it; every other key is refused. @return true if it was taken
    bool dbcParts_KeyDown(int key);

    /// True if a crosstab has its variables exchanged: asked for, and in creation mode.
    bool flipInForce() const { return request.chkFlipXtab && bCreationMode; }

    AnalysisView view() const;

    // ---- the run
    int tab() const { return tab_; }
    /// Goes to a tab; 1 and 2 run the request. While a run goes on it is cancelled instead, and no other
    /// starts.
    RunOutcome changeTab(int tab);
    /// The dispatcher of a run, without the checks of a tab change.
    void TAB1();
    /// New calculation on demand; asks its two questions.
    void cmdCalculate();
    /// The click on cbValues: shows one of the views of a crosstab or comparison (0 "absolute Werte", 1
    /// "Spaltenprozente", 2 "Zeilenprozente", 3 "Gesamtprozente") in mfgGrid. Nothing in other modes and while
    /// a run goes on. A comparison refuses 2 and 3 with words and shows 0.
    void chooseValues(int view);
    /// Runs the request for a table that no longer fits it: marks that the user has set are kept where they still
    /// apply.
    void computeAnew();
    /// Options were applied: marks count no more at the next run.
    void optionsApplied();
    /// Ends the run that goes on.
    void stop() { bCancelRun = true; }
    /// True while any model runs: other windows leave the engine alone then.
    static bool running();
    const RunFacts& facts() const { return facts_; }

    // ---- the result
    /// What the shown table was made from; nothing without a table.
    const std::optional<TableFacts>& tableFacts() const { return shown_; }
    TableState tableState() const;
    /// A selection in mfgGrid, by mouse or key: changes the marks of data rows, or asks for a new calculation.
    ClickEffect mfgGrid_Click(const GridSelection& selection);
    /// A click on the head of a column, or of a crosstab's mark row: only asks.
    ClickEffect headerClick();
    /// True if the table that is shown takes clicks on marks: statistics have none, a crosstab only in absolute values.
    bool takesMarks() const;
    /// The click on one selected cell of a frequency table or comparison; for a larger selection nothing.
    ClickEffect cmdSetMissing(const GridSelection& selection);
    ResultTable mfgGrid, mfgGrid2, mfgGrid3, mfgGrid4, mfgGrid5;
    /// Column of mfgGrid that a comparison's builder fills.
    int mfgGridCol = 0;
    QString lblLabel;
    dao::RecordsetPtr counts;
    /// Studies, variables, counts (its Tag is the ResultCacheKey), labels, parts.
    DataHolder dtData1, dtData2, dtData3, dtData4, dtData5;
    bool bUserMissing = false;
    bool bMarksKept = false; ///< set by a builder that took the marks of the table before
    int oldproc = 0;
    bool bNewCalc = false;
    bool bCreationMode = false;
    bool bBatchRun = false;
    bool bCancelRun = false;

    // ---- what a window, a test or the command line adds
    /// Each statement as it is handed over: "q" or "counts", and its text.
    std::function<void(const QString& name, const QString& statement)> onStatement;
    /// A run begins; nothing without one.
    std::function<void()> onRun;
    /// Opens the missing-value dialog of Descriptives; nothing without one.
    std::function<void(AnalysisModel&)> askMissing;
    /// Hears of a statistic or percentage that cannot be computed, in place of the standard error box; see
    /// FrequencyInput, CrosstabInput and DescriptivesInput.
    std::function<void(const QString& place, const dao::Error& error)> onStatisticFailure;
    /// Runs after a change of weight or filter (an entry of a comparison follows it); nothing without one.
    std::function<void()> applyComparisonEntryChange;
    /// Width of a table text in twips; an estimate by its length until a window sets a true one.
    TextWidth textWidth = estimatedTextWidth;
    RunClock clock = RunClock::system();
    /// The table builder of each mode; null where there is none yet.
    using Builder = std::function<BuildOutcome(AnalysisModel&)>;
    std::array<Builder, 4> builders;
    const Builder& builder() const { return builders[static_cast<size_t>(request.mode)]; }

private:
    friend class CreateSQL;

    /// Where numbers and words of a table come from.
    struct Origin {
        QString catalogue, dataPath;
        qint16 language = 0;
        bool operator==(const Origin&) const = default;
    };

    /// What the tables show beyond the text of the count statement: two requests may share that text and
    /// differ.
    struct Computation {
        QString q, study, variable, variable2, dtMissing, dtMissing2;
        std::vector<AttachedTable> attached;
        Origin origin;
        bool operator==(const Computation&) const = default;
    };

    bool englishContents_ = false;
    QStringList variableChoices_;
    std::vector<StudyVariable> variables_;
    std::optional<TableFacts> shown_;
    bool stopped_ = false; ///< the last run was cancelled
    std::optional<QString> missingOverride_;
    QString lastFilterText_;
    bool creationOffered_ = false;
    bool cbValuesShown_ = false;
    bool hasParts_ = false;
    bool gridTouched_ = false; ///< mfgGrid has changed in this run
    bool hasInstruction_ = false, hasTable_ = false, hasGraph_ = false;
    int tab_ = 0;
    RunFacts facts_;
    Computation last_;
    bool lastIncludeMissingXTab_ = false;
    QString lastStatistics_;                         ///< statisticsKey() of the last table of them
    BoundPicker describedStudy_, describedVariable_; ///< whose statistics dtDesc chooses
    QString selectionVariable_;

    void openNow();
    bool clickStudy(const QString& study);
    void loadVariable2();
    void loadPart();
    const QString& contentField(const QString& original, const QString& english) const;
    bool findStudy(const QString& study);
    bool findVariable(const QString& name);
    BoundPicker pickedVariable() const;
    void loadVariables(const QString& statement);
    void loadWeights();
    void loadParts();
    void loadVariable(bool keepChoices);
    void forgetStatistics();
    void loadGroup();
    void setFilterKind(FilterKind kind);
    void runRequest();
    RunOutcome dispatch();
    RunOutcome refuse(const QString& text);
    void clearTable();
    void noteTable(bool complete, const std::vector<TableFacts::Round>& rounds);
    void leaveComparison();
    const ResultTable& markedTable() const;
    bool keepMarks() const;
    bool isInOtherLanguage() const;
    void takeMarks();
    Origin origin() const;
};
