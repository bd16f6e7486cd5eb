#include "analysis/builders.h"

#include "analysis/AnalysisModel.h"
#include "config/Options.h"
#include "platform/ui/Asker.h"
#include "tables/Frequency.h"

namespace {

BuildOutcome buildFrequency(AnalysisModel& model) {
    const FrequencyInput input{.counts = *model.counts,
                               .labels = *model.dtData4.recordset,
                               .dtMissing = model.request.dtMissing,
                               .CumulatedPercent = gOptions.CumulatedPercent,
                               .SeparateValidCases = gOptions.SeparateValidCases,
                               .CommaInPercent = gOptions.CommaInPercent,
                               .AutoColWidth = gOptions.AutoColWidth,
                               .textWidth = model.textWidth,
                               .cancelled = [&model] {
                                   ui::asker().eventTurn();
                                   return model.bCancelRun;
                               }};
    return BuildFrequencyTable(model.mfgGrid, input, model.bUserMissing);
}

} // namespace

std::array<std::function<BuildOutcome(AnalysisModel&)>, 4> tableBuilders() {
    return {buildFrequency, nullptr, nullptr, nullptr};
}
