#include "analysis/titles.h"

#include "app/globals.h"
#include "config/Options.h"
#include "tables/tableText.h"

#include <optional>

using namespace Qt::StringLiterals;

namespace {

bool shows(const ResultTable& table, int column, int row, const QString& word) {
    return column >= 0 && column < table.Cols() && row >= 0 && row < table.Rows() &&
           isWord(table.Cell(column, row), word);
}

/// A frequency table ends in "Summe", perhaps a blank row, "Gültige Fälle"; a table that was cut short does
/// not.
std::optional<QString> frequencyN(const ResultTable& table, bool withMissing) {
    const int valid = table.Rows() - 1;
    if (!shows(table, 1, valid, u"Gültige Fälle"_s))
        return std::nullopt;
    if (!withMissing)
        return table.Cell(3, valid);
    for (const int row : {valid - 1, valid - 2})
        if (shows(table, 1, row, u"Summe"_s))
            return table.Cell(3, row);
    return std::nullopt;
}

/// Index of the last row or column that bears the sum's label, -1 where that sum is not in the table. The
/// valid sums stand at the very end or nowhere; the whole sums stand before them or at the end.
template<class Shows>
int sumIndex(int count, bool withMissing, Shows&& label) {
    const bool validLast = label(count - 1, u"Gült. Summe"_s);
    if (!withMissing)
        return validLast ? count - 1 : -1;
    const int index = validLast ? count - 2 : count - 1;
    return label(index, u"Summe"_s) ? index : -1;
}

CrosstabSums sumsOf(const ResultTable& table, bool withMissing) {
    const auto ofRows = [&](int r, const QString& word) { return shows(table, 0, r, word); };
    const auto ofColumns = [&](int c, const QString& word) { return shows(table, c, 0, word); };
    return {sumIndex(table.Cols(), withMissing, ofColumns), sumIndex(table.Rows(), withMissing, ofRows)};
}

std::optional<QString> crosstabN(const ResultTable& table, bool withMissing) {
    const auto [column, row] = sumsOf(table, withMissing);
    if (row < 0 || column < 0)
        return std::nullopt;
    return table.Cell(column, row);
}

/// A number of cases, where it is among the statistics chosen: "Count" or "ValidN".
std::optional<QString> descriptivesN(const ResultTable& table, QLatin1StringView title) {
    // By groups, each has its own.
    if (table.Cols() != 3 || table.Rows() < 3 || !table.Cell(0, 0).isEmpty())
        return std::nullopt;
    for (int row = 1; row < table.Rows(); ++row)
        if (table.Cell(1, row) == title)
            return table.Cell(2, row);
    return std::nullopt;
}

QString withN(const std::optional<QString>& n) {
    return n && !n->trimmed().isEmpty() ? u" "_s + TranslateText(u"(N="_s) + *n + u")"_s : QString();
}

QString bracketed(const QString& word, const QString& value) {
    return u" ("_s + TranslateText(word) + u" "_s + value + u")"_s;
}

QString weightWords(const AnalysisRequest& request) {
    switch (request.Option3) {
    case WeightKind::noWeight:
        return {};
    case WeightKind::WeightRE:
        return bracketed(u"gewichtet nach"_s, request.dt_WeightRE);
    case WeightKind::WeightHH:
        return bracketed(u"gewichtet nach"_s, request.dt_WeightHH);
    case WeightKind::WeightUser:
        // Without a variable nothing was weighted.
        return request.weightVariable().isEmpty() ? QString()
                                                  : bracketed(u"gewichtet nach"_s, request.dbcVarGewicht_1Uni);
    }
    return {};
}

QString filterWords(const AnalysisRequest& request) {
    switch (request.optFilter) {
    case FilterKind::noFilter:
        return {};
    case FilterKind::FilterParts:
        return u" "_s + TranslateText(u"(Fälle aus"_s) + u" "_s + request.dbcParts.text + u")"_s;
    case FilterKind::FilterUser:
        return u" "_s + TranslateText(u"(ausgewählte Fälle:"_s) + u" "_s + request.txtFilter + u")"_s;
    }
    return {};
}

} // namespace

CrosstabSums crosstabSums(const ResultTable& table) {
    return sumsOf(table, true);
}

StatedCases statedCases(AnalysisMode mode, const ResultTable& table, int column) {
    switch (mode) {
    case AnalysisMode::Frequency:
        return {frequencyN(table, true), frequencyN(table, false)};
    case AnalysisMode::Crosstab:
        return {crosstabN(table, true), crosstabN(table, false)};
    case AnalysisMode::Descriptives:
        return {descriptivesN(table, "Count"_L1), descriptivesN(table, "ValidN"_L1)};
    case AnalysisMode::Comparison:
        if (column > 0 && column < table.Cols() && shows(table, 1, table.Rows() - 3, u"Summe"_s))
            return {table.Cell(column, table.Rows() - 3), table.Cell(column, table.Rows() - 2)};
        break;
    }
    return {};
}

QString resultTitle(const AnalysisRequest& request, const ResultTable& table, const Options& options) {
    const QString start = request.dbcStudy.value + u", "_s + request.dbcVariableUni;
    const QString byTwo = start + u" "_s + TranslateText(u"nach"_s) + u" "_s + request.dbcVariable2Uni;
    QString title;
    switch (request.mode) {
    case AnalysisMode::Frequency:
        title = start + withN(frequencyN(table, options.IncludeMissing));
        break;
    case AnalysisMode::Descriptives:
        title = request.chkDescGroup && !request.dbcVariable2Uni.isEmpty()
                    ? byTwo
                    : start + withN(descriptivesN(table, "Count"_L1));
        break;
    case AnalysisMode::Crosstab:
        title = byTwo;
        if (request.cbValues == 0)
            title += withN(crosstabN(table, options.IncludeMissingInPercentXTab));
        break;
    case AnalysisMode::Comparison:
        return TranslateText(u"Vergleichsauswertung:"_s) + u" "_s + request.txtTitle;
    }
    return title + weightWords(request) + filterWords(request);
}

QString comparisonHeader(const ComparisonEntry& entry, const Options& options) {
    QString header;
    const auto add = [&header](const QString& text, const QString& between) {
        header += (header.isEmpty() ? QString() : between) + text;
    };
    if (options.HeaderStudy)
        add(entry.at(ComparisonEntry::Study), u", "_s);
    if (options.HeaderVar)
        add(entry.at(ComparisonEntry::Variable), u", "_s);
    if (options.HeaderYear)
        add(entry.at(ComparisonEntry::Year), u", "_s);
    if (options.HeaderGroup)
        add(entry.at(ComparisonEntry::Group), u", "_s);
    const QString weight = entry.at(ComparisonEntry::Weight);
    if (options.HeaderAddWeight && !weight.isEmpty())
        add(u"("_s + TranslateText(u"G."_s) + u" "_s + weight + u")"_s, u" "_s);
    const QString& kind = entry.at(ComparisonEntry::FilterInfo);
    const bool part = !kind.isEmpty() && kind != "user"_L1;
    if (options.HeaderAddFilter && (part || !entry.at(ComparisonEntry::Filter).isEmpty()))
        add(u"(F. "_s + (part ? entry.at(ComparisonEntry::PartText) : entry.at(ComparisonEntry::Filter)) + u")"_s,
            u" "_s);
    return header;
}
