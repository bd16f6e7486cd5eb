#include "analysis/run/Run.h"

#include "analysis/request/DescriptivesChoice.h"
#include "analysis/result/titles.h"
#include "platform/ui/Asker.h"
#include "tables/Comparison.h"
#include "tables/Crosstab.h"
#include "tables/Descriptives.h"
#include "tables/Frequency.h"

#include <QElapsedTimer>
#include <algorithm>

using namespace Qt::StringLiterals;

// The steps of a run that make the tables of its mode from what was counted, and note what they stand on.

namespace {

constexpr int builderTurnMilliseconds = 30;

} // namespace

bool Run::build() {
    if (isComparison())
        writeComparisonHeader();
    if (cancelled())
        return turn();
    if (r_.mode == AnalysisMode::Descriptives && options_.IncludeMissingDesc)
        r_.sMissing.clear();
    computed_ = true;
    out_.made.reset();
    const BuildOutcome built = buildTable();
    for (ResultTable* table : {&out_.mfgGrid, &out_.mfgGrid2, &out_.mfgGrid3, &out_.mfgGrid4, &out_.mfgGrid5})
        for (const TableNote& note : notes_)
            table->addNote(note);
    noteTable(built == BuildOutcome::Complete || built == BuildOutcome::Empty);
    out_.views = r_.mode == AnalysisMode::Crosstab || isComparison();
    switch (built) {
    case BuildOutcome::Complete:
    case BuildOutcome::Empty:
        return true;
    case BuildOutcome::Truncated:
        // Not valid: the next change of tab must compute it, and say so, again.
        out_.computation.ResultCacheKey.clear();
        return end(RunOutcome::Truncated);
    case BuildOutcome::Cancelled:
        out_.computation.ResultCacheKey.clear();
        return end(RunOutcome::Cancelled);
    case BuildOutcome::Aborted:
        break;
    }
    out_.computation.ResultCacheKey.clear();
    return end(RunOutcome::Refused);
}

BuildOutcome Run::buildTable() {
    switch (r_.mode) {
    case AnalysisMode::Frequency:
        return buildFrequency();
    case AnalysisMode::Crosstab:
        return buildCrosstab();
    case AnalysisMode::Descriptives:
        return buildDescriptives();
    case AnalysisMode::Comparison:
        return buildComparison();
    }
    return BuildOutcome::Aborted;
}

/// Gives the user interface its turn. @return true if the run was cancelled meanwhile
bool Run::turnAndAsk() const {
    ui::asker().eventTurn();
    return cancelled();
}

/// The same for what asks per record: a turn each time would cost more than the records.
std::function<bool()> Run::turnNowAndThen() const {
    return [this, sinceTurn = QElapsedTimer()]() mutable {
        if (!sinceTurn.isValid() || sinceTurn.elapsed() >= builderTurnMilliseconds) {
            ui::asker().eventTurn();
            sinceTurn.start();
        }
        return cancelled();
    };
}

BuildOutcome Run::buildFrequency() {
    return BuildFrequencyTable(out_.mfgGrid, {.counts = *counts_,
                                              .labels = *labels_,
                                              .dtMissing = r_.dtMissing,
                                              .CumulatedPercent = options_.CumulatedPercent,
                                              .SeparateValidCases = options_.SeparateValidCases,
                                              .CommaInPercent = options_.CommaInPercent,
                                              .AutoColWidth = options_.AutoColWidth,
                                              .textWidth = in_.hooks.textWidth,
                                              .cancelled = [this] { return turnAndAsk(); },
                                              .onFailure = in_.hooks.onStatisticFailure,
                                              .marks = marksToTake()});
}

