#pragma once

#include "catalogue/StudyRows.h"

#include <QString>
#include <vector>

/// What the open catalogue keeps with the variables of a study (instructions, tables, graphs): read and written by
/// row.

/// New values of some fields of a variable.
struct VariableFields {
    QString variable;
    EntryFields values;
};

/// The row of a variable with some of its fields, to be read and edited; at no row where the study has none of that
/// name. @throws dao::Error
dao::RecordsetPtr variableRow(const QString& study, const QString& variable, const QStringList& fields);

/// The texts of some fields of a variable, all as they are at one moment; Null is empty, and so are all where the study
/// has no such variable. @throws dao::Error
QStringList textsOf(const QString& study, const QString& variable, const QStringList& fields);

/// Writes fields of variables, all in one transaction or none. @return the variables that the study has no more
/// @throws dao::Error
QStringList writeVariableFields(const QString& study, const std::vector<VariableFields>& rows);

/// Writes one value to all variables of a study, in one transaction. @throws dao::Error
void writeToAllVariables(const QString& study, const QString& field, const dao::Value& value);

/// Names of the variables of a study and their instructions, in order of position.
struct KeptInstruction {
    QString variable, text;
};
/// @throws dao::Error
std::vector<KeptInstruction> readInstructions(const QString& study);
