#include "analysis/run/Run.h"

#include "analysis/result/titles.h"
#include "analysis/run/caseData.h"
#include "app/globals.h"
#include "catalogue/CDaoPersistance.h"
#include "diagnostics/errors.h"
#include "platform/ui/Asker.h"
#include "tables/missing.h"

#include <QElapsedTimer>
#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

constexpr int turnMilliseconds = 30;

/// True if nothing that the run read was written since it began to.
bool isAsItWas(const QString& catalogue, const FileStamp& before, const std::vector<AttachedTable>& attached) {
    return fileStamp(catalogue) == before && std::ranges::all_of(attached, [](const AttachedTable& table) {
               return fileStamp(table.file) == table.stamp;
           });
}

} // namespace

TableResult CreateSQL(const RunInput& input, TableResult before) {
    const ProcedureScope scope(u"[frmAuswertung.CreateSQL]"_s);
    return Run(input, std::move(before)).run();
}

/// While a statement runs, the user interface gets its turn now and then, and a cancelled run ends it.
Run::Run(const RunInput& input, TableResult before)
    : in_(input), options_(input.options), r_(input.request), out_(std::move(before)), db_(input.catalogue),
      place_(placeOf(db_, options_)) {
    // A fixed first step, whatever the option said: it decides what is said of a file that can't be reached.
    options_.DataOnCD = true;
    out_.run = {};
    out_.changedMeanwhile = false;
    dao::DBEngine::instance().setProgress([this, sinceTurn = QElapsedTimer()]() mutable {
        if (!sinceTurn.isValid() || sinceTurn.elapsed() >= turnMilliseconds) {
            ui::asker().eventTurn();
            sinceTurn.start();
        }
        return cancelled();
    });
}

Run::~Run() {
    dao::DBEngine::instance().setProgress({});
    if (db_)
        db_->saveDefinitions();
}

TableResult Run::run() {
    out_.catalogue = in_.stamp;
    if (!db_) {
        end(RunOutcome::Refused);
        finish();
        return std::move(out_);
    }
    int rounds = 1;
    if (isComparison() && isComparisonShown()) {
        rounds = 0;
        outcome_ = RunOutcome::Reused;
    } else if (isComparison()) {
        rounds = static_cast<int>(r_.lst_TrendVars.size());
        prepareComparison();
    }
    for (number_ = 1; number_ <= rounds; ++number_)
        if (!runRound())
            break;
    out_.changedMeanwhile = outcome_ == RunOutcome::Computed && !isAsItWas(place_.catalogue, in_.stamp, attached_);
    finish();
    saveDefinitions();
    return std::move(out_);
}

/// Query and links are stored in the catalogue: whoever reads on there need not take it for another's writing.
void Run::saveDefinitions() {
    dao::DBEngine::instance().setProgress({}); // a run that was cancelled is stored all the same
    const FileStamp before = fileStamp(place_.catalogue);
    db_->saveDefinitions();
    const FileStamp after = fileStamp(place_.catalogue);
    if (before == in_.stamp && after.changes - before.changes <= 1 && after.logSize == before.logSize)
        out_.catalogue = after;
}

void Run::finish() {
    // A title belongs to every table that was touched, also to one that was cut short.
    const bool titled = r_.mode != AnalysisMode::Descriptives;
    if (computed_ || (titled && outcome_ == RunOutcome::Reused))
        out_.lblLabel = resultTitle(r_, out_.mfgGrid, titleOptions());
    // The marks are taken over now; a run that was stopped needs them again.
    if (outcome_ == RunOutcome::Computed)
        r_.bUserMissing = false;
    // Of the last entry its filter stays; what else it brought along was the round's own.
    if (isComparison()) {
        r_.dtMissing = in_.request.dtMissing;
        r_.dtYear = in_.request.dtYear;
        r_.dtVarGroup = in_.request.dtVarGroup;
    }
    if (outcome_ == RunOutcome::Cancelled)
        out_.stopped = true;
    else if (outcome_ != RunOutcome::Refused)
        out_.stopped = false;
    if (outcome_ == RunOutcome::Reused && out_.facts) {
        // The title is new with every run; the statistics were made with the missing values of their own.
        if (r_.mode == AnalysisMode::Descriptives)
            r_.sMissing = out_.facts->request.sMissing;
        out_.facts->request = r_;
        out_.facts->origin.options.IncludeMissing = options_.IncludeMissing;
    }
    out_.request = r_;
    out_.run.outcome = outcome_;
}

/// A crosstab that stays as it is keeps the N that its percentages rest on.
const Options& Run::titleOptions() const {
    const bool stays = outcome_ == RunOutcome::Reused && r_.mode == AnalysisMode::Crosstab && out_.facts;
    return stays ? out_.facts->origin.options : options_;
}

/// Runs one engine statement under the run's trap.
bool Run::step(const std::function<void()>& statement) {
    switch (runEngineStep(
        statement, in_.hooks.clock, [this] { return cancelled(); }, options_.DataOnCD)) {
    case StepEnd::Done:
        return true;
    case StepEnd::Cancelled:
        out_.computation.ResultCacheKey.clear();
        return end(RunOutcome::Cancelled);
    case StepEnd::Ended:
        break;
    }
    return clearAndEnd();
}

