#include "analysis/AnalysisModel.h"

#include "analysis/CreateSQL.h"
#include "app/globals.h"
#include "catalogue/CDaoDatabase.h"
#include "config/Options.h"
#include "diagnostics/errors.h"
#include "platform/ui/Asker.h"

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

/// The model whose run goes on. A statement under way must not meet another one, so there is one run at a
/// time.
AnalysisModel* runningModel = nullptr;

class RunningScope {
public:
    explicit RunningScope(AnalysisModel* model) { runningModel = model; }
    ~RunningScope() {
        runningModel = nullptr;
        ui::asker().setPointer(ui::Pointer::Default);
    }
    RunningScope(const RunningScope&) = delete;
    RunningScope& operator=(const RunningScope&) = delete;
};

} // namespace

bool AnalysisModel::running() {
    return runningModel != nullptr;
}

RunOutcome AnalysisModel::changeTab(int tab) {
    if (running()) {
        if (runningModel == this) {
            bCancelRun = true;
            tab_ = tab;
        }
        return RunOutcome::NotRun;
    }
    bCancelRun = true;
    tab_ = tab;
    if (tab == 0)
        return RunOutcome::NotRun;
    facts_ = {};
    facts_.outcome = RunOutcome::Refused;
    if (!dtData3.Tag.isEmpty() && isInOtherLanguage() && keepMarks())
        takeMarks();
    trapped([this] { runRequest(); });
    if (facts_.outcome == RunOutcome::Refused)
        tab_ = 0;
    return facts_.outcome;
}

/// The run of a tab change: current fields, the checks, the dispatcher.
void AnalysisModel::runRequest() {
    loadVariable(true);
    if (request.mode == AnalysisMode::Comparison && request.lst_TrendVars.isEmpty()) {
        refuse(u"Bitte eine Variable auswählen"_s);
    } else if (request.mode != AnalysisMode::Comparison && (request.dtTable.isEmpty() || request.dtField.isEmpty())) {
        clearTable();
        refuse(u"Bitte eine Variable auswählen"_s);
    } else if (request.mode == AnalysisMode::Crosstab && (request.dtTable2.isEmpty() || request.dtField2.isEmpty())) {
        clearTable();
        refuse(u"Bitte eine zweite Variable auswählen"_s);
    } else if (request.mode != AnalysisMode::Comparison && request.Option3 == WeightKind::WeightUser &&
               request.weightVariable().isEmpty()) {
        // Without a variable nothing would be weighted, whatever the choice says.
        refuse(u"Gewichtungsvariable auswählen"_s);
    } else {
        TAB1();
    }
}

void AnalysisModel::TAB1() {
    if (running())
        return;
    bNewCalc = false;
    facts_ = {};
    gridTouched_ = false;
    const QString tagBefore = mfgGrid.Tag;
    mfgGrid.Tag = tagOfMode(request.mode);
    {
        const RunningScope scope(this);
        ui::asker().setPointer(ui::Pointer::Wait);
        if (onRun)
            onRun();
        facts_.outcome = dispatch();
    }
    stopped_ = facts_.outcome == RunOutcome::Cancelled;
    if (facts_.outcome == RunOutcome::Reused && shown_) {
        // The title is new with every run; the statistics were made with the missing values of their own.
        if (request.mode == AnalysisMode::Descriptives)
            request.sMissing = shown_->request.sMissing;
        shown_->request = request;
        shown_->options.IncludeMissing = gOptions.IncludeMissing;
    }
    // A run that ended early may have left the table as it was: the tag goes on saying what that is.
    const bool early = facts_.outcome == RunOutcome::Refused || facts_.outcome == RunOutcome::Cancelled;
    if (early && !gridTouched_)
        mfgGrid.Tag = tagBefore;
}

