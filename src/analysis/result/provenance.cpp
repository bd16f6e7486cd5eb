#include "analysis/result/provenance.h"

#include "app/globals.h"
#include "tables/tableText.h"

#include <QJsonArray>

using namespace Qt::StringLiterals;

namespace {

QString optionsLine(const TableFacts& facts) {
    QStringList settings;
    for (const OptionDescriptor* option : differingOptions(facts.request.mode, facts.origin.options))
        settings << option->key.toString() + u'=' + optionText(facts.origin.options, *option, false);
    return settings.isEmpty() ? QString() : TranslateText(u"Abweichende Optionen:"_s) + u' ' + settings.join(u"; "_s);
}

/// In its window a table has these words beside it; out of it nobody would know that cells are lacking, or that a row
/// bears a mark that its numbers do not know.
QString stateLine(const TableResult& result) {
    if (!result.facts->complete)
        return stateText(TableState::CutShort);
    return result.shownMarks().sameValues(result.marks) ? QString() : stateText(TableState::OtherMarks);
}

QJsonValue orNull(const QString& text) {
    return text.isEmpty() ? QJsonValue() : QJsonValue(text);
}

QJsonValue numberOf(const std::optional<QString>& n) {
    const dao::Value number(n.value_or(QString()).trimmed());
    return number.isNumeric() ? QJsonValue(number.toDouble()) : QJsonValue();
}

QJsonArray valuesOf(const ValueMarks& marks, bool missing) {
    QJsonArray values;
    for (const ValueMark& mark : marks)
        if (mark.missing == missing)
            values.append(mark.text());
    return values;
}

/// @param by who has decided, as the end of a key
void insertMarks(QJsonObject& object, const ValueMarks& marks, const QString& by) {
    for (const auto& [key, set] : {std::pair(u"marked"_s, true), std::pair(u"valid"_s, false)})
        if (const QJsonArray values = valuesOf(marks, set); !values.isEmpty())
            object.insert(key + by, values);
}

/// A variable as the table has it. @param choice "<id_Varname>: <label>"
QJsonObject variableFacts(const QString& name, const QString& choice, const QString& missing, const ValueMarks& byHand,
                          const ValueMarks& byEarlier = {}) {
    QJsonObject variable{{u"name"_s, name},
                         {u"label"_s, nameOfChoice(choice).isEmpty() ? choice : choice.mid(name.size() + 2)},
                         {u"missing"_s, orNull(missing)}};
    insertMarks(variable, byHand, u"ByHand"_s);
    insertMarks(variable, byEarlier, u"ByEarlierEntry"_s);
    return variable;
}

QJsonArray variablesOf(const TableFacts& facts) {
    const AnalysisRequest& r = facts.request;
    const bool flip = r.flipInForce(), statistics = r.mode == AnalysisMode::Descriptives;
    QJsonArray variables{variableFacts(r.dbcVariable.value, r.dbcVariableUni, statistics ? r.sMissing : r.dtMissing,
                                       flip ? facts.handColumns : facts.handRows)};
    if (r.groupsByTwo() && !r.dbcVariable2.isEmpty())
        variables.append(variableFacts(r.dbcVariable2.value, r.dbcVariable2Uni, r.dtMissing2,
                                       flip ? facts.handRows : facts.handColumns));
    return variables;
}

void insertCases(QJsonObject& object, const TableFacts::Round& round) {
    object.insert(u"filter"_s, orNull(round.filter));
    object.insert(u"part"_s, orNull(round.part));
    object.insert(u"weight"_s, orNull(round.weight));
    object.insert(u"n"_s, numberOf(round.cases.all));
    object.insert(u"validN"_s, numberOf(round.cases.valid));
}

QJsonArray entriesOf(const TableFacts& facts) {
    QJsonArray entries;
    for (size_t i = 0; i < facts.rounds.size(); ++i) {
        const TableFacts::Round& round = facts.rounds[i];
        const ComparisonEntry& entry = facts.request.lst_TrendVars[static_cast<qsizetype>(i)];
        QJsonObject object{
            {u"study"_s, round.study},
            {u"variables"_s, QJsonArray{variableFacts(round.variable, entry.at(ComparisonEntry::VarLabel),
                                                      round.dtMissing, {}, round.byEarlier)}}};
        insertCases(object, round);
        entries.append(object);
    }
    return entries;
}

QJsonObject percentOf(const ResultTable& table) {
    static const QString names[] = {QString(), u"columns"_s, u"rows"_s, u"total"_s};
    QJsonArray bases;
    for (const PercentBase& base : table.bases)
        bases.append(QJsonObject{{u"value"_s, base.value}, {u"label"_s, base.label}, {u"n"_s, numberOf(base.n)}});
    return {{u"of"_s, names[static_cast<int>(table.percentOf)]},
            {u"cases"_s, table.percentOfValid ? u"valid"_s : u"all"_s},
            {u"n"_s, bases}};
}

QJsonArray groupsOf(const ResultTable& table) {
    QJsonArray groups;
    for (const RowGroup& group : table.groups)
        groups.append(QJsonObject{
            {u"value"_s, table.Cell(0, group.row)}, {u"label"_s, group.label}, {u"missing"_s, group.missing}});
    return groups;
}

} // namespace

QStringList linesBelow(const TableResult& result) {
    if (result.stored) {
        QStringList phrases{TranslateText(u"Gespeicherte Tabelle, nicht neu gerechnet"_s),
                            TranslateText(u"Studie:"_s) + u' ' + result.stored->study, result.stored->choice};
        if (!result.stored->weight.isEmpty())
            phrases << TranslateText(u"Gewicht:"_s) + u' ' + result.stored->weight;
        return {phrases.join(u" · "_s)};
    }
    if (!result.facts)
        return {};
    QStringList lines = result.notes() + standsOn(*result.facts);
    if (const QString base = percentBaseText(result.mfgGrid); !base.isEmpty())
        lines << base;
    return lines;
}

QStringList provenanceLines(const TableResult& result) {
    QStringList lines = linesBelow(result);
    if (result.facts)
        lines << groupsText(result.mfgGrid) << optionsLine(*result.facts) << stateLine(result);
    lines.removeAll(QString());
    return lines;
}

QJsonObject provenanceFacts(const TableResult& result) {
    if (!result.facts)
        return {};
    const TableFacts& facts = *result.facts;
    const AnalysisRequest& r = facts.request;
    QJsonObject object;
    if (r.mode == AnalysisMode::Comparison) {
        object = {{u"title"_s, r.txtTitle}, {u"entries"_s, entriesOf(facts)}};
        insertMarks(object, facts.handRows, u"ByHand"_s);
    } else {
        object = {
            {u"study"_s, r.dbcStudy.value}, {u"studyTitle"_s, r.dbcStudy.text}, {u"variables"_s, variablesOf(facts)}};
        for (const TableFacts::Round& round : facts.rounds)
            insertCases(object, round);
    }
    QJsonObject options;
    for (const OptionDescriptor* option : differingOptions(r.mode, facts.origin.options))
        options.insert(option->key.toString(), facts.origin.options.*std::get<bool Options::*>(option->member));
    object.insert(u"options"_s, options);
    if (!result.notes().isEmpty())
        object.insert(u"notes"_s, QJsonArray::fromStringList(result.notes()));
    if (result.mfgGrid.percentOf != PercentOf::None)
        object.insert(u"percent"_s, percentOf(result.mfgGrid));
    if (!result.mfgGrid.groups.empty())
        object.insert(u"groups"_s, groupsOf(result.mfgGrid));
    return object;
}