/// One turn for the user interface. @return false if the user has cancelled meanwhile
bool Run::turn() {
    ui::asker().eventTurn();
    if (!cancelled())
        return true;
    out_.computation.ResultCacheKey.clear();
    return end(RunOutcome::Cancelled);
}

bool Run::end(RunOutcome outcome) {
    outcome_ = outcome;
    ui::asker().setPointer(ui::Pointer::Default);
    return false;
}

bool Run::clearAndEnd() {
    out_.clear();
    computed_ = false;
    return end(RunOutcome::Refused);
}

/// Ends the run with a message. The tables stay as they were, but for a comparison's: they were emptied before its
/// first entry, and what entries before this one have filled is not the comparison.
bool Run::endWith(const QString& text) {
    ui::asker().messageBox({.text = text, .icon = ui::Icon::Exclamation});
    return isComparison() ? clearAndEnd() : end(RunOutcome::Refused);
}

void Run::prepareComparison() {
    constexpr std::array<int, 3> widths{500, 2000, 800};
    const int columns = static_cast<int>(r_.lst_TrendVars.size()) + 3;
    prepareMarks();
    out_.clear();
    out_.marks = taken_;
    for (ResultTable* table : {&out_.mfgGrid, &out_.mfgGrid2, &out_.mfgGrid3, &out_.mfgGrid4, &out_.mfgGrid5}) {
        table->Clear();
        table->Tag = TableKind::Comparison;
        table->setRows(4);
        table->setCols(columns);
        for (int column = 0; column < columns; ++column)
            table->setColWidth(column, widths[static_cast<size_t>(std::min(column, 2))]);
        table->FixedRows = 1;
        table->FixedCols = 1;
    }
    out_.mfgGrid.setCell(0, 0, TranslateText(u"Wert"_s));
    out_.mfgGrid.setCell(1, 0, TranslateText(u"Ausprägung"_s));
    out_.mfgGrid.setCell(2, 0, TranslateText(u"Missing"_s));
}

/// Marks set by hand belong to the values of the variables or entries that they were set for.
void Run::prepareMarks() {
    const auto axes = [this](const QString& rows, const QString& columns) {
        return QStringList{round_.study, rows, columns}.join(u'\n');
    };
    const QString& first = round_.facts.variable;
    const QString& second = round_.facts.variable2;
    QString exchanged;
    switch (r_.mode) {
    case AnalysisMode::Frequency:
        subject_ = u"F\n"_s + axes(first, QString());
        break;
    case AnalysisMode::Crosstab:
        subject_ = u"C\n"_s + (r_.flipInForce() ? axes(second, first) : axes(first, second));
        exchanged = u"C\n"_s + (r_.flipInForce() ? axes(first, second) : axes(second, first));
        break;
    case AnalysisMode::Descriptives:
        subject_.clear();
        break;
    case AnalysisMode::Comparison:
        subject_ = u"T\n"_s;
        for (const ComparisonEntry& entry : r_.lst_TrendVars)
            for (const QString& column : entry.column)
                subject_ += column + u'\n';
        break;
    }
    // A request that has changed since is another table's.
    if (!out_.computation.ResultCacheKey.isEmpty())
        r_.bUserMissing = false;
    taken_ = {};
    if (!r_.bUserMissing || subject_.isEmpty())
        return;
    if (out_.marks.subject == subject_)
        taken_ = out_.marks;
    else if (out_.marks.subject == exchanged)
        taken_ = out_.marks.exchanged();
    else
        return;
    taken_.by = Marks::By::Hand;
    taken_.subject = subject_;
}

const Marks* Run::marksToTake() const {
    return taken_.by == Marks::By::Hand ? &taken_ : nullptr;
}

