#include "analysis/result/titles.h"

#include "app/globals.h"
#include "config/Options.h"

#include <QHash>
#include <algorithm>
#include <array>
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

namespace {

/// What a comparison's head may consist of, in its order; the last two stand in brackets.
enum HeadPart { HeadStudy, HeadVariable, HeadYear, HeadGroup, HeadWeight, HeadFilter, headParts };
/// A part that is not asked for is nothing, which is not the same as an empty text.
using HeadParts = std::array<std::optional<QString>, headParts>;

HeadParts partsOfHead(const ComparisonEntry& entry, const Options& options) {
    HeadParts parts;
    const auto take = [&](HeadPart part, bool asked, const QString& text) {
        if (asked)
            parts[part] = text;
    };
    take(HeadStudy, options.HeaderStudy, entry.at(ComparisonEntry::Study));
    take(HeadVariable, options.HeaderVar, entry.at(ComparisonEntry::Variable));
    take(HeadYear, options.HeaderYear, entry.at(ComparisonEntry::Year));
    take(HeadGroup, options.HeaderGroup, entry.at(ComparisonEntry::Group));
    const QString& weight = entry.at(ComparisonEntry::Weight);
    take(HeadWeight, options.HeaderAddWeight && !weight.isEmpty(),
         u"("_s + TranslateText(u"G."_s) + u" "_s + weight + u")"_s);
    const QString& kind = entry.at(ComparisonEntry::FilterInfo);
    const bool part = !kind.isEmpty() && kind != "user"_L1;
    const QString& filter = entry.at(part ? ComparisonEntry::PartText : ComparisonEntry::Filter);
    take(HeadFilter, options.HeaderAddFilter && (part || !filter.isEmpty()), u"(F. "_s + filter + u")"_s);
    return parts;
}

QString joinedHead(const HeadParts& parts) {
    QString head;
    for (int part = 0; part < headParts; ++part)
        if (const std::optional<QString>& text = parts[static_cast<size_t>(part)])
            head += (head.isEmpty() ? QString() : part < HeadWeight ? u", "_s : u" "_s) + *text;
    return head;
}

} // namespace

QString comparisonHeader(const ComparisonEntry& entry, const Options& options) {
    return joinedHead(partsOfHead(entry, options));
}

std::vector<QString> shortHeads(const QList<ComparisonEntry>& entries, const Options& options, int firstColumn) {
    std::vector<HeadParts> heads;
    for (const ComparisonEntry& entry : entries)
        heads.push_back(partsOfHead(entry, options));
    if (heads.size() < 2)
        return {};
    std::vector<HeadParts> shorter = heads;
    for (size_t part = 0; part < headParts; ++part) {
        const bool shared = std::ranges::all_of(heads, [&](const HeadParts& h) { return h[part] == heads[0][part]; });
        for (HeadParts& head : shorter)
            if (shared || (head[part] && head[part]->isEmpty()))
                head[part].reset();
    }
    // An entry that has nothing of its own keeps its variable, and so do the others, so that the heads are alike.
    if (std::ranges::any_of(shorter, [](const HeadParts& head) { return joinedHead(head).isEmpty(); }))
        for (size_t i = 0; i < heads.size(); ++i)
            shorter[i][HeadVariable] = entries[static_cast<qsizetype>(i)].at(ComparisonEntry::Variable);
    std::vector<QString> texts(static_cast<size_t>(firstColumn));
    QHash<QString, QString> fullOf;
    for (size_t i = 0; i < heads.size(); ++i) {
        const QString head = joinedHead(shorter[i]), full = joinedHead(heads[i]);
        if (fullOf.value(head, full) != full)
            return {};
        fullOf.insert(head, full);
        texts.push_back(head);
    }
    return texts;
}
