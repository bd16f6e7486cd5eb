#include "analysis/request/preselection.h"

#include "analysis/request/ComparisonList.h"
#include "analysis/request/RequestEditor.h"
#include "app/globals.h"
#include "config/Options.h"

using namespace Qt::StringLiterals;

void preselectVariables(RequestEditor& editor, const std::vector<SelectedVariable>& selection) {
    if (selection.empty())
        return;
    const SelectedVariable& first = selection.front();
    if (!editor.StudyClick(first.study) || !editor.chooseVariable(first.name) || selection.size() < 2)
        return;
    const SelectedVariable& second = selection[1];
    if (dao::compareTexts(first.study, second.study) != 0)
        return;
    editor.chooseMode(AnalysisMode::Crosstab);
    editor.chooseVariable2(second.name);
}

void preselectComparison(RequestEditor& editor, ComparisonList& list, const std::vector<SelectedVariable>& selection) {
    editor.chooseMode(AnalysisMode::Comparison);
    for (const SelectedVariable& variable : selection)
        list.addVariable(variable.study, variable.name);
}

QString comparisonTitle(const QString& entry) {
    return gOptions.ComparisonWeight >= 1 ? entry + u" ("_s + TranslateText(u"gewichtet"_s) + u')' : entry;
}
