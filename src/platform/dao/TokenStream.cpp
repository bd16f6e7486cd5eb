#include "platform/dao/TokenStream.h"

#include "platform/dao/Error.h"
#include "platform/dao/Parser.h"

using namespace Qt::StringLiterals;

namespace dao {

namespace {

std::vector<Token> tokenizeWithinLimit(const QString& statement, int errorNumber) {
    if (statement.size() > maxStatementLength)
        raiseEngineError(errorNumber, u"the statement is longer than %1 characters"_s.arg(maxStatementLength));
    return tokenize(statement, errorNumber);
}

} // namespace

TokenStream::TokenStream(const QString& statement, int errorNumber)
    : statement_(statement), errorNumber_(errorNumber), tokens_(tokenizeWithinLimit(statement_, errorNumber)) {}

bool TokenStream::atAny(std::initializer_list<QStringView> words) const {
    return std::any_of(words.begin(), words.end(), [this](QStringView word) { return at(word); });
}

const Token& TokenStream::advance() {
    const Token& token = current();
    if (token.kind != Token::Kind::End)
        ++next_;
    return token;
}

bool TokenStream::accept(Token::Kind kind) {
    if (!at(kind))
        return false;
    advance();
    return true;
}

bool TokenStream::accept(QStringView word) {
    if (!at(word))
        return false;
    advance();
    return true;
}

void TokenStream::expect(Token::Kind kind, const QString& expected) {
    if (!accept(kind))
        fail(expected);
}

void TokenStream::expect(QStringView word) {
    if (!accept(word))
        fail(word.toString());
}

QString TokenStream::quoted(const Token& token) const {
    if (token.kind == Token::Kind::End)
        return u"the end"_s;
    constexpr int longest = 40;
    const QString text = statement_.mid(token.position, token.end - token.position);
    return u"'%1'"_s.arg(text.size() <= longest ? text : text.left(longest) + u"..."_s);
}

void TokenStream::fail(const QString& expected) const {
    const Token& token = current();
    raiseEngineError(errorNumber_, u"expected %1, found %2 at position %3"_s.arg(expected, quoted(token),
                                                                                 QString::number(token.position + 1)));
}

void TokenStream::failTooDeep() const {
    raiseEngineError(errorNumber_,
                     u"more than %1 brackets, operators or selects inside each other at position %2"_s.arg(maxNesting)
                         .arg(current().position + 1));
}

TokenStream::Nesting::Nesting(TokenStream& stream) : stream_(stream) {
    if (stream.depth_ >= maxNesting)
        stream.failTooDeep();
    ++stream.depth_;
    stream.deepest_ = std::max(stream.deepest_, stream.depth_);
}

TokenStream::Chain::Chain(TokenStream& stream) : stream_(stream), outer_(stream.deepest_) {
    stream.deepest_ = stream.depth_;
}

void TokenStream::Chain::deepen(int steps) {
    stream_.deepest_ += steps;
    if (stream_.deepest_ > maxNesting)
        stream_.failTooDeep();
}

} // namespace dao
