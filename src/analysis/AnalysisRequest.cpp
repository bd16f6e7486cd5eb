#include "analysis/AnalysisRequest.h"

using namespace Qt::StringLiterals;

QString tagOfMode(AnalysisMode mode) {
    switch (mode) {
    case AnalysisMode::Frequency:
        return u"Frequency"_s;
    case AnalysisMode::Crosstab:
        return u"Crosstab"_s;
    case AnalysisMode::Descriptives:
        return u"Descriptives"_s;
    case AnalysisMode::Comparison:
        return u"Trend"_s;
    }
    return {};
}

QString nameOfChoice(const QString& choice) {
    const qsizetype colon = choice.indexOf(u':');
    return colon >= 1 ? choice.left(colon) : QString();
}

QString AnalysisRequest::weightVariable() const {
    switch (Option3) {
    case WeightKind::noWeight:
        return {};
    case WeightKind::WeightRE:
        return dt_WeightRE;
    case WeightKind::WeightHH:
        return dt_WeightHH;
    case WeightKind::WeightUser:
        return nameOfChoice(dbcVarGewicht_1Uni);
    }
    return {};
}
