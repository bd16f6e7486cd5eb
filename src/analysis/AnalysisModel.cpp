#include "analysis/AnalysisModel.h"

#include "analysis/result/vdxCommand.h"
#include "analysis/runRequest.h"
#include "app/globals.h"
#include "catalogue/CDaoDatabase.h"
#include "config/Options.h"
#include "diagnostics/errors.h"
#include "platform/ui/Asker.h"

#include <QScopedValueRollback>
#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr int tableTab = 1, chartTab = 2;

/// The model whose run goes on. A statement under way must not meet another one, so there is one run at a time.
AnalysisModel* runningModel = nullptr;
bool runningApart = false;

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
    return runningModel || runningApart;
}

AnalysisModel::RunApart::RunApart() {
    runningApart = true;
}

AnalysisModel::RunApart::~RunApart() {
    runningApart = false;
    ui::asker().setPointer(ui::Pointer::Default);
}

AnalysisModel::AnalysisModel() {
    setHooks({});
    // Statistics that were chosen in their dialog are computed even if they are those that are shown.
    editor_.listen([this](RequestPart part) {
        if (part == RequestPart::Statistics)
            result_.computation.ResultCacheKey.clear();
    });
}

void AnalysisModel::open() {
    editor_.open();
    result_ = {};
    chart_ = {};
    tab_ = 0;
}

void AnalysisModel::setHooks(RunHooks hooks) {
    hooks_ = std::move(hooks);
    hooks_.cancelled = [this] { return bCancelRun_; };
    hooks_.begins = [begins = std::move(hooks_.begins)] {
        // What a run says of a file that can't be reached holds for the rest of the program.
        gOptions.DataOnCD = true;
        if (begins)
            begins();
    };
}

FilterResult AnalysisModel::checkFilter(const QString& text) const {
    return ::checkFilter(editor_, text);
}

AnalysisView AnalysisModel::view() const {
    const AnalysisRequest& r = request();
    AnalysisView v;
    v.comparison = r.mode == AnalysisMode::Comparison;
    v.secondVariable = r.groupsByTwo();
    v.cmdDescriptives = r.mode == AnalysisMode::Descriptives;
    v.dt_WeightRE = !r.dt_WeightRE.isEmpty();
    v.dt_WeightHH = !r.dt_WeightHH.isEmpty();
    v.Option3 = {true, v.dt_WeightRE, v.dt_WeightHH, true};
    v.userWeight = r.Option3 == WeightKind::WeightUser;
    v.optFilter = {true, editor_.hasParts(), true};
    v.dbcPartsShown = editor_.hasParts();
    v.dbcPartsEnabled = editor_.hasParts() && r.optFilter == FilterKind::FilterParts;
    v.txtFilterEnabled = r.optFilter == FilterKind::FilterUser;
    v.chkVaridexCreation = editor_.creationOffered();
    v.cbValuesShown = tab_ != 0 && result_.views;
    v.cbValuesEnabled = v.cbValuesShown && !result_.stored;
    v.cmd_ClearTrend = v.cmd_SaveTrend = !r.lst_TrendVars.isEmpty();
    v.tableCommands = result_.hasTable();
    v.chartCommands = stored_.shownGraph() || chart_.state() == WindowChart::State::Drawn;
    return v;
}

RunOutcome AnalysisModel::changeTab(int tab) {
    if (running()) {
        if (runningModel == this) {
            bCancelRun_ = true;
            tab_ = tab;
        }
        return RunOutcome::NotRun;
    }
    bCancelRun_ = true;
    stored_.forgetGraph();
    tab_ = tab;
    if (tab == 0)
        return RunOutcome::NotRun;
    // The words of a table change with the language, the marks of its values don't.
    if (isInOtherLanguage() && result_.marksInForce().by == Marks::By::Hand)
        carryMarks();
    run();
    if (tab_ == chartTab)
        chart_.turnTo(result_, request().cbValues, gOptions);
    return result_.run.outcome;
}

