#include "analysis/request/windowTitle.h"

#include "app/globals.h"

using namespace Qt::StringLiterals;

namespace {

QString modeName(AnalysisMode mode) {
    switch (mode) {
    case AnalysisMode::Frequency:
        return TranslateText(u"Häufigkeiten"_s);
    case AnalysisMode::Crosstab:
        return TranslateText(u"Kreuztabelle"_s);
    case AnalysisMode::Descriptives:
        return TranslateText(u"Deskriptive Statistik"_s);
    case AnalysisMode::Comparison:
        return TranslateText(u"Vergleich"_s);
    }
    return {};
}

/// A comparison has a title; without one it is known by what its first entry is about.
QString comparisonName(const AnalysisRequest& request) {
    const QString title = request.txtTitle.simplified();
    if (!title.isEmpty() || request.lst_TrendVars.isEmpty())
        return title;
    const ComparisonEntry& first = request.lst_TrendVars.first();
    return first.at(ComparisonEntry::Study) + u' ' + first.at(ComparisonEntry::Variable) +
           (request.lst_TrendVars.size() > 1 ? u", …"_s : QString());
}

QString variableNames(const AnalysisRequest& request) {
    if (request.dbcStudy.value.isEmpty() || request.dbcVariable.value.isEmpty())
        return {};
    const QString one = request.dbcStudy.value + u' ' + request.dbcVariable.value;
    const bool two = request.groupsByTwo() && !request.dbcVariable2.value.isEmpty();
    return two ? one + u' ' + TranslateText(u"nach"_s) + u' ' + request.dbcVariable2.value : one;
}

} // namespace

QString requestName(const AnalysisRequest& request) {
    const QString about = request.mode == AnalysisMode::Comparison ? comparisonName(request) : variableNames(request);
    return about.isEmpty() ? QString() : about + u" - "_s + modeName(request.mode);
}