RunOutcome AnalysisModel::dispatch() {
    if (!builder())
        return refuse(u"Diese Auswertung ist in dieser Version noch nicht enthalten."_s);
    const bool first = !request.dtTable.isEmpty() && !request.dtField.isEmpty();
    const bool second = !request.dtTable2.isEmpty() && !request.dtField2.isEmpty();
    switch (request.mode) {
    case AnalysisMode::Frequency:
    case AnalysisMode::Descriptives:
        return first ? CreateSQL(*this).run() : RunOutcome::NotRun;
    case AnalysisMode::Crosstab:
        if (request.dbcVariable.value.compare(request.dbcVariable2.value, Qt::CaseInsensitive) == 0)
            return refuse(u"Doppelte Variablen"_s);
        return first && second ? CreateSQL(*this).run() : RunOutcome::NotRun;
    case AnalysisMode::Comparison:
        return request.lst_TrendVars.isEmpty() ? RunOutcome::NotRun : CreateSQL(*this).run();
    }
    return RunOutcome::NotRun;
}

/// Shows why there is no run and goes to tab 0.
RunOutcome AnalysisModel::refuse(const QString& text) {
    ui::asker().messageBox({.text = TranslateText(text), .icon = ui::Icon::Exclamation});
    tab_ = 0;
    return RunOutcome::Refused;
}

/// Nothing valid is shown any more.
void AnalysisModel::clearTable() {
    mfgGrid.Clear();
    gridTouched_ = true;
    dtData3.Tag.clear();
    lblLabel.clear();
    shown_.reset();
}

void AnalysisModel::cmdCalculate() {
    if (running())
        return;
    const auto yes = [](const QString& question) {
        return ui::asker().messageBox({TranslateText(question), QString(), ui::Icon::Question, ui::Buttons::YesNo}) ==
               ui::Answer::Yes;
    };
    if (!yes(u"Möchten Sie die Tabelle neuberechnen?"_s))
        return;
    if (yes(u"Möchten Sie die ursprünglichen Missing Value Definitionen wiederherstellen?"_s)) {
        request.sMissing = request.dtMissing;
        bUserMissing = false;
    } else {
        bUserMissing = true;
    }
    dtData3.Tag.clear();
    changeTab(1);
}

void AnalysisModel::chooseValues(int view) {
    const bool crosstab = request.mode == AnalysisMode::Crosstab;
    if (running() || view < 0 || view > 3 || (!crosstab && request.mode != AnalysisMode::Comparison))
        return;
    // A mode that was chosen since has no table yet.
    if (!mfgGrid.Tag.isEmpty() && mfgGrid.Tag != tagOfMode(request.mode))
        return;
    if (!crosstab && view > 1) {
        ui::asker().messageBox(
            {.text = TranslateText(u"In Vergleichsauswertung nicht erlaubt"_s), .icon = ui::Icon::Exclamation});
        view = 0;
    }
    request.cbValues = view;
    const ResultTable& source = *std::array{&mfgGrid5, &mfgGrid2, &mfgGrid3, &mfgGrid4}[static_cast<size_t>(view)];
    if (crosstab) {
        const QString tag = mfgGrid.Tag;
        mfgGrid = source;
        mfgGrid.Tag = tag;
        return;
    }
    // A comparison's views share their first columns with the table shown.
    for (int row = 1; row < std::min(mfgGrid.Rows(), source.Rows()); ++row)
        for (int column = 3; column < std::min(mfgGrid.Cols(), source.Cols()); ++column)
            mfgGrid.setCell(column, row, source.Cell(column, row));
}

AnalysisModel::Origin AnalysisModel::origin() const {
    const dao::DatabasePtr database = gDatabase.CurrentDatabase();
    return {database ? database->Name() : QString(), gOptions.DataPath, gLanguage};
}

void AnalysisModel::noteTable(bool complete, const std::vector<TableFacts::Round>& rounds) {
    shown_ = TableFacts{.request = request,
                        .options = gOptions,
                        .rounds = rounds,
                        .flip = flipInForce(),
                        .statistics = statisticsKey(request),
                        .marksByHand = bMarksKept,
                        .marks = marksOf(mfgGrid),
                        .markedRows = markedRows(mfgGrid),
                        .markedColumns = markedColumns(mfgGrid),
                        .area = markArea(mfgGrid, gOptions.SeparateValidCases),
                        .complete = complete};
}