/// Computes whatever is shown; who looks at the chart goes on to.
void AnalysisModel::runAnew() {
    result_.computation.ResultCacheKey.clear();
    tab_ = tab_ == chartTab ? chartTab : tableTab;
    run();
    rebuildChart();
}

/// The chart in view follows what it is of.
void AnalysisModel::rebuildChart() {
    stored_.forgetGraph();
    if (tab_ == chartTab)
        chart_.build(result_, request().cbValues, gOptions);
}

void AnalysisModel::run() {
    bCancelRun_ = false;
    {
        const RunningScope scope(this);
        // While a run goes on nothing is shown; after a failure that it doesn't deal with itself nothing is left.
        TableResult before = std::exchange(result_, {});
        const Marks marks = before.marks;
        // What was stored is no table that a run could go on with.
        if (before.stored)
            before = {};
        result_.run.outcome = RunOutcome::Refused;
        trapped([&] {
            before.marks = marks; // also where it is tried again
            result_ = runRequest(editor_, gOptions, hooks_, std::exchange(before, {}));
        });
    }
    showChosenView();
    if (result_.run.outcome == RunOutcome::Refused)
        tab_ = 0;
}

/// A run shows absolute values; whoever looks at percentages goes on to.
void AnalysisModel::showChosenView() {
    const bool offered = request().mode == AnalysisMode::Crosstab || chosenView_ < 2;
    const int view = offered ? chosenView_ : 0;
    if (result_.run.outcome != RunOutcome::Computed || !result_.views || view == request().cbValues)
        return;
    editor_.change(RequestPart::Values, [view](AnalysisRequest& r) { r.cbValues = view; });
    result_.showView(view);
}

void AnalysisModel::cmdCalculate() {
    if (running())
        return;
    const auto yes = [](const QString& question, ui::Answer byDefault) {
        return ui::asker().messageBox({TranslateText(question), QString(), ui::Icon::Question, ui::Buttons::YesNo,
                                       byDefault}) == ui::Answer::Yes;
    };
    if (!yes(u"Möchten Sie die Tabelle neuberechnen?"_s, ui::Answer::Yes))
        return;
    // What was marked by hand would be lost.
    const bool restored =
        yes(u"Möchten Sie die ursprünglichen Missing Value Definitionen wiederherstellen?"_s, ui::Answer::No);
    result_.marks = restored ? Marks() : result_.marksInForce();
    editor_.change(RequestPart::Missing, [&](AnalysisRequest& r) {
        if (restored)
            r.sMissing = r.dtMissing;
        r.bUserMissing = !restored;
    });
    runAnew();
}

void AnalysisModel::computeAnew() {
    if (running())
        return;
    carryMarks();
    runAnew();
}

/// The next run takes over the marks that the user has set, where they still apply. A run that was cut short has left
/// the marks that it was to take.
void AnalysisModel::carryMarks() {
    if (!result_.facts || !result_.facts->complete)
        return;
    result_.marks = result_.marksInForce();
    AnalysisRequest shown = result_.facts->request;
    // Marks belong to values, whichever axis these stand on and whatever the table is called.
    shown.chkFlipXtab = request().chkFlipXtab;
    shown.bCreationMode = request().bCreationMode;
    shown.txtTitle = request().txtTitle;
    const bool kept = result_.marks.by == Marks::By::Hand && asksTheSame(shown, request(), gOptions);
    editor_.change(RequestPart::Missing, [kept](AnalysisRequest& r) { r.bUserMissing = kept; });
    result_.computation.ResultCacheKey.clear();
}

bool AnalysisModel::isInOtherLanguage() const {
    ResultPlace translated = result_.computation.place;
    if (!result_.facts || !result_.facts->complete || result_.computation.ResultCacheKey.isEmpty() ||
        translated.language == gLanguage)
        return false;
    translated.language = gLanguage;
    return translated == placeOf(gDatabase.CurrentDatabase(), gOptions) &&
           asksTheSame(result_.facts->request, request(), gOptions) &&
           showsTheSame(request().mode, result_.facts->origin.options, gOptions);
}

