#pragma once

#include "catalogue/CaseTables.h"

/// A survey file's dictionary as the catalogue holds it.

struct VariableEntry {
    QString name, label, table, field, format, missing;
    int position = 0;
};

struct LabelEntry {
    QString variable, code, label;
    QString text = {}; ///< that the code stands for, where a text variable became numbers
};

struct StudyContent {
    std::vector<VariableEntry> variables;
    std::vector<LabelEntry> labels;
    /// Names that had to change, limits that are passed, and everything that has no place in a catalogue; one
    /// fact a line.
    QStringList facts;
};

/// @param codes, texts  settled, after the cases are read
StudyContent studyContent(const SurveyFile& file, const std::vector<VariableNames>& names,
                          const std::vector<CaseTable>& tables, const TaggedCodes& codes, const TextCodes& texts);
