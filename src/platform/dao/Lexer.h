#pragma once

#include <QString>
#include <vector>

namespace dao {

/// One word or sign of a statement.
struct Token {
    enum class Kind {
        End,
        Name,          ///< a plain word: name or keyword, as its place decides
        BracketedName, ///< [name], never a keyword
        Number,        ///< digits with point or exponent, as written
        Text,          ///< 'text', "text" or #date#, without its quotes
        Equal,
        NotEqual,
        Less,
        LessOrEqual,
        Greater,
        GreaterOrEqual,
        Plus,
        Minus,
        Star,
        Slash,
        Backslash,
        Caret,
        Ampersand,
        Comma,
        Dot,
        Exclamation,
        Open,
        Close,
        Semicolon
    };
    Kind kind = Kind::End;
    int position = 0; ///< offset of its first character
    int end = 0;      ///< offset behind its last character
    QString text;     ///< name, number or text; empty for signs

    /// True when the token is the plain word, in any case.
    bool is(QStringView word) const { return kind == Kind::Name && text.compare(word, Qt::CaseInsensitive) == 0; }
};

/// The tokens of a statement; the last is End.
/// @throws Error `errorNumber` for a quote or bracket that is not closed and for a character that no
/// statement has
std::vector<Token> tokenize(const QString& statement, int errorNumber);

} // namespace dao