bool Run::runRound() {
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

void Run::buildStatement() {
    CountFacts& facts = round_.facts;
    facts.missingCondition.clear();
    round_.missingRange = false;
    if (takesMissingCondition(facts) && !r_.sMissing.isEmpty()) {
        const MissingDefinition definition(r_.sMissing);
        facts.missingCondition = definition.validCondition(facts.table + u'.' + facts.field);
        round_.missingRange = definition.isRange();
    }
    round_.statement = countStatement(facts);
}

/// The statistics ask for the missing values of a new calculation.
bool Run::askForMissing() {
    if (r_.mode != AnalysisMode::Descriptives || !options_.AskMissing || !in_.hooks.askMissing || isCurrent())
        return true;
    ui::asker().setPointer(ui::Pointer::Default);
    const std::optional<MissingAnswer> answer = in_.hooks.askMissing(r_.sMissing);
    ui::asker().setPointer(ui::Pointer::Wait);
    if (answer) {
        r_.sMissing = answer->sMissing;
        r_.bUserMissing = answer->bUserMissing;
        out_.computation.ResultCacheKey.clear();
    }
    buildStatement();
    return true;
}

/// True if the tables show this comparison, and each case table lies where it lay, as it was.
bool Run::isComparisonShown() const {
    const Computation& last = out_.computation;
    const bool same =
        out_.facts && out_.facts->complete && sameEntries(out_.facts->request.lst_TrendVars, r_.lst_TrendVars);
    return same && comparisonKey(r_.lst_TrendVars) == last.ResultCacheKey && last.place == place_ &&
           std::ranges::all_of(last.attached, [this](const AttachedTable& table) {
               return liesWhereItLay(*db_, table, options_.DataPath) && fileStamp(table.file) == table.stamp;
           });
}

/// True if the tables show just this. The count statement alone does not tell: two weights, or two variables over one
/// field, have the same.
bool Run::isCurrent() const {
    const Computation& last = out_.computation;
    const auto unchanged = [](const AttachedTable& a, const AttachedTable& b) {
        return a.isSamePlace(b) && a.stamp == b.stamp;
    };
    return last.ResultCacheKey == round_.statement.sql && last.q == round_.qSql && last.study == round_.study &&
           last.variable == round_.facts.variable && last.variable2 == round_.facts.variable2 &&
           last.dtMissing == r_.dtMissing && last.dtMissing2 == r_.dtMissing2 && last.place == place_ &&
           std::ranges::equal(last.attached, attached_, unchanged) && last.statistics == statisticsKey(r_, options_);
}

bool Run::needsComputation() const {
    if (isComparison() || !isCurrent())
        return true;
    if (r_.mode == AnalysisMode::Descriptives)
        return false;
    const Computation& last = out_.computation;
    return (!r_.dtField2.isEmpty() && options_.IncludeMissingXTab != last.IncludeMissingXTab) ||
           last.oldproc != runNumber(r_.Option3);
}

bool Run::openCounts() {
    if (!isComparison())
        prepareMarks();
    if (!turn())
        return false;
    noteRepeatedCases();
    const QString& sql = round_.statement.sql;
    out_.computation.ResultCacheKey.clear();
    if (!count(sql) || !countTextsBesideRange())
        return false;
    out_.computation = {.ResultCacheKey = isComparison() ? comparisonKey(r_.lst_TrendVars) : sql,
                        .q = round_.qSql,
                        .study = round_.study,
                        .variable = round_.facts.variable,
                        .variable2 = round_.facts.variable2,
                        .dtMissing = r_.dtMissing,
                        .dtMissing2 = r_.dtMissing2,
                        .statistics = statisticsKey(r_, options_),
                        .oldproc = runNumber(r_.Option3),
                        .IncludeMissingXTab = options_.IncludeMissingXTab,
                        .attached = attached_,
                        .place = place_};
    return true;
}

bool Run::count(const QString& sql) {
    out_.run.counts << sql;
    if (in_.hooks.onStatement)
        in_.hooks.onStatement(u"counts"_s, sql);
    counts_.reset();
    std::optional<dao::Error> ofFilter;
    const auto isOwn = [&](const dao::Error& error) {
        if (isRunTrapCase(error, options_.DataOnCD))
            return true;
        if (isOfFilter(error))
            ofFilter = error;
        return ofFilter.has_value();
    };
    const auto open = [&] {
        try {
            counts_ = CDaoPersistance().GetRecordset(db_, sql, dao::dbOpenSnapshot, isOwn);
        } catch (const dao::Error&) {
            if (!ofFilter)
                throw;
        }
    };
    if (!step(open)) {
        // What the trap gave up on was the trap's own, so GetRecordset has not logged it.
        if (outcome_ == RunOutcome::Refused)
            CDaoPersistance::logStatement(sql);
        return false;
    }
    if (ofFilter)
        return refuseFilter(*ofFilter, sql);
    ui::asker().setPointer(ui::Pointer::Wait);
    if (counts_ && round_.facts.userFilter)
        noteHopelessComparisons(counts_->Eof());
    return counts_ || clearAndEnd(); // reported already
}

/// A text that is no number lies neither in a range nor below or above it: the condition for valid values passes it
/// over, although it is valid. Where the field can hold such texts, the cases are counted by a second statement that
/// lets them through; without them it gives what the first one gave.
bool Run::countTextsBesideRange() {
    const CountFacts& stated = round_.facts;
    const size_t field = stated.flip ? 1 : 0;
    if (!round_.missingRange || !dao::isTextType(counts_->Fields()[field].Type))
        return true;
    const QString name = stated.table + u'.' + stated.field;
    CountFacts all = stated;
    all.missingCondition = u"(%1) OR (%2 Is Not Null AND Not IsNumeric(%2))"_s.arg(stated.missingCondition, name);
    return count(countStatement(all).sql);
}

bool Run::storeStatistics() {
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

bool Run::openLabels() {
    const CountFacts& facts = round_.facts;
    QString source;
    if (r_.mode != AnalysisMode::Descriptives)
        source = labelStatement(r_.mode, round_.study, facts.variable, facts.variable2);
    else if (r_.chkDescGroup && !facts.variable2.isEmpty()) // those of the groups
        source = labelStatement(AnalysisMode::Frequency, round_.study, facts.variable2, QString());
    else
        return true;
    return step([&] { labels_ = db_->OpenRecordset(source, dao::dbOpenSnapshot); });
}
