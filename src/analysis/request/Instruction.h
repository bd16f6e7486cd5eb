#pragma once

#include "analysis/request/AnalysisRequest.h"

#include <optional>

class RequestEditor;

/// A request as the catalogue keeps it with a variable, to be run again: all but the variable itself.
///
/// Its text has fields that end with ";": the mode, for statistics directly followed by their mask; the second
/// variable; kind and value of the filter; kind and value of the weight; the view of a crosstab; and, where it was kept
/// for one variable, whether a crosstab has its variables exchanged.
struct Instruction {
    AnalysisMode mode = AnalysisMode::Frequency;
    QString dtDesc; ///< empty: the options' statistics
    QString second; ///< name of the second variable; empty for none
    FilterKind filter = FilterKind::noFilter;
    QString filterValue; ///< id_Part, or the user's filter
    WeightKind weight = WeightKind::noWeight;
    QString weightValue;      ///< name of the weight variable
    int values = 0;           ///< as cbValuesInstruct
    std::optional<bool> flip; ///< nothing: the check box stays as it is

    /// Every text is an instruction: unknown words stand for the first choice, what is missing for nothing.
    static Instruction read(const QString& text);
    QString text() const;

    bool operator==(const Instruction&) const = default;
};

/// The request as an instruction. Nothing where it can't be one, and the reason in words: a comparison, a second
/// variable, filter or weight that is not chosen, and what holds the sign that ends a field.
std::optional<Instruction> instructionOf(const AnalysisRequest& request, QString& reason);

/// Sets the request as an instruction has it, but for the first variable. Where its second variable, weight or part is
/// not in the study nothing is set.
/// @return the reason in words; empty for an instruction that has been set
QString loadInstruction(RequestEditor& editor, const Instruction& instruction);
