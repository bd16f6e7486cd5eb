#pragma once

#include <QHash>
#include <QString>
#include <QStringList>
#include <optional>
#include <vector>

/// Names that statements and filters can bear.

/// Why a study number cannot be taken, in the user's language; empty for a good one. Statements use it
/// unbracketed as the beginning of table names, and look for words in them.
QString studyNumberFault(const QString& number);

/// The names of one variable in catalogue and case table.
struct VariableNames {
    QString original; ///< in the file
    QString name;     ///< `id_VarName`
    QString field;    ///< `dt_FieldName`
};

/// Names of all variables, in order. Every name and every field is unique without regard to case.
///
/// `name` is the original but for characters that cut a statement or an instruction short, and a suffix where
/// it was given before. `field` is the name where it is a plain identifier that no statement trips over, else
/// the one that the variable had before, or, where that is taken or there was none, "V" and the position
/// (from 1), with "_" until it is free.
/// @param fieldsBefore  fields of the study that is replaced, by case-folded variable name
std::vector<VariableNames> variableNames(const QStringList& originals,
                                         const QHash<QString, QString>& fieldsBefore = {});

/// Position of the variable that bears a name in the file or in the catalogue, without regard to case.
std::optional<size_t> positionOf(const std::vector<VariableNames>& names, const QString& wanted);

/// True if a filter can name the variable without brackets: letters without marks, "_", "-", digits inside, no AND, OR,
/// NOT.
bool isFilterWord(const QString& name);
