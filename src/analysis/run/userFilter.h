#pragma once

#include "analysis/run/filterGrammar.h"
#include "analysis/run/statements.h"

#include <functional>

/// The user's filter as a condition.
struct FilterResult {
    enum class Failure { None, IllegalCharacter, UnknownVariable, Syntax, Ended };
    QString filterSql;
    ExtraJoins joins;
    Failure failure = Failure::None;
    QString culprit;                       ///< the character or the word
    FilterFault fault = FilterFault::None; ///< with Syntax
    QStringList about;                     ///< what the fault is about
    qsizetype position = -1, length = 0;   ///< of what is wrong in the text, from 0
    QString lost;                          ///< a word at the very end, which counts for nothing
    QString bracketed;                     ///< the name that was meant, as it should have been written

    /// What is wrong with the filter, in plain words; empty if nothing is, or if the run has told it already.
    QString objection() const;
    /// What is to be known of its end where that counts for nothing; empty where it counts.
    QString notice() const;
};

/// What the pass asks of its surroundings.
struct FilterSurroundings {
    /// Table of the analysed variable, and in a crosstab that of the second: these need no join.
    QStringList joinedAlready;
    /// Looks a variable of the study up; nothing if there is none. Sets `ended` when the run is over.
    std::function<std::optional<VariablePlace>(const QString& word, bool& ended)> find;
    /// Makes a further table available. @return false when the run is over
    std::function<bool(const QString& table)> attach;
    /// Whether the engine knows every name in a condition. May be left out: then it is taken to.
    std::function<bool(const FilterResult& condition)> knowsNames;
    /// The statement goes on behind the condition.
    bool grouped = true;
};

/// Copies a filter text to a condition in one pass over its characters, each variable name replaced by its
/// table and field. What stands directly behind a variable's delimiter is copied as it is up to the next
/// delimiter. A word counts only when a delimiter ends it, so a word at the very end is lost.
FilterResult translateFilter(const QString& text, const FilterSurroundings& surroundings);

/// The condition of a filter text: what the pass makes of it, if the engine can read that. Else the text is read by the
/// wider grammar of parseFilter(), and where that fails too the answer says what is wrong with it.
FilterResult readFilter(const QString& text, const FilterSurroundings& surroundings);
