#include "analysis/runRequest.h"

#include "app/globals.h"
#include "catalogue/CDaoDatabase.h"
#include "diagnostics/errors.h"
#include "platform/ui/Asker.h"

using namespace Qt::StringLiterals;

namespace {

/// How often tables are made of data that somebody else is writing.
constexpr int mostRounds = 3;

/// Why there can be no run, and whether what is shown goes with it.
struct Refusal {
    QString text;
    bool clears = false;
};

std::optional<Refusal> refusalOf(const AnalysisRequest& r) {
    if (r.mode == AnalysisMode::Comparison) {
        if (r.lst_TrendVars.isEmpty())
            return Refusal{u"Bitte eine Variable auswählen"_s};
        return std::nullopt;
    }
    if (r.dtTable.isEmpty() || r.dtField.isEmpty())
        return Refusal{u"Bitte eine Variable auswählen"_s, true};
    if (r.mode == AnalysisMode::Crosstab && (r.dtTable2.isEmpty() || r.dtField2.isEmpty()))
        return Refusal{u"Bitte eine zweite Variable auswählen"_s, true};
    // Without a variable nothing would be weighted, whatever the choice says.
    if (r.Option3 == WeightKind::WeightUser && r.weightVariable().isEmpty())
        return Refusal{u"Gewichtungsvariable auswählen"_s};
    if (r.mode == AnalysisMode::Crosstab && r.dbcVariable.value.compare(r.dbcVariable2.value, Qt::CaseInsensitive) == 0)
        return Refusal{u"Doppelte Variablen"_s};
    return std::nullopt;
}

TableResult refused(TableResult result, const AnalysisRequest& request, const Refusal& refusal) {
    ui::asker().messageBox({.text = TranslateText(refusal.text), .icon = ui::Icon::Exclamation});
    if (refusal.clears)
        result.clear();
    result.run = {.outcome = RunOutcome::Refused, .q = {}, .counts = {}};
    result.request = request;
    return result;
}

} // namespace

ResultPlace currentPlace(const Options& options) {
    const dao::DatabasePtr database = gDatabase.CurrentDatabase();
    return {database ? database->Name() : QString(), options.DataPath, gLanguage};
}

TableResult runRequest(RequestEditor& editor, const Options& options, const RunHooks& hooks, TableResult before) {
    ui::asker().setPointer(ui::Pointer::Wait);
    TableResult result = std::move(before);
    for (int round = 1; round <= mostRounds; ++round) {
        editor.refresh();
        if (const std::optional<Refusal> refusal = refusalOf(editor.request())) {
            result = refused(std::move(result), editor.request(), *refusal);
            break;
        }
        result = CreateSQL({.request = editor.request(),
                            .options = options,
                            .catalogue = gDatabase.CurrentDatabase(),
                            .studies = studyQuerySource(),
                            .stamp = editor.stamp(),
                            .hooks = hooks},
                           std::move(result));
        editor.replace(result.request);
        if (!result.changedMeanwhile)
            break;
        result.computation.ResultCacheKey.clear();
        if (round == mostRounds)
            result = refused(
                std::move(result), editor.request(),
                {u"Katalog oder Auswertungsdateien werden gerade geschrieben. Bitte später noch einmal rechnen."_s,
                 true});
    }
    ui::asker().setPointer(ui::Pointer::Default);
    return result;
}