void AnalysisModel::optionsApplied() {
    editor_.change(RequestPart::Missing, [](AnalysisRequest& r) { r.bUserMissing = false; });
    if (!running())
        rebuildChart();
}

/// An instruction may have named another weight than the study's own; a command then names it too.
TableResult AnalysisModel::withWeightByName() const {
    TableResult shown = result_.asMade();
    AnalysisRequest& r = shown.facts->request;
    RequestEditor now;
    now.open();
    const bool own = r.Option3 == WeightKind::WeightRE || r.Option3 == WeightKind::WeightHH;
    if (!own || !now.StudyClick(r.dbcStudy.value) ||
        (now.chooseWeight(r.Option3) && now.request().weightVariable() == r.weightVariable()))
        return shown;
    r.dbcVarGewicht_1Uni = r.weightVariable() + u": "_s;
    r.Option3 = WeightKind::WeightUser;
    return shown;
}

std::optional<QString> AnalysisModel::command() const {
    if (!result_.facts)
        return std::nullopt;
    const std::optional<QStringList> arguments =
        vdxArguments(withWeightByName(), request().cbValues, editor_.englishContents());
    if (!arguments)
        return std::nullopt;
    const AnalysisRequest& shown = result_.facts->request;
    const bool named = shown.mode != AnalysisMode::Comparison ||
                       std::ranges::all_of(shown.lst_TrendVars, [this](const auto& e) { return isInCatalogue(e); });
    return named ? std::optional(shellLine(*arguments)) : std::nullopt;
}

/// True if study and variable of an entry give its fields, but for the definition, which a command names.
bool AnalysisModel::isInCatalogue(const ComparisonEntry& entry) const {
    // In the language that the entry was taken in.
    const QScopedValueRollback<bool> language(gOptions.EnglishLanguage, editor_.englishContents());
    RequestEditor now;
    now.open();
    if (!now.StudyClick(entry.at(ComparisonEntry::Study)) || !now.chooseVariable(entry.at(ComparisonEntry::Variable)))
        return false;
    const AnalysisRequest& r = now.request();
    const QString& weight = entry.at(ComparisonEntry::WeightInfo);
    return r.dtTable == entry.at(ComparisonEntry::Table) && r.dtField == entry.at(ComparisonEntry::Field) &&
           r.dtYear == entry.at(ComparisonEntry::Year) && r.dtVarGroup == entry.at(ComparisonEntry::Group) &&
           (weight != u"RE"_s || r.dt_WeightRE == entry.at(ComparisonEntry::Weight)) &&
           (weight != u"HH"_s || r.dt_WeightHH == entry.at(ComparisonEntry::Weight));
}

TableState AnalysisModel::tableState() const {
    return ::tableState(result_, request(), gOptions, placeOf(gDatabase.CurrentDatabase(), gOptions));
}

void AnalysisModel::showStored(const StoredTable& stored, StoredOrigin origin) {
    carryMarks();
    const Marks marks = result_.marks;
    result_ = {};
    result_.marks = marks;
    result_.mfgGrid = stored.table;
    result_.lblLabel = stored.title;
    result_.views = stored.kind == TableKind::Crosstab;
    result_.stored = std::move(origin);
    stored_.forgetGraph();
    editor_.change(RequestPart::Values, [&](AnalysisRequest& r) {
        if (stored.kind == TableKind::Crosstab)
            r.cbValues = stored.values;
    });
}

void AnalysisModel::setColWidth(int column, int twips) {
    for (ResultTable* table : result_.tables())
        if (column < table->Cols())
            table->giveColWidth(column, twips);
}

void AnalysisModel::setRowHeight(int row, int twips) {
    for (ResultTable* table : result_.tables())
        if (row < table->Rows())
            table->setRowHeight(row, twips);
}

