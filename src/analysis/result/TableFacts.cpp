#include "analysis/result/TableFacts.h"

#include "analysis/request/DescriptivesChoice.h"
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

QString spaced(const QString& name, const QString& value) {
    return name + u' ' + value;
}

QString filterPhrase(const TableFacts::Round& round) {
    if (!round.part.isEmpty())
        return spaced(TranslateText(u"Filter:"_s), round.part);
    return spaced(TranslateText(u"Filter:"_s), round.filter.isEmpty() ? TranslateText(u"keiner"_s) : round.filter);
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

QString missingPhrase(const TableFacts& facts) {
    const AnalysisRequest& r = facts.request;
    const bool flip = r.flipInForce();
    const auto both = [&](const QString& first, const QString& second) {
        return r.dbcVariable.value + u": "_s + first + u", "_s + r.dbcVariable2.value + u": "_s + second;
    };
    switch (r.mode) {
    case AnalysisMode::Frequency:
        return missingWords(r.dtMissing, facts.handRows);
    case AnalysisMode::Crosstab:
        return both(missingWords(r.dtMissing, flip ? facts.handColumns : facts.handRows),
                    missingWords(r.dtMissing2, flip ? facts.handRows : facts.handColumns));
    case AnalysisMode::Descriptives: {
        const QString own = facts.origin.options.IncludeMissingDesc ? TranslateText(u"alle Werte zählen"_s)
                                                                    : missingWords(r.sMissing, {});
        return r.chkDescGroup && !r.dbcVariable2.isEmpty() ? both(own, missingWords(r.dtMissing2, {})) : own;
    }
    case AnalysisMode::Comparison:
        break;
    }
    return missingWords(QString(), facts.handRows);
}

/// The first entry that brings a value decides about its row, and the user above all of them.
void noteEntryMarks(TableFacts& facts, const ResultTable& marked, const AxisMarks& rows, bool byHand) {
    const auto definitionOf = [&](size_t entry, int place) -> std::optional<QString> {
        const int column = marked.shape.columns.first + static_cast<int>(entry);
        const bool brings = !marked.Cell(column, marked.shape.rows.first + place).isEmpty();
        return brings ? std::optional(facts.rounds[entry].dtMissing) : std::nullopt;
    };
    if (byHand)
        facts.handRows = handMarks(rows, [&](int place) -> std::optional<QString> {
            for (size_t entry = 0; entry < facts.rounds.size(); ++entry)
                if (const std::optional<QString> definition = definitionOf(entry, place))
                    return definition;
            return QString();
        });
    const auto isByHand = [&](const ValueMark& mark) {
        return std::ranges::any_of(
            facts.handRows, [&](const ValueMark& hand) { return hand.null == mark.null && hand.value == mark.value; });
    };
    for (size_t entry = 0; entry < facts.rounds.size(); ++entry) {
        ValueMarks& byEarlier = facts.rounds[entry].byEarlier;
        byEarlier = handMarks(rows, [&](int place) { return definitionOf(entry, place); });
        std::erase_if(byEarlier, isByHand);
    }
}

/// One line for each entry of a comparison. What the user has marked holds for all of them.
QStringList entriesStandOn(const TableFacts& facts) {
    QStringList lines;
    if (!facts.handRows.empty())
        lines << spaced(TranslateText(u"Missing-Definition:"_s), missingPhrase(facts));
    for (const TableFacts::Round& round : facts.rounds) {
        QStringList phrases{round.study + u", "_s + round.variable, filterPhrase(round), weightPhrase(round)};
        phrases << casesPhrase(round.cases)
                << spaced(TranslateText(u"Missing-Definition:"_s), missingWords(round.dtMissing, {}, round.byEarlier));
        lines << phrases.join(u" · "_s);
    }
    return lines;
}

} // namespace

QString statisticsKey(const AnalysisRequest& request, const Options& options) {
    if (request.mode != AnalysisMode::Descriptives)
        return {};
    const DescriptivesChoice choice = DescriptivesChoice::of(request, options);
    return choice.dtDesc() + u' ' + choice.dtDescDigits() + (options.IncludeMissingDesc ? u" all"_s : QString()) +
           (options.CommaInPercent ? QString() : u" other separator"_s);
}

bool sameEntries(const QList<ComparisonEntry>& a, const QList<ComparisonEntry>& b) {
    return std::ranges::equal(a, b, [](const ComparisonEntry& x, const ComparisonEntry& y) {
        return std::ranges::equal(x.column, y.column);
    });
}