BuildOutcome Run::buildCrosstab() {
    const bool flip = r_.flipInForce();
    r_.cbValues = 0;
    const CrosstabInput input{.counts = *counts_,
                              .labels = *labels_,
                              .rowMissing = flip ? r_.dtMissing2 : r_.dtMissing,
                              .columnMissing = flip ? r_.dtMissing : r_.dtMissing2,
                              .options = {.IncludeMissingXTab = options_.IncludeMissingXTab,
                                          .IncludeMissingInPercentXTab = options_.IncludeMissingInPercentXTab,
                                          .IncludeNinXTab = options_.IncludeNinXTab,
                                          .IncludeNinXTabPercent = options_.IncludeNinXTabPercent,
                                          .IncludeNinXTabPercentNFirst = options_.IncludeNinXTabPercentNFirst,
                                          .NoColumnLabels = options_.NoColumnLabels,
                                          .NoRowLabels = options_.NoRowLabels,
                                          .ShowValidSums = options_.ShowValidSums,
                                          .ShowPercentSign = options_.ShowPercentSign,
                                          .CommaInPercent = options_.CommaInPercent,
                                          .AutoColWidth = options_.AutoColWidth},
                              .textWidth = in_.hooks.textWidth,
                              .cancelled = turnNowAndThen(),
                              .onFailure = in_.hooks.onStatisticFailure,
                              .marks = marksToTake()};
    return BuildCrosstabTable({.shown = out_.mfgGrid,
                               .columnPercent = out_.mfgGrid2,
                               .rowPercent = out_.mfgGrid3,
                               .totalPercent = out_.mfgGrid4,
                               .absolute = out_.mfgGrid5},
                              input);
}

BuildOutcome Run::buildComparison() {
    r_.cbValues = 0;
    return BuildComparisonColumn(out_.mfgGrid, out_.mfgGrid2, out_.mfgGrid5,
                                 {.counts = *counts_,
                                  .labels = *labels_,
                                  .dtMissing = r_.dtMissing,
                                  .column = entryColumn(),
                                  .HeaderValFirst = options_.HeaderValFirst,
                                  .HeaderValAddVar = options_.HeaderValAddVar,
                                  .CommaInPercent = options_.CommaInPercent,
                                  .AutoColWidth = options_.AutoColWidth,
                                  .textWidth = in_.hooks.textWidth,
                                  .marks = marksToTake(),
                                  .cancelled = [this] { return turnAndAsk(); }});
}

/// The condition for missing values stands in no statement of the statistics, so `stat` and `stat2` have the same rows.
BuildOutcome Run::buildDescriptives() {
    const DescriptivesChoice choice = DescriptivesChoice::of(r_, options_);
    return BuildDescriptivesTable(out_.mfgGrid, {.stat = *counts_,
                                                 .stat2 = *counts_,
                                                 .missingText = r_.sMissing,
                                                 .weighted = r_.Option3 != WeightKind::noWeight,
                                                 .selection = choice.chkDescriptives,
                                                 .digits = choice.dtDescDigits(),
                                                 .groupVariable = r_.dbcVariable2.value,
                                                 .groupLabels = labels_.get(),
                                                 .groupMissing = r_.dtMissing2,
                                                 .CommaInPercent = options_.CommaInPercent,
                                                 .cancelled = [this] { return turnAndAsk(); },
                                                 .onFailure = in_.hooks.onStatisticFailure});
}

/// What the table stands on now; a comparison is whole after its last entry.
void Run::noteTable(bool complete) {
    const CountFacts& facts = round_.facts;
    const TableShape& shape = out_.mfgGrid.shape;
    rounds_.push_back({.study = round_.study,
                       .variable = facts.variable,
                       .weight = round_.weightVariable,
                       .filter = facts.userFilter ? r_.txtFilter.chopped(round_.lostFilter.size()) : QString(),
                       .part = facts.part ? r_.dbcParts.text + u" (q.SE="_s + facts.partCriteria + u')' : QString(),
                       .dtMissing = r_.dtMissing,
                       .cases = shape.casesOf(isComparison() ? entryColumn() : 0)});
    const bool whole = complete && (!isComparison() || number_ == static_cast<int>(r_.lst_TrendVars.size()));
    out_.facts = TableFacts{.request = r_, .origin = {options_, shape.cases}, .rounds = rounds_, .complete = whole};
    out_.marks = whole ? Marks::of(out_.marked()) : taken_;
    if (whole)
        out_.marks.by = out_.mfgGrid.markedBy;
    if (whole)
        noteMarks(*out_.facts, out_.marked());
    if (whole && isComparison())
        out_.mfgGrid.shortHeads = shortHeads(r_.lst_TrendVars, options_, out_.mfgGrid.shape.columns.first);
    out_.marks.subject = subject_;
}

void Run::writeComparisonHeader() {
    ResultTable& table = out_.mfgGrid;
    table.setCols(std::max(table.Cols(), entryColumn() + 1));
    const QString header = comparisonHeader(entry(), options_);
    table.setCell(entryColumn(), 0, header);
    if (options_.AutomaticVariableColumnWidth)
        table.setColWidth(entryColumn(), std::max(static_cast<int>(header.size()) * 80, 350));
}
