#include "analysis/TableFacts.h"

#include "analysis/DescriptivesChoice.h"
#include "app/globals.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

using OptionList = std::initializer_list<bool Options::*>;

bool equalIn(const Options& a, const Options& b, OptionList options) {
    return std::ranges::all_of(options, [&](bool Options::*o) { return a.*o == b.*o; });
}

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

bool groupsByTwo(const AnalysisRequest& r) {
    return r.mode == AnalysisMode::Crosstab || (r.mode == AnalysisMode::Descriptives && r.chkDescGroup);
}

QString spaced(const QString& name, const QString& value) {
    return name + u' ' + value;
}

QString filterPhrase(const TableFacts::Round& round) {
    if (!round.part.isEmpty())
        return spaced(TranslateText(u"Filter:"_s), round.part);
    return spaced(TranslateText(u"Filter:"_s),
                  round.filterSql.isEmpty() ? TranslateText(u"keiner"_s) : round.filterSql);
}

QString weightPhrase(const TableFacts::Round& round) {
    return spaced(TranslateText(u"Gewicht:"_s), round.weight.isEmpty() ? TranslateText(u"keines"_s) : round.weight);
}

QStringList casesPhrase(const StatedCases& cases) {
    const auto stated = [](const std::optional<QString>& n) { return n && !n->trimmed().isEmpty(); };
    const QString valid = stated(cases.valid) ? TranslateText(u"gültig"_s) + u' ' + *cases.valid : QString();
    if (stated(cases.all))
        return {u"N = "_s + *cases.all + (valid.isEmpty() ? QString() : u" ("_s + valid + u')')};
    return valid.isEmpty() ? QStringList() : QStringList{u"N "_s + valid};
}

QString definition(const QString& text) {
    return text.isEmpty() ? TranslateText(u"ohne Definition"_s) : text;
}

QString byHand(const QStringList& values) {
    return spaced(TranslateText(u"von Hand gesetzt:"_s), values.join(u"; "_s));
}

QString missingPhrase(const TableFacts& facts) {
    const AnalysisRequest& r = facts.request;
    const QString& first = r.dbcVariable.value;
    const QString& second = r.dbcVariable2.value;
    switch (r.mode) {
    case AnalysisMode::Frequency:
        return facts.marksByHand ? byHand(facts.markedRows) : definition(r.dtMissing);
    case AnalysisMode::Crosstab: {
        const QStringList& ofFirst = facts.flip ? facts.markedColumns : facts.markedRows;
        const QStringList& ofSecond = facts.flip ? facts.markedRows : facts.markedColumns;
        return first + u": "_s + (facts.marksByHand ? byHand(ofFirst) : definition(r.dtMissing)) + u", "_s + second +
               u": "_s + (facts.marksByHand ? byHand(ofSecond) : definition(r.dtMissing2));
    }
    case AnalysisMode::Descriptives:
        return facts.options.IncludeMissingDesc ? TranslateText(u"alle Werte zählen"_s) : definition(r.sMissing);
    case AnalysisMode::Comparison:
        break;
    }
    return facts.marksByHand ? byHand(facts.markedRows) : QString();
}

/// One line for each entry of a comparison.
QStringList entriesStandOn(const TableFacts& facts) {
    QStringList lines;
    if (facts.marksByHand)
        lines << spaced(TranslateText(u"Missing-Definition:"_s), missingPhrase(facts));
    for (const TableFacts::Round& round : facts.rounds) {
        QStringList phrases{round.study + u", "_s + round.variable, filterPhrase(round), weightPhrase(round)};
        phrases << casesPhrase(round.cases);
        if (!facts.marksByHand)
            phrases << spaced(TranslateText(u"Missing-Definition:"_s), definition(round.dtMissing));
        lines << phrases.join(u" · "_s);
    }
    return lines;
}

} // namespace

