#include "analysis/preselection.h"

#include "analysis/AnalysisModel.h"
#include "analysis/ComparisonList.h"
#include "app/globals.h"
#include "config/Options.h"

using namespace Qt::StringLiterals;

void preselectVariables(AnalysisModel& model, const std::vector<SelectedVariable>& selection) {
    if (selection.empty())
        return;
    const SelectedVariable& first = selection.front();
    if (!model.StudyClick(first.study) || !model.chooseVariable(first.name) || selection.size() < 2)
        return;
    const SelectedVariable& second = selection[1];
    if (dao::compareTexts(first.study, second.study) == 0 && model.chooseMode(AnalysisMode::Crosstab))
        model.chooseVariable2(second.name);
}

void preselectComparison(AnalysisModel& model, ComparisonList& list, const std::vector<SelectedVariable>& selection) {
    model.chooseMode(AnalysisMode::Comparison);
    for (const SelectedVariable& variable : selection)
        list.addVariable(variable.study, variable.name);
}

QString comparisonTitle(const QString& entry) {
    return gOptions.ComparisonWeight >= 1 ? entry + u" ("_s + TranslateText(u"gewichtet"_s) + u')' : entry;
}
