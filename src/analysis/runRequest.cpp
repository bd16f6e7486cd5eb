#include "analysis/runRequest.h"

#include "app/globals.h"
#include "catalogue/CDaoDatabase.h"
#include "diagnostics/errors.h"
#include "platform/ui/Asker.h"

#include <memory>

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
    // Without a variable nothing would be weighted, and without a part nothing left out, whatever the choice says.
    if (r.Option3 != WeightKind::noWeight && r.weightVariable().isEmpty())
        return Refusal{u"Gewichtungsvariable auswählen"_s};
    if (r.optFilter == FilterKind::FilterParts && r.dbcParts.isEmpty())
        return Refusal{u"Datensatz-Teil nicht gefunden"_s};
    if (r.mode == AnalysisMode::Crosstab && r.dbcVariable.value.compare(r.dbcVariable2.value, Qt::CaseInsensitive) == 0)
        return Refusal{u"Doppelte Variablen"_s};
    return std::nullopt;
}

/// After a failure whose message has been shown.
TableResult refused(TableResult result, const RequestEditor& editor) {
    result.run = {.outcome = RunOutcome::Refused, .q = {}, .counts = {}};
    result.request = editor.request();
    result.catalogue = editor.stamp();
    return result;
}

TableResult refused(TableResult result, const RequestEditor& editor, const Refusal& refusal) {
    ui::asker().messageBox({.text = TranslateText(refusal.text), .icon = ui::Icon::Exclamation});
    if (refusal.clears)
        result.clear();
    return refused(std::move(result), editor);
}

/// The same hooks, but each question is asked once, however often tables are made.
RunHooks askingOnce(RunHooks hooks) {
    struct Answers {
        std::optional<std::optional<MissingAnswer>> missing;
        QStringList lost;
    };
    const auto given = std::make_shared<Answers>();
    if (hooks.askMissing)
        hooks.askMissing = [given, ask = hooks.askMissing](const QString& sMissing) {
            if (!given->missing)
                given->missing = ask(sMissing);
            return *given->missing;
        };
    hooks.acceptsLost = [given, ask = hooks.acceptsLost](const QString& lost) {
        if (!given->lost.contains(lost) && !ask(lost))
            return false;
        given->lost << lost;
        return true;
    };
    return hooks;
}

} // namespace

TableResult runRequest(RequestEditor& editor, const Options& options, const RunHooks& hooks, TableResult before) {
    ui::asker().setPointer(ui::Pointer::Wait);
    const RunHooks once = askingOnce(hooks);
    TableResult result = std::move(before);
    for (int round = 1;; ++round) {
        if (!editor.refresh()) {
            result = refused(std::move(result), editor);
            break;
        }
        if (const std::optional<Refusal> refusal = refusalOf(editor.request())) {
            result = refused(std::move(result), editor, *refusal);
            break;
        }
        if (round == 1 && hooks.begins)
            hooks.begins();
        // Each round is of the request that was asked: what a round has left in it is none of the next one's.
        result = CreateSQL({.request = editor.request(),
                            .options = options,
                            .catalogue = gDatabase.CurrentDatabase(),
                            .studies = studyQuerySource(),
                            .stamp = editor.stamp(),
                            .hooks = once},
                           std::move(result));
        if (!result.changedMeanwhile)
            break;
        if (round == mostRounds) {
            result = refused(
                std::move(result), editor,
                Refusal{
                    u"Katalog oder Auswertungsdateien werden gerade geschrieben. Bitte später noch einmal rechnen."_s,
                    true});
            break;
        }
        result.computation.ResultCacheKey.clear();
    }
    editor.replace(result.request, result.catalogue);
    ui::asker().setPointer(ui::Pointer::Default);
    return result;
}
