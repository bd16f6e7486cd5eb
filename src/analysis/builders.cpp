#include "analysis/builders.h"

#include "analysis/AnalysisModel.h"
#include "config/Options.h"
#include "platform/ui/Asker.h"
#include "tables/Comparison.h"
#include "tables/Frequency.h"

namespace {

/// Gives the user interface its turn. @return true if the run was cancelled meanwhile
bool turnAndAsk(const AnalysisModel& model) {
    ui::asker().eventTurn();
    return model.bCancelRun;
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
                               .cancelled = [&model] { return turnAndAsk(model); }};
    return BuildFrequencyTable(model.mfgGrid, input, model.bUserMissing);
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

} // namespace

std::array<std::function<BuildOutcome(AnalysisModel&)>, 4> tableBuilders() {
    return {buildFrequency, nullptr, nullptr, buildComparison};
}
