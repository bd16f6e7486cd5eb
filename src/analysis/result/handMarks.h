#pragma once

#include "tables/ResultTable.h"

#include <QStringList>
#include <functional>
#include <vector>

/// A value whose mark is not the one that the definition gives.
struct ValueMark {
    QString value, label; ///< as the table shows them; the value of system-missing is empty
    bool null = false;    ///< system-missing
    bool missing = false; ///< the mark was set; else it was taken away

    /// What names the value in a sentence.
    QString text() const;
};
using ValueMarks = std::vector<ValueMark>;

/// The marks of an axis that differ from what a definition says. A definition that doesn't read counts as none; nothing
/// is shown of it, since the run has said so already.
/// @param definitionOf the definition that speaks for a value, by the value's place in the axis from 0; nothing for a
/// value that is not asked about
ValueMarks handMarks(const AxisMarks& marks, const std::function<std::optional<QString>(int place)>& definitionOf);

/// The excluded values of a variable: those of its definition, those that the user has marked besides, and those that
/// count although the definition has them. In the language in force.
/// @param byEarlier marks of a comparison that an earlier entry has decided against this one's definition
QString missingWords(const QString& definition, const ValueMarks& byHand, const ValueMarks& byEarlier = {});