bool asksTheSame(const AnalysisRequest& a, const AnalysisRequest& b, const Options& options) {
    if (a.mode != b.mode)
        return false;
    if (a.mode == AnalysisMode::Comparison)
        return a.txtTitle == b.txtTitle && sameEntries(a.lst_TrendVars, b.lst_TrendVars);
    const bool two = a.groupsByTwo();
    if (two != b.groupsByTwo() || (two && a.dbcVariable2.value != b.dbcVariable2.value))
        return false;
    if (a.mode == AnalysisMode::Crosstab && (a.dtMissing2 != b.dtMissing2 || a.flipInForce() != b.flipInForce()))
        return false;
    if (a.mode == AnalysisMode::Descriptives && !options.IncludeMissingDesc && a.sMissing != b.sMissing)
        return false;
    return a.dbcStudy.value == b.dbcStudy.value && a.dbcVariable.value == b.dbcVariable.value &&
           a.weightVariable() == b.weightVariable() && a.dtMissing == b.dtMissing && filterAsked(a) == filterAsked(b);
}

OptionList optionsOf(AnalysisMode mode) {
    switch (mode) {
    case AnalysisMode::Frequency:
        return {&Options::CumulatedPercent, &Options::SeparateValidCases, &Options::IncludeMissing,
                &Options::CommaInPercent};
    case AnalysisMode::Crosstab:
        return {&Options::IncludeMissingXTab, &Options::IncludeMissingInPercentXTab,
                &Options::IncludeNinXTab,     &Options::IncludeNinXTabPercent,
                &Options::NoColumnLabels,     &Options::IncludeNinXTabPercentNFirst,
                &Options::NoRowLabels,        &Options::ShowValidSums,
                &Options::ShowPercentSign,    &Options::CommaInPercent};
    case AnalysisMode::Descriptives:
        return {&Options::IncludeMissingDesc, &Options::CommaInPercent};
    case AnalysisMode::Comparison:
        return {&Options::HeaderStudy,     &Options::HeaderVar,       &Options::HeaderYear,
                &Options::HeaderGroup,     &Options::HeaderValFirst,  &Options::HeaderValAddVar,
                &Options::HeaderAddWeight, &Options::HeaderAddFilter, &Options::CommaInPercent};
    }
    return {};
}

std::vector<const OptionDescriptor*> differingOptions(AnalysisMode mode, const Options& options) {
    const Options byDefault;
    std::vector<const OptionDescriptor*> differing;
    for (bool Options::*option : optionsOf(mode))
        if (options.*option != byDefault.*option)
            differing.push_back(&optionOf(option));
    return differing;
}

bool showsTheSame(AnalysisMode mode, const Options& a, const Options& b) {
    const auto equal = [&](bool Options::*option) { return a.*option == b.*option; };
    // Statistics have a key of their own.
    const bool cells = mode == AnalysisMode::Descriptives ? equal(&Options::CommaInPercent)
                                                          : std::ranges::all_of(optionsOf(mode), equal);
    const bool widths = mode == AnalysisMode::Descriptives || equal(&Options::AutoColWidth);
    return a.DataPath == b.DataPath && cells && widths &&
           (mode != AnalysisMode::Comparison || equal(&Options::AutomaticVariableColumnWidth));
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

bool isOf(const TableFacts& facts, const QString& study, const QString& variable) {
    const AnalysisRequest& r = facts.request;
    if (r.mode != AnalysisMode::Comparison)
        return r.dbcStudy.value == study && r.dbcVariable.value == variable;
    return std::ranges::any_of(facts.rounds, [&](const TableFacts::Round& round) {
        return round.study == study && round.variable == variable;
    });
}

void noteMarks(TableFacts& facts, const ResultTable& marked) {
    const AnalysisRequest& r = facts.request;
    const Marks marks = Marks::of(marked);
    const bool flip = r.flipInForce(), byHand = marked.markedBy == Marks::By::Hand;
    if (r.mode == AnalysisMode::Comparison) {
        noteEntryMarks(facts, marked, marks.rows, byHand);
    } else if (byHand) {
        facts.handRows = handMarks(marks.rows, [&](int) { return flip ? r.dtMissing2 : r.dtMissing; });
        facts.handColumns = handMarks(marks.columns, [&](int) { return flip ? r.dtMissing : r.dtMissing2; });
    }
}

QString stateText(TableState state) {
    switch (state) {
    case TableState::None:
    case TableState::Current:
        return {};
    case TableState::Stored:
        return TranslateText(u"Das ist die gespeicherte Tabelle; sie wurde nicht neu gerechnet."_s);
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