TableState AnalysisModel::tableState() const {
    if (!shown_)
        return TableState::None;
    if (!shown_->complete)
        return TableState::CutShort;
    if (stopped_)
        return TableState::Stopped;
    const bool flipped = request.mode == AnalysisMode::Crosstab && shown_->flip != flipInForce();
    if (!asksTheSame(shown_->request, request) || flipped)
        return TableState::OtherRequest;
    if (shown_->statistics != statisticsKey(request)) {
        const bool chosen =
            shown_->request.dtDesc != request.dtDesc || shown_->request.dtDescDigits != request.dtDescDigits;
        return chosen ? TableState::OtherRequest : TableState::OtherOptions;
    }
    if (!showsTheSame(request.mode, shown_->options, gOptions) || last_.origin != origin())
        return TableState::OtherOptions;
    return marksOf(markedTable()) == shown_->marks ? TableState::Current : TableState::OtherMarks;
}

/// The views of a crosstab take the place of the table that is marked.
const ResultTable& AnalysisModel::markedTable() const {
    return mfgGrid.Tag == "Crosstab"_L1 && request.cbValues != 0 ? mfgGrid5 : mfgGrid;
}

/// True if the marks were set by hand and fit the table that is to come.
bool AnalysisModel::keepMarks() const {
    return (shown_->marksByHand || marksOf(markedTable()) != shown_->marks) &&
           keepsMarks(shown_->request.mode, shown_->options, gOptions);
}

/// True if the table is that of the request but for its words: they change with the language, the marks of its values
/// don't.
bool AnalysisModel::isInOtherLanguage() const {
    if (!shown_ || last_.origin.language == gLanguage)
        return false;
    Origin translated = last_.origin;
    translated.language = gLanguage;
    return shown_->complete && translated == origin() && asksTheSame(shown_->request, request) &&
           showsTheSame(request.mode, shown_->options, gOptions) &&
           (request.mode != AnalysisMode::Crosstab || shown_->flip == flipInForce());
}

/// The next run computes and takes over the marks that the user has set, where they still apply.
void AnalysisModel::takeMarks() {
    const TableState state = tableState();
    // A run that was cut short has left the marks that it was to take.
    if (state != TableState::CutShort)
        bUserMissing = shown_ && asksTheSame(shown_->request, request) && keepMarks();
    // The marks are read from the table in the shape that the options now give it.
    if (bUserMissing && mfgGrid.Tag == "Frequency"_L1 && shown_ &&
        shown_->options.SeparateValidCases != gOptions.SeparateValidCases) {
        separateValidRow(mfgGrid, gOptions.SeparateValidCases);
        shown_->options.SeparateValidCases = gOptions.SeparateValidCases;
        shown_->area = markArea(mfgGrid, gOptions.SeparateValidCases);
    }
    dtData3.Tag.clear();
}

void AnalysisModel::computeAnew() {
    if (running())
        return;
    takeMarks();
    changeTab(1);
}

void AnalysisModel::optionsApplied() {
    bUserMissing = false;
    if (dtData3.recordset && !running())
        attempt([this] { dtData3.recordset->Requery(); });
}

ClickEffect AnalysisModel::mfgGrid_Click(const GridSelection& selection) {
    if (running() || !shown_ || !shown_->complete)
        return ClickEffect::None;
    if (!takesMarks())
        return ClickEffect::None;
    const ClickEffect effect = clickTable(mfgGrid, selection, shown_->area);
    if (effect == ClickEffect::Marked && mfgGrid.Tag == "Crosstab"_L1)
        clickTable(mfgGrid5, selection, shown_->area); // for when the views are changed
    if (effect == ClickEffect::Ask)
        cmdCalculate();
    return effect;
}

ClickEffect AnalysisModel::headerClick() {
    return mfgGrid_Click(
        {.Row = mfgGrid.FixedRows, .RowSel = mfgGrid.Rows() - 1, .Col = markColumn, .ColSel = markColumn});
}

bool AnalysisModel::takesMarks() const {
    if (mfgGrid.Tag == "Crosstab"_L1)
        return request.cbValues == 0;
    return mfgGrid.Tag == "Frequency"_L1 || mfgGrid.Tag == "Trend"_L1;
}

ClickEffect AnalysisModel::cmdSetMissing(const GridSelection& selection) {
    return selection.isOneCell() && mfgGrid.Tag != "Crosstab"_L1 ? mfgGrid_Click(selection) : ClickEffect::None;
}
