#include "analysis/builders.h"

#include "analysis/AnalysisModel.h"
#include "analysis/DescriptivesChoice.h"
#include "app/globals.h"
#include "catalogue/CDaoDatabase.h"
#include "config/Options.h"
#include "platform/ui/Asker.h"
#include "tables/Comparison.h"
#include "tables/Crosstab.h"
#include "tables/Descriptives.h"
#include "tables/Frequency.h"

#include <QElapsedTimer>

using namespace Qt::StringLiterals;

namespace {

constexpr int builderTurnMilliseconds = 30;

/// Gives the user interface its turn. @return true if the run was cancelled meanwhile
bool turnAndAsk(const AnalysisModel& model) {
    ui::asker().eventTurn();
    return model.bCancelRun;
}

/// The same for what asks per record: a turn each time would cost more than the records.
std::function<bool()> turnNowAndThen(const AnalysisModel& model) {
    QElapsedTimer sinceTurn;
    return [&model, sinceTurn]() mutable {
        if (!sinceTurn.isValid() || sinceTurn.elapsed() >= builderTurnMilliseconds) {
            ui::asker().eventTurn();
            sinceTurn.start();
        }
        return model.bCancelRun;
    };
}

BuildOutcome buildFrequency(AnalysisModel& model) {
    const FrequencyInput input{.counts = *model.counts,
                               .labels = *model.dtData4.recordset,
                               .dtMissing = model.request.dtMissing,
                               .CumulatedPercent = gOptions.CumulatedPercent,
                               .SeparateValidCases = gOptions.SeparateValidCases,
                               .CommaInPercent = gOptions.CommaInPercent,
                               .AutoColWidth = gOptions.AutoColWidth,
                               .textWidth = model.textWidth,
                               .cancelled = [&model] { return turnAndAsk(model); },
                               .onFailure = model.onStatisticFailure,
                               .marksKept = &model.bMarksKept};
    return BuildFrequencyTable(model.mfgGrid, input, model.bUserMissing);
}

BuildOutcome buildCrosstab(AnalysisModel& model) {
    const AnalysisRequest& request = model.request;
    const bool flip = model.flipInForce();
    const CrosstabInput input{.counts = *model.counts,
                              .labels = *model.dtData4.recordset,
                              .rowMissing = flip ? request.dtMissing2 : request.dtMissing,
                              .columnMissing = flip ? request.dtMissing : request.dtMissing2,
                              .options = {.IncludeMissingXTab = gOptions.IncludeMissingXTab,
                                          .IncludeMissingInPercentXTab = gOptions.IncludeMissingInPercentXTab,
                                          .IncludeNinXTab = gOptions.IncludeNinXTab,
                                          .IncludeNinXTabPercent = gOptions.IncludeNinXTabPercent,
                                          .IncludeNinXTabPercentNFirst = gOptions.IncludeNinXTabPercentNFirst,
                                          .NoColumnLabels = gOptions.NoColumnLabels,
                                          .NoRowLabels = gOptions.NoRowLabels,
                                          .ShowValidSums = gOptions.ShowValidSums,
                                          .ShowPercentSign = gOptions.ShowPercentSign,
                                          .CommaInPercent = gOptions.CommaInPercent,
                                          .AutoColWidth = gOptions.AutoColWidth},
                              .textWidth = model.textWidth,
                              .cancelled = turnNowAndThen(model),
                              .onFailure = model.onStatisticFailure,
                              .marksKept = &model.bMarksKept};
    // The marks are those of the absolute values, whatever view takes their place.
    if (model.bUserMissing && model.request.cbValues != 0 && model.mfgGrid5.Rows() > 0)
        model.mfgGrid = model.mfgGrid5;
    model.request.cbValues = 0;
    return BuildCrosstabTable({.shown = model.mfgGrid,
                               .columnPercent = model.mfgGrid2,
                               .rowPercent = model.mfgGrid3,
                               .totalPercent = model.mfgGrid4,
                               .absolute = model.mfgGrid5},
                              input, model.bUserMissing);
}

BuildOutcome buildComparison(AnalysisModel& model) {
    const ComparisonInput input{.counts = *model.counts,
                                .labels = *model.dtData4.recordset,
                                .dtMissing = model.request.dtMissing,
                                .column = model.mfgGridCol,
                                .HeaderValFirst = gOptions.HeaderValFirst,
                                .HeaderValAddVar = gOptions.HeaderValAddVar,
                                .CommaInPercent = gOptions.CommaInPercent,
                                .AutoColWidth = gOptions.AutoColWidth,
                                .textWidth = model.textWidth,
                                .cancelled = [&model] { return turnAndAsk(model); }};
    model.request.cbValues = 0;
    return BuildComparisonColumn(model.mfgGrid, model.mfgGrid2, model.mfgGrid5, input, model.bUserMissing);
}

/// The stored query `stat` has the text of the run's statement, so `counts` holds its rows; `stat2` is read only where
/// its text differs.
BuildOutcome buildDescriptives(AnalysisModel& model) {
    const dao::DatabasePtr database = gDatabase.CurrentDatabase();
    const QString stat2 = database->QueryDefs().Item(u"stat2"_s)->SQL();
    const bool same = stat2 == database->QueryDefs().Item(u"stat"_s)->SQL();
    const dao::RecordsetPtr all =
        same ? model.counts : database->OpenRecordset(u"SELECT * FROM stat2"_s, dao::dbOpenSnapshot);
    const DescriptivesChoice choice = DescriptivesChoice::of(model.request);
    const DescriptivesInput input{.stat = *model.counts,
                                  .stat2 = *all,
                                  .missingText = model.request.sMissing,
                                  .weighted = model.request.Option3 != WeightKind::noWeight,
                                  .selection = choice.chkDescriptives,
                                  .digits = choice.dtDescDigits(),
                                  .groupVariable = model.request.dbcVariable2.value,
                                  .CommaInPercent = gOptions.CommaInPercent,
                                  .cancelled = [&model] { return turnAndAsk(model); },
                                  .onFailure = model.onStatisticFailure};
    const BuildOutcome outcome = BuildDescriptivesTable(model.mfgGrid, input);
    if (outcome == BuildOutcome::Complete)
        model.bUserMissing = false;
    return outcome;
}

} // namespace

std::array<std::function<BuildOutcome(AnalysisModel&)>, 4> tableBuilders() {
    return {buildFrequency, buildCrosstab, buildDescriptives, buildComparison};
}
