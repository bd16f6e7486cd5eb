#pragma once

#include <QString>
#include <vector>

/// A word or sign of a filter text.
struct FilterToken {
    enum class Kind {
        Word, ///< a name without brackets, or AND, OR, NOT, IN
        Name, ///< [name]
        Number,
        Text, ///< 'text' or "text", a doubled quote in it being one
        Sign, ///< what stands together of "<", "=" and ">"
        Open,
        Close,
        Comma,
        OpenName, ///< "[" without its "]"
        OpenText, ///< a quote without its like
        Illegal,  ///< any other character
        End
    };
    Kind kind = Kind::End;
    qsizetype position = 0, length = 0;
    QString text; ///< of a name or text what it holds, else as it is written

    /// True for this word without brackets, in any case.
    bool is(QStringView word) const { return kind == Kind::Word && text.compare(word, Qt::CaseInsensitive) == 0; }
    bool isOperand() const {
        return kind == Kind::Word || kind == Kind::Name || kind == Kind::Number || kind == Kind::Text;
    }
    qsizetype end() const { return position + length; }
};

/// The tokens of a text; the last is End. A "-" before a digit belongs to a number where no value stands before it.
std::vector<FilterToken> filterTokens(const QString& text);

/// What stands at a place of a filter that is being typed.
struct FilterPlace {
    qsizetype start = 0; ///< of the name that reaches up to the place
    QString name;        ///< as far as it is typed, without brackets; empty if there is none
    QString variable;    ///< the name at the place, or that with which the value there is compared; empty without one
    /// The value at the place, from here on and so long; of length 0 where one can be put in.
    qsizetype value = -1, valueLength = 0;
};
FilterPlace filterPlace(const QString& text, qsizetype cursor);
