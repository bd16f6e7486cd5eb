#pragma once

#include "analysis/run/statements.h"

#include <functional>

/// The user's filter as a condition.
struct FilterResult {
    enum class Failure { None, IllegalCharacter, UnknownVariable, Ended };
    QString filterSql;
    ExtraJoins joins;
    Failure failure = Failure::None;
    QString culprit;         ///< the character or the word
    qsizetype position = -1; ///< of the culprit in the text, from 0
    QString lost;            ///< a word at the very end, which counts for nothing
};

/// What the pass asks of its surroundings.
struct FilterSurroundings {
    /// Table of the analysed variable, and in a crosstab that of the second: these need no join.
    QStringList joinedAlready;
    /// Looks a variable of the study up; nothing if there is none. Sets `ended` when the run is over.
    std::function<std::optional<VariablePlace>(const QString& word, bool& ended)> find;
    /// Makes a further table available. @return false when the run is over
    std::function<bool(const QString& table)> attach;
};

/// Copies a filter text to a condition in one pass over its characters, each variable name replaced by its
/// table and field. What stands directly behind a variable's delimiter is copied as it is up to the next
/// delimiter. A word counts only when a delimiter ends it, so a word at the very end is lost.
FilterResult translateFilter(const QString& text, const FilterSurroundings& surroundings);
