#include "analysis/CreateSQL.h"

#include "analysis/titles.h"
#include "app/globals.h"
#include "catalogue/CDaoDatabase.h"
#include "catalogue/CDaoPersistance.h"
#include "config/Options.h"
#include "diagnostics/errors.h"
#include "platform/ui/Asker.h"
#include "tables/missing.h"

#include <QElapsedTimer>
#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {
constexpr int turnMilliseconds = 30;
}

/// While a statement runs, the user interface gets its turn now and then, and a cancelled run ends it.
CreateSQL::CreateSQL(AnalysisModel& model) : m_(model), r_(model.request), db_(gDatabase.CurrentDatabase()) {
    QElapsedTimer sinceTurn;
    dao::DBEngine::instance().setProgress([this, sinceTurn]() mutable {
        if (!sinceTurn.isValid() || sinceTurn.elapsed() >= turnMilliseconds) {
            ui::asker().eventTurn();
            sinceTurn.start();
        }
        return m_.bCancelRun;
    });
}

CreateSQL::~CreateSQL() {
    dao::DBEngine::instance().setProgress({});
    if (db_)
        db_->saveDefinitions();
}

RunOutcome CreateSQL::run() {
    const ProcedureScope scope(u"[frmAuswertung.CreateSQL]"_s);
    if (!db_)
        return RunOutcome::Refused;
    gOptions.DataOnCD = true;
    m_.bCancelRun = false;
    int rounds = 1;
    if (isComparison()) {
        if (isComparisonShown())
            return RunOutcome::Reused;
        rounds = static_cast<int>(r_.lst_TrendVars.size());
        prepareComparison();
    }
    for (number_ = 1; number_ <= rounds; ++number_)
        if (!runRound())
            break;
    // The first entry's column used the marks up; a run that was stopped later needs them again.
    if (marksKept_ && outcome_ == RunOutcome::Cancelled)
        m_.bUserMissing = true;
    // A title belongs to every table that was touched, also to one that was cut short.
    const bool titled = r_.mode != AnalysisMode::Descriptives;
    if (computed_ || (titled && outcome_ == RunOutcome::Reused))
        m_.lblLabel = resultTitle(r_, m_.mfgGrid, titleOptions());
    return outcome_;
}

/// A crosstab that stays as it is keeps the N that its percentages rest on.
const Options& CreateSQL::titleOptions() const {
    const bool stays = outcome_ == RunOutcome::Reused && r_.mode == AnalysisMode::Crosstab && m_.shown_;
    return stays ? m_.shown_->options : gOptions;
}

/// Runs one engine statement under the run's trap.
bool CreateSQL::step(const std::function<void()>& statement) {
    switch (runEngineStep(statement, m_.clock, [this] { return m_.bCancelRun; })) {
    case StepEnd::Done:
        return true;
    case StepEnd::Cancelled:
        m_.dtData3.Tag.clear();
        return end(RunOutcome::Cancelled);
    case StepEnd::Ended:
        break;
    }
    return clearAndEnd();
}

/// One turn for the user interface. @return false if the user has cancelled meanwhile
bool CreateSQL::turn() {
    ui::asker().eventTurn();
    if (!m_.bCancelRun)
        return true;
    m_.dtData3.Tag.clear();
    return end(RunOutcome::Cancelled);
}

bool CreateSQL::end(RunOutcome outcome) {
    outcome_ = outcome;
    ui::asker().setPointer(ui::Pointer::Default);
    return false;
}

bool CreateSQL::clearAndEnd() {
    m_.clearTable();
    m_.tab_ = 0;
    computed_ = false;
    return end(RunOutcome::Refused);
}

/// Ends the run with a message. The tables stay as they were, but for a comparison's: they were emptied
/// before its first entry, and what entries before this one have filled is not the comparison.
bool CreateSQL::endWith(const QString& text) {
    ui::asker().messageBox({.text = text, .icon = ui::Icon::Exclamation});
    return isComparison() ? clearAndEnd() : end(RunOutcome::Refused);
}

void CreateSQL::prepareComparison() {
    constexpr std::array<int, 3> widths{500, 2000, 800};
    const int columns = static_cast<int>(r_.lst_TrendVars.size()) + 3;
    // Marks belong to the entries they were set for.
    marksKept_ = m_.bUserMissing && m_.shown_ && (m_.shown_->complete || m_.shown_->marksByHand) &&
                 m_.shown_->request.mode == AnalysisMode::Comparison &&
                 sameEntries(m_.shown_->request.lst_TrendVars, r_.lst_TrendVars);
    m_.bUserMissing = marksKept_;
    if (!marksKept_) {
        m_.clearTable();
        for (ResultTable* table : {&m_.mfgGrid, &m_.mfgGrid2, &m_.mfgGrid3, &m_.mfgGrid4, &m_.mfgGrid5}) {
            table->Clear();
            table->setRows(4);
            table->setCols(columns);
            for (int column = 0; column < columns; ++column)
                table->setColWidth(column, widths[static_cast<size_t>(std::min(column, 2))]);
            table->FixedRows = 1;
            table->FixedCols = 1;
        }
    }
    m_.mfgGrid.setCell(0, 0, TranslateText(u"Wert"_s));
    m_.mfgGrid.setCell(1, 0, TranslateText(u"Ausprägung"_s));
    m_.mfgGrid.setCell(2, 0, TranslateText(u"Missing"_s));
}

