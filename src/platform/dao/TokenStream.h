#pragma once

#include "platform/dao/Lexer.h"

#include <algorithm>
#include <initializer_list>

namespace dao {

/// The tokens of one statement with a reading position, the messages about what stands there, and the count
/// of how deep the tree that is being built has become.
class TokenStream {
public:
    /// @throws Error `errorNumber` when the statement is too long or cannot be split into tokens
    TokenStream(const QString& statement, int errorNumber);

    const Token& current() const { return peek(0); }
    const Token& peek(size_t ahead) const { return tokens_[std::min(next_ + ahead, tokens_.size() - 1)]; }
    bool at(Token::Kind kind) const { return current().kind == kind; }
    bool at(QStringView word) const { return current().is(word); }
    bool at(QStringView word, QStringView following) const { return at(word) && peek(1).is(following); }
    bool atAny(std::initializer_list<QStringView> words) const;

    const Token& advance();
    bool accept(Token::Kind kind);
    bool accept(QStringView word);
    void expect(Token::Kind kind, const QString& expected);
    void expect(QStringView word);

    /// Raises the stream's error: what would have to stand here, what does, and where.
    [[noreturn]] void fail(const QString& expected) const;
    [[noreturn]] void failTooDeep() const;

    /// How deep the reader stands, and the deepest place that the tree read since then reaches. Reading a
    /// left side and finding an operator behind it puts all of that side one step deeper.
    class Nesting {
    public:
        explicit Nesting(TokenStream& stream);
        ~Nesting() { --stream_.depth_; }
        Nesting(const Nesting&) = delete;
        Nesting& operator=(const Nesting&) = delete;

    private:
        TokenStream& stream_;
    };
    /// Measures one operand chain: from its construction on, `deepen` counts for what was read since.
    class Chain {
    public:
        explicit Chain(TokenStream& stream);
        ~Chain() { stream_.deepest_ = std::max(stream_.deepest_, outer_); }
        Chain(const Chain&) = delete;
        Chain& operator=(const Chain&) = delete;
        void deepen(int steps = 1);

    private:
        TokenStream& stream_;
        int outer_;
    };

private:
    QString quoted(const Token& token) const;

    const QString statement_;
    const int errorNumber_;
    std::vector<Token> tokens_;
    size_t next_ = 0;
    int depth_ = 0;
    int deepest_ = 0;
};

} // namespace dao
