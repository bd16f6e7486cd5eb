#pragma once

#include "tables/ResultTable.h"

#include <QStringList>
#include <functional>
#include <vector>

/// A value on whose mark the user and the definition disagree.
struct ValueMark {
    QString value, label; ///< as the table shows them; the value of system-missing is empty
    bool null = false;    ///< system-missing
    bool missing = false; ///< the user has set the mark; else it was taken away

    /// What names the value in a sentence.
    QString text() const { return value.isEmpty() ? label : value; }
};
using ValueMarks = std::vector<ValueMark>;

/// The marks of an axis that differ from what a definition says. A definition that doesn't read counts as none; nothing
/// is shown of it, since the run has said so already.
/// @param definitionOf the definition that speaks for a value, by the value's place in the axis from 0
ValueMarks handMarks(const AxisMarks& marks, const std::function<QString(int place)>& definitionOf);

/// The excluded values of a variable: those of its definition, those that the user has marked besides, and those that
/// count although the definition has them. In the language in force.
QString missingWords(const QString& definition, const ValueMarks& byHand);
