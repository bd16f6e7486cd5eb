#include "analysis/run/Run.h"

#include "app/globals.h"
#include "catalogue/CDaoPersistance.h"
#include "diagnostics/engineWords.h"
#include "diagnostics/errors.h"
#include "platform/ui/Asker.h"

#include <algorithm>

/// The step of a run that makes the user's filter a condition, and what is said where it can be none.

using namespace Qt::StringLiterals;

bool Run::translateUserFilter() {
    CountFacts& facts = round_.facts;
    if (!facts.userFilter)
        return true;
    FilterSurroundings around;
    around.joinedAlready << facts.table;
    if (r_.mode == AnalysisMode::Crosstab)
        around.joinedAlready << facts.table2;
    around.find = [this](const QString& word, bool& ended) {
        std::optional<VariablePlace> place;
        ended = !step([&] { place = findPlace(word); });
        return place;
    };
    around.attach = [this](const QString& table) { return attach(table, round_.study); };
    around.knowsNames = [this](const FilterResult& condition) {
        const std::optional<dao::Error> failure = failureOf(condition.filterSql, condition.joins);
        return !failure || !isOfUnknownName(*failure);
    };
    around.grouped = r_.mode != AnalysisMode::Descriptives;
    const FilterResult result = readFilter(r_.txtFilter, around);
    if (result.failure == FilterResult::Failure::Ended)
        return false;
    if (const QString words = result.objection(); !words.isEmpty())
        return endWith(words);
    // The title will repeat the whole text: nobody may take it for what was counted.
    if (!result.lost.isEmpty() && !in_.hooks.acceptsLost(result.lost))
        return isComparison() ? clearAndEnd() : end(RunOutcome::Refused);
    facts.filterSql = result.filterSql;
    round_.lostFilter = result.lost;
    facts.joins = result.joins;
    return true;
}

/// What the engine says of a condition before it looks at a case; an empty one leaves nothing out.
std::optional<dao::Error> Run::failureOf(const QString& condition, const ExtraJoins& joins) const {
    CountFacts probe = round_.facts;
    probe.mode = AnalysisMode::Descriptives;
    probe.chkDescGroup = r_.groupsByTwo();
    probe.part = false;
    probe.userFilter = true;
    probe.filterSql = condition.isEmpty() ? u"1=0"_s : u"1=0 AND ("_s + condition + u')';
    probe.joins = joins;
    const dao::KeptErrors kept;
    try {
        db_->OpenRecordset(countStatementBase(probe), dao::dbOpenSnapshot);
    } catch (const dao::Error& error) {
        return error;
    }
    return std::nullopt;
}

bool Run::isOfUnknownName(const dao::Error& error) {
    return error.number() == 3061 || error.number() == 3070 || error.number() == 3079;
}

/// A failure of the count that comes of the filter: without it the engine has nothing against the statement.
bool Run::isOfFilter(const dao::Error& error) const {
    constexpr int numbers[] = {6, 11, 13, 3061, 3070, 3075, 3077, 3079, 3085, 3360, 3464};
    return round_.facts.userFilter && std::ranges::find(numbers, error.number()) != std::end(numbers) &&
           !failureOf(QString(), round_.facts.joins);
}

/// The engine's own words are for who wants to see them.
bool Run::refuseFilter(const dao::Error& error, const QString& statement) {
    constexpr int mismatch = 3464;
    QString words = TranslateText(u"Der Filter kann nicht berechnet werden:"_s) + u' ' + r_.txtFilter;
    if (isOfUnknownName(error) && !error.detail().isEmpty())
        words +=
            u'\n' +
            TranslateText(u"%1 ist kein Name einer Variable. Texte stehen in Anführungszeichen."_s).arg(error.detail());
    else if (error.number() == mismatch)
        words += u'\n' + TranslateText(u"Ein Text steht, wo eine Bedingung oder Zahl gebraucht wird."_s);
    if (isComparison())
        words.prepend(round_.study + u", "_s + round_.facts.variable + u"\n"_s);
    CDaoPersistance::logStatement(statement);
    gErrHandler.HandleDBError(error.description(), false);
    ui::asker().messageBox({.text = words, .icon = ui::Icon::Exclamation, .details = engineWords(error)});
    return clearAndEnd();
}

/// What the filter compares a variable with that none of its values can be. Texts may be numbers: where some were
/// counted, nothing is said of them.
void Run::noteHopelessComparisons(bool noneCounted) {
    const dao::KeptErrors kept;
    try {
        for (const ParsedFilter::Comparison& compared : parseFilter(r_.txtFilter).comparisons) {
            const bool isNumber = dao::textToNumber(compared.value).has_value();
            if (compared.text ? isNumber : !noneCounted)
                continue;
            const std::optional<VariablePlace> place = findPlace(compared.variable);
            if (!place)
                continue;
            const std::vector<dao::ColumnInfo> columns = db_->TableDefs().Item(place->table)->columns();
            const auto column = std::ranges::find_if(columns, [&](const dao::ColumnInfo& one) {
                return one.name.compare(place->field, Qt::CaseInsensitive) == 0;
            });
            if (column == columns.end() || dao::isTextType(column->type) == compared.text)
                continue;
            const TableNote note{compared.text ? u"%1 hat Zahlen: mit einem Text im Filter stimmt keine überein."_s
                                               : u"Gezählt wurde kein Fall: %1 hat Texte und wird im Filter mit einer "
                                                 "Zahl verglichen. Texte stehen in Anführungszeichen."_s,
                                 compared.variable};
            notes_.push_back(note);
        }
    } catch (const dao::Error&) {
        return; // a note that can't be made is none
    }
}

bool askOfLostEnd(const QString& lost) {
    return ui::asker().messageBox({TranslateText(u"Das Ende des Filters zählt nicht:"_s) + u' ' + lost + u"\r\n"_s +
                                       TranslateText(u"Trotzdem rechnen?"_s),
                                   QString(), ui::Icon::Question, ui::Buttons::YesNo, ui::Answer::No}) ==
           ui::Answer::Yes;
}