bool CreateSQL::runRound() {
    round_ = {};
    if (!readRound() || !findCases() || !addWeightToQuery() || !storeQuery() || !attachTables() ||
        !warnOfUnweighted() || !translateUserFilter())
        return false;
    buildStatement();
    if (!askForMissing() || !turn())
        return false;
    if (!needsComputation()) {
        outcome_ = RunOutcome::Reused;
        return true;
    }
    return openCounts() && storeStatistics() && openLabels() && build();
}

void CreateSQL::buildStatement() {
    CountFacts& facts = round_.facts;
    if (takesMissingCondition(facts) && !r_.sMissing.isEmpty()) {
        const MissingDefinition definition(r_.sMissing);
        facts.missingCondition = definition.validCondition(facts.table + u'.' + facts.field);
        round_.missingRange = definition.isRange();
    }
    round_.statement = countStatement(facts);
}

/// The statistics ask for the missing values of a new calculation.
bool CreateSQL::askForMissing() {
    if (r_.mode != AnalysisMode::Descriptives || !gOptions.AskMissing || !m_.askMissing || isCurrent())
        return true;
    ui::asker().setPointer(ui::Pointer::Default);
    m_.askMissing(m_);
    ui::asker().setPointer(ui::Pointer::Wait);
    buildStatement();
    return true;
}

AnalysisModel::Computation CreateSQL::computation() const {
    return {round_.qSql, round_.study, round_.facts.variable, round_.facts.variable2, r_.dtMissing, r_.dtMissing2,
            attached_,   m_.origin()};
}

/// True if the tables show this comparison, and each case table lies where it lay.
bool CreateSQL::isComparisonShown() const {
    const AnalysisModel::Computation& last = m_.last_;
    const bool same =
        m_.shown_ && m_.shown_->complete && sameEntries(m_.shown_->request.lst_TrendVars, r_.lst_TrendVars);
    return same && comparisonKey(r_.lst_TrendVars) == m_.dtData3.Tag && last.origin == m_.origin() &&
           std::all_of(last.attached.begin(), last.attached.end(),
                       [this](const AttachedTable& table) { return liesWhereItLay(*db_, table); });
}

/// True if the tables show just this. The count statement alone does not tell: two weights, or two variables
/// over one field, have the same.
bool CreateSQL::isCurrent() const {
    return m_.dtData3.Tag == round_.statement.sql && m_.last_ == computation() &&
           m_.lastStatistics_ == statisticsKey(r_);
}

bool CreateSQL::isSameVariable() const {
    const AnalysisModel::Computation now = computation();
    return m_.last_.study == now.study && m_.last_.variable == now.variable && m_.last_.variable2 == now.variable2;
}

bool CreateSQL::needsComputation() const {
    if (isComparison() || !isCurrent())
        return true;
    if (r_.mode == AnalysisMode::Descriptives)
        return false;
    return (!r_.dtField2.isEmpty() && gOptions.IncludeMissingXTab != m_.lastIncludeMissingXTab_) ||
           m_.oldproc != runNumber(r_.Option3);
}

bool CreateSQL::openCounts() {
    m_.bNewCalc = false;
    m_.oldproc = runNumber(r_.Option3);
    m_.lastIncludeMissingXTab_ = gOptions.IncludeMissingXTab;
    m_.lastStatistics_ = statisticsKey(r_);
    // Marks belong to the variable they were set for.
    const bool marks = r_.mode == AnalysisMode::Frequency || r_.mode == AnalysisMode::Crosstab;
    if (!m_.dtData3.Tag.isEmpty() || (marks && !isSameVariable()))
        m_.bUserMissing = false;
    if (!turn())
        return false;
    const QString& sql = round_.statement.sql;
    m_.dtData3.Tag.clear();
    if (!count(sql) || !countTextsBesideRange())
        return false;
    m_.dtData3.Tag = isComparison() ? comparisonKey(r_.lst_TrendVars) : sql;
    m_.last_ = computation();
    return true;
}

