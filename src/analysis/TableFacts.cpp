#include "analysis/TableFacts.h"

#include "analysis/statements.h"
#include "analysis/titles.h"
#include "app/globals.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

QString filterAsked(const AnalysisRequest& r) {
    switch (r.optFilter) {
    case FilterKind::noFilter:
        return {};
    case FilterKind::FilterParts:
        return u"part "_s + r.dbcParts.value + u' ' + r.dtCriteria;
    case FilterKind::FilterUser:
        return r.txtFilter.isEmpty() ? QString() : u"user "_s + r.txtFilter;
    }
    return {};
}

QString filterPhrase(const TableFacts& facts) {
    if (facts.part)
        return facts.request.dbcParts.text + u" ("_s + facts.request.txtFilter + u')';
    return facts.filterSql.isEmpty() ? TranslateText(u"keiner"_s) : facts.filterSql;
}

QString casesPhrase(const ResultTable& table) {
    const std::optional<QString> all = frequencyN(table, true);
    const std::optional<QString> valid = frequencyN(table, false);
    if (!all || !valid)
        return {};
    return u"N = "_s + *all + u" ("_s + TranslateText(u"gültig"_s) + u' ' + *valid + u')';
}

QString missingPhrase(const TableFacts& facts, const ResultTable& table) {
    if (!facts.marksByHand)
        return facts.request.dtMissing.isEmpty() ? TranslateText(u"ohne Definition"_s) : facts.request.dtMissing;
    QStringList values;
    for (int row = 1; row < table.Rows() && row < static_cast<int>(facts.marks.size()); ++row)
        if (facts.marks[static_cast<size_t>(row)])
            values << (table.Cell(0, row).isEmpty() ? table.Cell(1, row) : table.Cell(0, row));
    return TranslateText(u"von Hand gesetzt:"_s) + u' ' + values.join(u"; "_s);
}

} // namespace

bool asksTheSame(const AnalysisRequest& a, const AnalysisRequest& b) {
    if (a.mode != b.mode)
        return false;
    if (a.mode == AnalysisMode::Comparison)
        return comparisonKey(a.lst_TrendVars) == comparisonKey(b.lst_TrendVars);
    const bool two = a.mode == AnalysisMode::Crosstab || a.chkDescGroup || b.chkDescGroup;
    return a.dbcStudy.value == b.dbcStudy.value && a.dbcVariable.value == b.dbcVariable.value &&
           (!two || a.dbcVariable2.value == b.dbcVariable2.value) && a.weightVariable() == b.weightVariable() &&
           a.dtMissing == b.dtMissing && filterAsked(a) == filterAsked(b);
}

bool showsTheSame(const Options& a, const Options& b) {
    static constexpr bool Options::*bearing[] = {&Options::CumulatedPercent, &Options::SeparateValidCases,
                                                 &Options::CommaInPercent, &Options::AutoColWidth,
                                                 &Options::IncludeMissing};
    return a.DataPath == b.DataPath &&
           std::all_of(std::begin(bearing), std::end(bearing), [&](bool Options::*o) { return a.*o == b.*o; });
}

QStringList standsOn(const TableFacts& facts, const ResultTable& table) {
    const AnalysisRequest& r = facts.request;
    const QString weight = r.weightVariable();
    QStringList phrases{TranslateText(u"Studie:"_s) + u' ' + r.dbcStudy.value + u", "_s + r.dbcStudy.text,
                        TranslateText(u"Filter:"_s) + u' ' + filterPhrase(facts),
                        TranslateText(u"Gewicht:"_s) + u' ' +
                            (weight.isEmpty() ? TranslateText(u"keines"_s) : weight)};
    const QString cases = casesPhrase(table);
    if (!cases.isEmpty())
        phrases << cases;
    phrases << TranslateText(u"Missing-Definition:"_s) + u' ' + missingPhrase(facts, table);
    return phrases;
}

QString stateText(TableState state) {
    switch (state) {
    case TableState::None:
    case TableState::Current:
        return {};
    case TableState::CutShort:
        return TranslateText(u"Die Tabelle ist unvollständig."_s);
    case TableState::Stopped:
        return TranslateText(u"Die Berechnung wurde abgebrochen. Die Tabelle zeigt eine frühere Anfrage."_s);
    case TableState::OtherRequest:
        return TranslateText(u"Die Anfrage wurde seit der Berechnung geändert."_s);
    case TableState::OtherOptions:
        return TranslateText(u"Die Optionen wurden seit der Berechnung geändert."_s);
    case TableState::OtherMarks:
        return TranslateText(u"Die Missing-Werte wurden seit der Berechnung geändert."_s);
    }
    return {};
}
