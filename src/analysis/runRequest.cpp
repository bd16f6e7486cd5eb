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

/// Entries may be of other studies: their variables are looked up when each is counted, but what can be no condition
/// whatever its names mean is refused at once.
std::optional<Refusal> refusalOfEntries(const AnalysisRequest& r) {
    if (r.lst_TrendVars.isEmpty())
        return Refusal{u"Bitte eine Variable auswählen"_s};
    FilterSurroundings any;
    any.find = [](const QString&, bool&) { return VariablePlace{u"T"_s, u"F"_s}; };
    any.attach = [](const QString&) { return true; };
    for (const ComparisonEntry& entry : r.lst_TrendVars) {
        const QString& text = entry.at(ComparisonEntry::Filter);
        const QString& kind = entry.at(ComparisonEntry::FilterInfo);
        if (text.isEmpty() || (!kind.isEmpty() && kind != "user"_L1))
            continue;
        const FilterResult filter = readFilter(text, any);
        if (filter.failure == FilterResult::Failure::Syntax)
            return Refusal{entry.text + u'\n' + filter.objection()};
    }
    return std::nullopt;
}

std::optional<Refusal> refusalOf(const RequestEditor& editor) {
    const AnalysisRequest& r = editor.request();
    if (r.mode == AnalysisMode::Comparison)
        return refusalOfEntries(r);
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
    if (r.optFilter == FilterKind::FilterUser && !r.txtFilter.isEmpty())
        if (const QString words = checkFilter(editor, r.txtFilter).objection(); !words.isEmpty())
            return Refusal{words};
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
        if (const std::optional<Refusal> refusal = refusalOf(editor)) {
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

FilterResult checkFilter(const RequestEditor& editor, const QString& text) {
    FilterSurroundings around;
    around.find = [&editor](const QString& word, bool&) -> std::optional<VariablePlace> {
        for (const StudyVariable& variable : editor.variables())
            if (dao::compareTexts(variable.name, word) == 0)
                return variable.place;
        return std::nullopt;
    };
    around.attach = [](const QString&) { return true; };
    around.grouped = editor.request().mode != AnalysisMode::Descriptives;
    return readFilter(text, around);
}