bool CreateSQL::count(const QString& sql) {
    m_.facts_.counts << sql;
    if (m_.onStatement)
        m_.onStatement(u"counts"_s, sql);
    m_.counts.reset();
    if (!step([&] { m_.counts = CDaoPersistance().GetRecordset(db_, sql, dao::dbOpenSnapshot, isRunTrapCase); })) {
        // What the trap gave up on was the trap's own, so GetRecordset has not logged it.
        if (outcome_ == RunOutcome::Refused)
            CDaoPersistance::logStatement(sql);
        return false;
    }
    ui::asker().setPointer(ui::Pointer::Wait);
    return m_.counts || clearAndEnd(); // reported already
}

/// A text that is no number lies neither in a range nor below or above it: the condition for valid values passes it
/// over, although it is valid. Where the field can hold such texts, the cases are counted by a second statement that
/// lets them through; without them it gives what the first one gave.
bool CreateSQL::countTextsBesideRange() {
    const CountFacts& stated = round_.facts;
    const size_t field = stated.flip ? 1 : 0;
    if (!round_.missingRange || !dao::isTextType(m_.counts->Fields()[field].Type))
        return true;
    const QString name = stated.table + u'.' + stated.field;
    CountFacts all = stated;
    all.missingCondition = u"(%1) OR (%2 Is Not Null AND Not IsNumeric(%2))"_s.arg(stated.missingCondition, name);
    return count(countStatement(all).sql);
}

bool CreateSQL::storeStatistics() {
    if (r_.mode != AnalysisMode::Descriptives)
        return true;
    return step([this] {
        for (const QString& name : {u"stat"_s, u"stat2"_s})
            if (db_->QueryDefs().contains(name))
                db_->QueryDefs().Delete(name);
        db_->CreateQueryDef(u"stat"_s, round_.statement.sql);
        db_->CreateQueryDef(u"stat2"_s, round_.statement.sqlNoMissing);
        db_->QueryDefs().Refresh();
    });
}

bool CreateSQL::openLabels() {
    if (r_.mode == AnalysisMode::Descriptives)
        return true;
    m_.dtData4.source = labelStatement(r_.mode, round_.study, round_.facts.variable, round_.facts.variable2);
    return step([this] { m_.dtData4.recordset = db_->OpenRecordset(m_.dtData4.source, dao::dbOpenSnapshot); });
}

bool CreateSQL::build() {
    if (isComparison())
        writeComparisonHeader();
    if (m_.bCancelRun)
        return turn();
    if (r_.mode == AnalysisMode::Descriptives && gOptions.IncludeMissingDesc)
        r_.sMissing.clear();
    computed_ = true;
    m_.gridTouched_ = true;
    m_.shown_.reset();
    m_.bMarksKept = marksKept_;
    const BuildOutcome built = m_.builder()(m_);
    noteRound(built == BuildOutcome::Complete || built == BuildOutcome::Empty);
    m_.cbValuesShown_ = r_.mode == AnalysisMode::Crosstab || isComparison();
    switch (built) {
    case BuildOutcome::Complete:
    case BuildOutcome::Empty:
        return true;
    case BuildOutcome::Truncated:
        // Not valid: the next change of tab must compute it, and say so, again.
        m_.dtData3.Tag.clear();
        return end(RunOutcome::Truncated);
    case BuildOutcome::Cancelled:
        m_.dtData3.Tag.clear();
        return end(RunOutcome::Cancelled);
    case BuildOutcome::Aborted:
        break;
    }
    m_.dtData3.Tag.clear();
    m_.tab_ = 0;
    return end(RunOutcome::Refused);
}

/// What the table stands on now; a comparison is whole after its last entry.
void CreateSQL::noteRound(bool complete) {
    const CountFacts& facts = round_.facts;
    rounds_.push_back({.study = round_.study,
                       .variable = facts.variable,
                       .weight = round_.weightVariable,
                       .filterSql = facts.userFilter ? facts.filterSql : QString(),
                       .part = facts.part ? r_.dbcParts.text + u" (q.SE="_s + facts.partCriteria + u')' : QString(),
                       .dtMissing = r_.dtMissing,
                       .cases = statedCases(r_.mode, m_.mfgGrid, m_.mfgGridCol)});
    const bool all = !isComparison() || number_ == static_cast<int>(r_.lst_TrendVars.size());
    m_.noteTable(complete && all, rounds_);
}

void CreateSQL::writeComparisonHeader() {
    const int column = number_ + 2;
    m_.mfgGrid.setCols(std::max(m_.mfgGrid.Cols(), column + 1));
    const QString header = comparisonHeader(entry(), gOptions);
    m_.mfgGrid.setCell(column, 0, header);
    if (gOptions.AutomaticVariableColumnWidth)
        m_.mfgGrid.setColWidth(column, std::max(static_cast<int>(header.size()) * 80, 350));
    m_.mfgGridCol = column;
}
