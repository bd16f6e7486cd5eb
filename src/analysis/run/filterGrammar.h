#pragma once

#include <QString>
#include <QStringList>
#include <vector>

/// What a filter lacks, or has too much of, to be read as a condition.
enum class FilterFault {
    None,
    Empty,
    IllegalCharacter,
    OpenBracket,
    ClosingBracket, ///< that nothing opened
    EmptyBrackets,
    OpenText,
    OpenName,
    EmptyName,
    NoValue,            ///< behind a comparison
    NoCondition,        ///< behind AND, OR, NOT
    NoConditionBefore,  ///< AND or OR at the beginning
    NoConditionBetween, ///< two of these words
    TwoSigns,
    NoSuchSign,
    NoComparison, ///< a variable or value alone
    NoVariable,   ///< before a comparison
    NoOperator,   ///< between two conditions
    NoList,       ///< behind IN
    EmptyList,
    NoListValue, ///< something else than a value in a list
    TooMuch      ///< longer or deeper than any that the engine takes
};

/// A filter text read as a condition: comparisons and lists of variables, numbers and texts, joined by AND, OR, NOT and
/// brackets. Beside what the run's own pass takes there are [names in brackets], 'texts' in quotes of either kind,
/// IN (lists), and numbers with a sign and with either separator; in a list the comma parts values.
struct ParsedFilter {
    FilterFault fault = FilterFault::None;
    QStringList about;                  ///< what the fault is about, as it is written
    qsizetype position = 0, length = 0; ///< of the fault in the text

    /// A piece of the condition: a variable by its name, or text as the engine takes it.
    struct Piece {
        QString text;
        bool variable = false;
        qsizetype position = 0, length = 0; ///< of a variable in the text
    };
    std::vector<Piece> pieces;
    /// A variable and a value that it is compared with.
    struct Comparison {
        QString variable, value;
        bool text = false; ///< the value is a text
    };
    std::vector<Comparison> comparisons;
    bool alternatives = false; ///< has an OR that no bracket holds together
};

ParsedFilter parseFilter(const QString& text);

/// A fault in plain words, in the language in force; empty for none.
QString faultText(FilterFault fault, const QStringList& about);
