#pragma once

#include <QString>

#include "platform/dao/Value.h"

#include <optional>
#include <vector>

/// A missing-value definition ("9", "8;9", "7;8;9", "90 thru 99", "90 thru 99;0", also with ", " for ";" and
/// "lowest" and "highest" for a number), read once. Its numbers are read with either decimal separator.
///
/// A piece that is no number is run-time error 13, a separator in front of "thru" error 5. With
/// gErrorTrapping on, each shows the standard error box: Retry reads again, Ignore takes 0 for the piece,
/// Abort leaves a definition under which nothing is missing. Without it the error is thrown.
class MissingDefinition {
public:
    explicit MissingDefinition(const QString& text);
    /// The same without a box: nothing for a text that cannot be read.
    static std::optional<MissingDefinition> readable(const QString& text);

    /// The numbers of the definition, a range's bounds first; none for one under which nothing is missing.
    std::vector<double> numbers() const;
    bool isRange() const { return kind_ == Kind::Range || kind_ == Kind::RangeAndOne; }
    /// True when the number falls under the definition.
    bool contains(double number) const;
    /// What counts as missing, as people say it ("9", "8 und 9", "90 bis 99 sowie 0", "ab 97"); empty for one under
    /// which nothing is. @param word gives the words in the language wanted, from the German ones
    QString inWords(QString (*word)(const QString&, int), int language) const;
    /// The condition that is true for valid values; see MissingToSql().
    QString validCondition(const QString& fieldExpression) const;

private:
    enum class Kind { None, One, Two, Three, Range, RangeAndOne };
    Kind kind_ = Kind::None;
    double d1_ = 0, d2_ = 0, d3_ = 0;

    bool split(const QString& text);
};

/// The definition of a text without a box: one that doesn't read counts as none. For what speaks of a table that is
/// there: whoever made it has heard of the text.
MissingDefinition definitionOrNone(const QString& text);

/// True when the value falls under a missing-value definition. The caller has seen that the value is numeric
/// and not Null. An empty definition is false.
/// @throws dao::Error as MissingDefinition has it
bool IsMissing(const dao::Value& value, const QString& missingText);

/// The condition that is true for valid values; empty for an empty definition. Bare bounds: the caller
/// brackets the whole. Numbers in the process's decimal separator, the two extremes through CDbl.
/// @throws as IsMissing()
QString MissingToSql(const QString& fieldExpression, const QString& missingText);