QString statisticsKey(const AnalysisRequest& request) {
    if (request.mode != AnalysisMode::Descriptives)
        return {};
    const DescriptivesChoice choice = DescriptivesChoice::of(request);
    return choice.dtDesc() + u' ' + choice.dtDescDigits() + (gOptions.IncludeMissingDesc ? u" all"_s : QString()) +
           (gOptions.CommaInPercent ? QString() : u" other separator"_s);
}

bool sameEntries(const QList<ComparisonEntry>& a, const QList<ComparisonEntry>& b) {
    return std::ranges::equal(a, b, [](const ComparisonEntry& x, const ComparisonEntry& y) {
        return std::ranges::equal(x.column, y.column);
    });
}

bool asksTheSame(const AnalysisRequest& a, const AnalysisRequest& b) {
    if (a.mode != b.mode)
        return false;
    if (a.mode == AnalysisMode::Comparison)
        return a.txtTitle == b.txtTitle && sameEntries(a.lst_TrendVars, b.lst_TrendVars);
    const bool two = groupsByTwo(a);
    if (two != groupsByTwo(b) || (two && a.dbcVariable2.value != b.dbcVariable2.value))
        return false;
    if (a.mode == AnalysisMode::Crosstab && a.dtMissing2 != b.dtMissing2)
        return false;
    if (a.mode == AnalysisMode::Descriptives && !gOptions.IncludeMissingDesc && a.sMissing != b.sMissing)
        return false;
    return a.dbcStudy.value == b.dbcStudy.value && a.dbcVariable.value == b.dbcVariable.value &&
           a.weightVariable() == b.weightVariable() && a.dtMissing == b.dtMissing && filterAsked(a) == filterAsked(b);
}

bool showsTheSame(AnalysisMode mode, const Options& a, const Options& b) {
    if (a.DataPath != b.DataPath || a.CommaInPercent != b.CommaInPercent)
        return false;
    switch (mode) {
    case AnalysisMode::Frequency:
        return equalIn(a, b,
                       {&Options::CumulatedPercent, &Options::SeparateValidCases, &Options::AutoColWidth,
                        &Options::IncludeMissing});
    case AnalysisMode::Crosstab:
        return equalIn(a, b,
                       {&Options::IncludeMissingXTab, &Options::IncludeMissingInPercentXTab, &Options::IncludeNinXTab,
                        &Options::IncludeNinXTabPercent, &Options::IncludeNinXTabPercentNFirst,
                        &Options::NoColumnLabels, &Options::NoRowLabels, &Options::ShowValidSums,
                        &Options::ShowPercentSign, &Options::AutoColWidth});
    case AnalysisMode::Descriptives:
        return true;
    case AnalysisMode::Comparison:
        return equalIn(a, b,
                       {&Options::HeaderStudy, &Options::HeaderVar, &Options::HeaderYear, &Options::HeaderGroup,
                        &Options::HeaderValFirst, &Options::HeaderValAddVar, &Options::HeaderAddWeight,
                        &Options::HeaderAddFilter, &Options::AutoColWidth, &Options::AutomaticVariableColumnWidth});
    }
    return true;
}

bool keepsMarks(AnalysisMode mode, const Options& a, const Options& b) {
    switch (mode) {
    case AnalysisMode::Crosstab:
        return equalIn(a, b, {&Options::IncludeMissingXTab, &Options::NoColumnLabels, &Options::NoRowLabels});
    case AnalysisMode::Comparison:
        return equalIn(a, b, {&Options::HeaderValFirst, &Options::HeaderValAddVar});
    default:
        return true;
    }
}

QStringList standsOn(const TableFacts& facts) {
    const AnalysisRequest& r = facts.request;
    if (r.mode == AnalysisMode::Comparison)
        return entriesStandOn(facts);
    QStringList phrases{spaced(TranslateText(u"Studie:"_s), r.dbcStudy.value + u", "_s + r.dbcStudy.text)};
    for (const TableFacts::Round& round : facts.rounds)
        phrases << filterPhrase(round) << weightPhrase(round) << casesPhrase(round.cases);
    phrases << spaced(TranslateText(u"Missing-Definition:"_s), missingPhrase(facts));
    return {phrases.join(u" · "_s)};
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
