#pragma once

#include <QString>
#include <vector>

class RequestEditor;
class ComparisonList;

/// What is chosen in an analysis that was opened on a selection of variables.

struct SelectedVariable {
    QString study, name;
};

/// The first variable; with a second one of the same study a crosstab of both. Further ones count for nothing.
void preselectVariables(RequestEditor& editor, const std::vector<SelectedVariable>& selection);
/// A comparison of all of them, each with the weight of the option ComparisonWeight where its study has it.
void preselectComparison(RequestEditor& editor, ComparisonList& list, const std::vector<SelectedVariable>& selection);
/// The title of a comparison over what an entry of the catalogue holds.
QString comparisonTitle(const QString& entry);
