#include "analysis/request/AnalysisRequest.h"

using namespace Qt::StringLiterals;

TableKind kindOfMode(AnalysisMode mode) {
    switch (mode) {
    case AnalysisMode::Frequency:
        return TableKind::Frequency;
    case AnalysisMode::Crosstab:
        return TableKind::Crosstab;
    case AnalysisMode::Descriptives:
        return TableKind::Descriptives;
    case AnalysisMode::Comparison:
        return TableKind::Comparison;
    }
    return TableKind::None;
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

bool AnalysisRequest::groupsByTwo() const {
    return mode == AnalysisMode::Crosstab || (mode == AnalysisMode::Descriptives && chkDescGroup);
}