void AnalysisModel::chooseValues(int view) {
    const AnalysisMode mode = request().mode;
    const bool crosstab = mode == AnalysisMode::Crosstab;
    if (running() || view < 0 || view > 3 || (!crosstab && mode != AnalysisMode::Comparison))
        return;
    // A mode that was chosen since has no table yet, a stored table has one view.
    if (result_.mfgGrid.Tag != kindOfMode(mode) || result_.stored)
        return;
    if (!crosstab && view > 1) {
        ui::asker().messageBox(
            {.text = TranslateText(u"In Vergleichsauswertung nicht erlaubt"_s), .icon = ui::Icon::Exclamation});
        view = 0;
    }
    chosenView_ = view;
    editor_.change(RequestPart::Values, [view](AnalysisRequest& r) { r.cbValues = view; });
    result_.showView(view);
    rebuildChart();
}

bool AnalysisModel::canOrder() const {
    return !running() && tab_ == tableTab &&
           (result_.orderable(TableLines::Rows).size() > 1 || result_.orderable(TableLines::Columns).size() > 1);
}

bool AnalysisModel::order(TableLines lines) {
    const QStringList heads = running() ? QStringList() : result_.orderable(lines);
    if (heads.size() < 2)
        return false;
    const std::optional<std::vector<int>> order = ui::asker().orderLines({.lines = heads, .current = 0});
    if (!order || isInOrder(*order))
        return false;
    result_.order(lines, *order);
    rebuildChart();
    return true;
}

bool AnalysisModel::showPosition() {
    const bool rows = result_.orderable(TableLines::Rows).size() > 1;
    const bool columns = result_.orderable(TableLines::Columns).size() > 1;
    if (!canOrder())
        return false;
    if (!rows || !columns)
        return order(rows ? TableLines::Rows : TableLines::Columns);
    const ui::Answer answer = ui::asker().messageBox(
        {.text = TranslateText(u"Wählen Sie 'ja' für die Zeilen und 'nein' für die Spalten der Tabelle:"_s),
         .title = TranslateText(u"Position einstellen"_s),
         .icon = ui::Icon::Question,
         .buttons = ui::Buttons::YesNoCancel});
    return answer != ui::Answer::Cancel && order(answer == ui::Answer::Yes ? TableLines::Rows : TableLines::Columns);
}

bool AnalysisModel::chartMarksOffered() const {
    const TableKind kind = result_.mfgGrid.Tag;
    const TableState state = tableState();
    const bool current =
        state == TableState::Current || state == TableState::OtherMarks || state == TableState::OtherOptions;
    return current && kind != TableKind::Comparison && marksCanBeSet();
}

void AnalysisModel::changeChart(const LabelTable& changed) {
    if (running())
        return;
    const std::vector<LabelItem> before = chart_.labelTable().items;
    chart_.take(changed);
    if (!chartMarksOffered())
        return;
    bool marked = false;
    for (size_t i = 0; i < std::min(before.size(), changed.items.size()); ++i) {
        const int row = before[i].place;
        if (changed.items[i].missing != before[i].missing)
            marked |= result_.click({.Row = row, .RowSel = row, .Col = markColumn, .ColSel = markColumn},
                                    request().cbValues) == ClickEffect::Marked;
    }
    if (marked)
        computeAnew();
}

void AnalysisModel::chooseFirstValue() {
    if (!running())
        chart_.chooseFirst(result_, request().cbValues, gOptions);
}

ClickEffect AnalysisModel::mfgGrid_Click(const GridSelection& selection) {
    if (running())
        return ClickEffect::None;
    const ClickEffect effect = result_.click(selection, request().cbValues);
    if (effect == ClickEffect::Ask)
        cmdCalculate();
    return effect;
}

ClickEffect AnalysisModel::headerClick() {
    const ResultTable& table = result_.mfgGrid;
    return mfgGrid_Click({.Row = table.FixedRows, .RowSel = table.Rows() - 1, .Col = markColumn, .ColSel = markColumn});
}

ClickEffect AnalysisModel::cmdSetMissing(const GridSelection& selection) {
    return selection.isOneCell() && result_.mfgGrid.Tag != TableKind::Crosstab ? mfgGrid_Click(selection)
                                                                               : ClickEffect::None;
}
