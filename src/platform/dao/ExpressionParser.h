#pragma once

#include "platform/dao/TokenStream.h"
#include "platform/dao/Tree.h"

#include <functional>
#include <optional>

namespace dao {

/// Reads expressions from a stream of tokens, by precedence climbing: each operator has a level, and the
/// right side of an operator takes in only what binds tighter than that level.
class ExpressionParser {
public:
    /// `readSelect` reads a SELECT with its UNIONs, for sub-selects.
    ExpressionParser(TokenStream& stream, std::function<tree::SelectPtr()> readSelect)
        : stream_(stream), readSelect_(std::move(readSelect)) {}

    tree::ExpressionPtr read() { return readFrom(Level::Xor); }
    /// One entry of a SELECT list: an expression, `*` or `T.*`.
    tree::ExpressionPtr readItem();
    /// A word or bracketed name; plain keywords that open the next clause are refused.
    QString readName(const QString& expected);
    /// True where a plain word begins a clause or joins two sides, so that it cannot be a name.
    bool atKeyword() const;

private:
    enum class Level {
        Xor,
        Or,
        And,
        Not,
        Comparison,
        Concatenate,
        Add,
        Modulo,
        IntegerDivide,
        Multiply,
        Negate,
        Power
    };
    struct Infix {
        tree::Operator op;
        Level level;
        int words = 1; ///< number of tokens that spell it
    };

    static Level tighter(Level level) { return static_cast<Level>(static_cast<int>(level) + 1); }
    static std::optional<Infix> signInfix(Token::Kind kind);
    std::optional<Infix> infix() const;
    void skip(Infix operation);

    /// `numberMayHaveComma`: a comparison operator stands directly before.
    tree::ExpressionPtr readFrom(Level lowest, bool numberMayHaveComma = false);
    tree::ExpressionPtr readPrefixed(bool numberMayHaveComma);
    tree::ExpressionPtr readPrimary(bool numberMayHaveComma);
    tree::ExpressionPtr readNumber(bool numberMayHaveComma);
    tree::ExpressionPtr readBracketed();
    tree::ExpressionPtr readWord();
    tree::ExpressionPtr readCall();
    tree::ExpressionPtr readSubselect();
    tree::ExpressionPtr readLogicalChain(tree::ExpressionPtr first, Infix operation, TokenStream::Chain& chain);
    tree::ExpressionPtr readRightSide(tree::ExpressionPtr left, Infix operation);
    void readInList(tree::Expression& node);
    void readList(std::vector<tree::ExpressionPtr>& list);

    TokenStream& stream_;
    std::function<tree::SelectPtr()> readSelect_;
    int lists_ = 0; ///< argument and IN lists around the reading position, since the last SELECT
};

} // namespace dao
