#include "analysis/result/titles.h"

#include "app/globals.h"
#include "config/Options.h"

#include <optional>

using namespace Qt::StringLiterals;

namespace {

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

QString resultTitle(const AnalysisRequest& request, const ResultTable& table, const Options& options) {
    const QString start = request.dbcStudy.value + u", "_s + request.dbcVariableUni;
    const QString byTwo = start + u" "_s + TranslateText(u"nach"_s) + u" "_s + request.dbcVariable2Uni;
    const StatedCases cases = table.shape.casesOf();
    const auto n = [&](bool withMissing) { return withN(withMissing ? cases.all : cases.valid); };
    QString title;
    switch (request.mode) {
    case AnalysisMode::Frequency:
        title = start + n(options.IncludeMissing);
        break;
    case AnalysisMode::Descriptives:
        title = request.chkDescGroup && !request.dbcVariable2Uni.isEmpty() ? byTwo : start + n(true);
        break;
    case AnalysisMode::Crosstab:
        title = byTwo;
        if (request.cbValues == 0)
            title += n(options.IncludeMissingInPercentXTab);
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
