#include "platform/dao/ExpressionParser.h"

#include "platform/dao/Value.h"

#include <bit>
#include <utility>

using namespace Qt::StringLiterals;

namespace dao {

using tree::Expression;
using tree::ExpressionPtr;
using tree::Operator;
using Kind = Token::Kind;

namespace {

ExpressionPtr makeNode(Expression::Kind kind, int position) {
    auto node = std::make_unique<Expression>();
    node->kind = kind;
    node->position = position;
    return node;
}

ExpressionPtr makeOperation(Operator op, int position, ExpressionPtr first, ExpressionPtr second = nullptr) {
    ExpressionPtr node = makeNode(Expression::Kind::Operation, position);
    node->op = op;
    node->arguments.push_back(std::move(first));
    if (second)
        node->arguments.push_back(std::move(second));
    return node;
}

/// A And B And C ... as a tree of least depth; a filter may have thousands of parts.
ExpressionPtr balance(Operator op, std::vector<ExpressionPtr>& operands, size_t begin, size_t end) {
    if (end - begin == 1)
        return std::move(operands[begin]);
    const size_t middle = begin + (end - begin + 1) / 2;
    ExpressionPtr left = balance(op, operands, begin, middle);
    const int position = left->position;
    return makeOperation(op, position, std::move(left), balance(op, operands, middle, end));
}

} // namespace

bool ExpressionParser::atKeyword() const {
    if (stream_.atAny({u"SELECT", u"FROM", u"WHERE", u"HAVING", u"UNION", u"INNER", u"JOIN", u"ON", u"AND", u"OR",
                       u"XOR", u"NOT", u"LIKE", u"IN", u"BETWEEN", u"IS", u"AS", u"MOD", u"DISTINCT"}))
        return true;
    if (stream_.atAny({u"GROUP", u"ORDER"}))
        return stream_.peek(1).is(u"BY");
    if (stream_.atAny({u"LEFT", u"RIGHT"}))
        return stream_.peek(1).is(u"JOIN") || stream_.peek(1).is(u"OUTER");
    return false;
}

QString ExpressionParser::readName(const QString& expected) {
    if (!stream_.at(Kind::BracketedName) && (!stream_.at(Kind::Name) || atKeyword()))
        stream_.fail(expected);
    return stream_.advance().text;
}

std::optional<ExpressionParser::Infix> ExpressionParser::signInfix(Kind kind) {
    switch (kind) {
    case Kind::Equal:
        return Infix{Operator::Equal, Level::Comparison};
    case Kind::NotEqual:
        return Infix{Operator::NotEqual, Level::Comparison};
    case Kind::Less:
        return Infix{Operator::Less, Level::Comparison};
    case Kind::LessOrEqual:
        return Infix{Operator::LessOrEqual, Level::Comparison};
    case Kind::Greater:
        return Infix{Operator::Greater, Level::Comparison};
    case Kind::GreaterOrEqual:
        return Infix{Operator::GreaterOrEqual, Level::Comparison};
    case Kind::Ampersand:
        return Infix{Operator::Concatenate, Level::Concatenate};
    case Kind::Plus:
        return Infix{Operator::Add, Level::Add};
    case Kind::Minus:
        return Infix{Operator::Subtract, Level::Add};
    case Kind::Backslash:
        return Infix{Operator::IntegerDivide, Level::IntegerDivide};
    case Kind::Star:
        return Infix{Operator::Multiply, Level::Multiply};
    case Kind::Slash:
        return Infix{Operator::Divide, Level::Multiply};
    case Kind::Caret:
        return Infix{Operator::Power, Level::Power};
    default:
        return std::nullopt;
    }
}

/// The operator that stands here. IS and IN are distinguished further by what follows them.
std::optional<ExpressionParser::Infix> ExpressionParser::infix() const {
    if (!stream_.at(Kind::Name))
        return signInfix(stream_.current().kind);
    struct Word {
        QStringView text;
        Infix plain;
        std::optional<Operator> negated;
    };
    static const Word words[] = {
        {u"XOR", {Operator::Xor, Level::Xor}, {}},
        {u"OR", {Operator::Or, Level::Or}, {}},
        {u"AND", {Operator::And, Level::And}, {}},
        {u"LIKE", {Operator::Like, Level::Comparison}, Operator::NotLike},
        {u"IN", {Operator::In, Level::Comparison}, Operator::NotIn},
        {u"BETWEEN", {Operator::Between, Level::Comparison}, Operator::NotBetween},
        {u"IS", {Operator::IsNull, Level::Comparison}, {}},
        {u"MOD", {Operator::Modulo, Level::Modulo}, {}},
    };
    const bool negated = stream_.at(u"NOT");
    for (const Word& word : words) {
        if (!negated && stream_.at(word.text))
            return word.plain;
        if (negated && word.negated && stream_.peek(1).is(word.text))
            return Infix{*word.negated, word.plain.level, 2};
    }
    return std::nullopt;
}

void ExpressionParser::skip(Infix operation) {
    for (int word = 0; word < operation.words; ++word)
        stream_.advance();
}

ExpressionPtr ExpressionParser::readFrom(Level lowest, bool numberMayHaveComma) {
    TokenStream::Chain chain(stream_);
    ExpressionPtr left = readPrefixed(numberMayHaveComma);
    while (const std::optional<Infix> operation = infix()) {
        if (operation->level < lowest)
            break;
        if (operation->op == Operator::And || operation->op == Operator::Or) {
            left = readLogicalChain(std::move(left), *operation, chain);
        } else {
            chain.deepen();
            left = readRightSide(std::move(left), *operation);
        }
    }
    return left;
}

ExpressionPtr ExpressionParser::readLogicalChain(ExpressionPtr first, Infix operation, TokenStream::Chain& chain) {
    std::vector<ExpressionPtr> operands;
    operands.push_back(std::move(first));
    for (auto next = std::optional(operation); next && next->op == operation.op; next = infix()) {
        const TokenStream::Nesting nesting(stream_);
        skip(*next);
        operands.push_back(readFrom(tighter(operation.level)));
    }
    chain.deepen(static_cast<int>(std::bit_width(operands.size() - 1)));
    return balance(operation.op, operands, 0, operands.size());
}

ExpressionPtr ExpressionParser::readRightSide(ExpressionPtr left, Infix operation) {
    const TokenStream::Nesting nesting(stream_);
    ExpressionPtr node = makeOperation(operation.op, stream_.current().position, std::move(left));
    skip(operation);
    switch (operation.op) {
    case Operator::IsNull:
        if (stream_.accept(u"NOT"))
            node->op = Operator::IsNotNull;
        stream_.expect(u"NULL");
        return node;
    case Operator::In:
    case Operator::NotIn:
        readInList(*node);
        return node;
    case Operator::Between:
    case Operator::NotBetween:
        node->arguments.push_back(readFrom(tighter(Level::Comparison)));
        stream_.expect(u"AND");
        node->arguments.push_back(readFrom(tighter(Level::Comparison)));
        return node;
    default:
        const bool comparesValues = operation.op >= Operator::Equal && operation.op <= Operator::GreaterOrEqual;
        node->arguments.push_back(readFrom(tighter(operation.level), comparesValues));
        return node;
    }
}

ExpressionPtr ExpressionParser::readPrefixed(bool numberMayHaveComma) {
    const int position = stream_.current().position;
    const bool isNot = stream_.at(u"NOT");
    const bool isMinus = stream_.at(Kind::Minus);
    if (!isNot && !isMinus && !stream_.at(Kind::Plus))
        return readPrimary(numberMayHaveComma);
    const TokenStream::Nesting nesting(stream_);
    stream_.advance();
    if (isNot)
        return makeOperation(Operator::Not, position, readFrom(Level::Not));
    ExpressionPtr operand = readFrom(Level::Negate, numberMayHaveComma);
    return isMinus ? makeOperation(Operator::Negate, position, std::move(operand)) : std::move(operand);
}

ExpressionPtr ExpressionParser::readPrimary(bool numberMayHaveComma) {
    switch (stream_.current().kind) {
    case Kind::Number:
        return readNumber(numberMayHaveComma);
    case Kind::Open:
        return readBracketed();
    case Kind::Name:
    case Kind::BracketedName:
        return readWord();
    case Kind::Text: {
        ExpressionPtr node = makeNode(Expression::Kind::Text, stream_.current().position);
        node->text = stream_.advance().text;
        return node;
    }
    default:
        stream_.fail(u"an expression"_s);
    }
}

/// Conditions on missing values and typed filters carry numbers with a decimal comma (F <> 8,5). Only
/// directly behind a comparison, and not inside a list, can that comma be nothing else.
ExpressionPtr ExpressionParser::readNumber(bool numberMayHaveComma) {
    const Token& whole = stream_.advance();
    QString digits = whole.text;
    const auto isPlain = [](QChar c) { return c >= u'0' && c <= u'9'; };
    if (numberMayHaveComma && lists_ == 0 && stream_.at(Kind::Comma) && stream_.peek(1).kind == Kind::Number) {
        const Token& comma = stream_.current();
        const Token& fraction = stream_.peek(1);
        if (comma.position == whole.end && fraction.position == comma.end &&
            std::all_of(digits.cbegin(), digits.cend(), isPlain) && !fraction.text.contains(u'.')) {
            digits += u'.' + fraction.text;
            stream_.advance();
            stream_.advance();
        }
    }
    ExpressionPtr node = makeNode(Expression::Kind::Number, whole.position);
    node->isInteger = std::all_of(digits.cbegin(), digits.cend(), isPlain);
    node->number = textToNumber(digits).value_or(0);
    return node;
}

ExpressionPtr ExpressionParser::readBracketed() {
    const TokenStream::Nesting nesting(stream_);
    stream_.advance();
    ExpressionPtr node = stream_.at(u"SELECT") ? readSubselect() : read();
    stream_.expect(Kind::Close, u"an operator or ')'"_s);
    return node;
}

ExpressionPtr ExpressionParser::readSubselect() {
    ExpressionPtr node = makeNode(Expression::Kind::Subquery, stream_.current().position);
    const int outerLists = std::exchange(lists_, 0);
    node->select = readSelect_();
    lists_ = outerLists;
    return node;
}

/// A constant that is a word, a function call or a column.
ExpressionPtr ExpressionParser::readWord() {
    const int position = stream_.current().position;
    if (stream_.at(Kind::Name) && stream_.peek(1).kind == Kind::Open && !atKeyword())
        return readCall();
    if (stream_.accept(u"NULL"))
        return makeNode(Expression::Kind::Null, position);
    if (stream_.atAny({u"TRUE", u"FALSE"})) {
        ExpressionPtr node = makeNode(Expression::Kind::Boolean, position);
        node->number = stream_.advance().is(u"TRUE") ? -1 : 0;
        return node;
    }
    ExpressionPtr node = makeNode(Expression::Kind::Column, position);
    node->name = readName(u"an expression"_s);
    if (stream_.accept(Kind::Dot) || stream_.accept(Kind::Exclamation)) {
        if (!stream_.at(Kind::Name) && !stream_.at(Kind::BracketedName))
            stream_.fail(u"a column name"_s);
        node->qualifier = std::exchange(node->name, stream_.advance().text);
    }
    return node;
}

ExpressionPtr ExpressionParser::readCall() {
    const TokenStream::Nesting nesting(stream_);
    ExpressionPtr node = makeNode(Expression::Kind::Function, stream_.current().position);
    node->name = stream_.advance().text;
    stream_.advance();
    if (stream_.accept(Kind::Close))
        return node;
    if (stream_.at(Kind::Star)) {
        node->arguments.push_back(makeNode(Expression::Kind::Star, stream_.advance().position));
        stream_.expect(Kind::Close, u"')'"_s);
        return node;
    }
    readList(node->arguments);
    return node;
}

void ExpressionParser::readInList(Expression& node) {
    stream_.expect(Kind::Open, u"'('"_s);
    if (!stream_.at(u"SELECT")) {
        readList(node.arguments);
        return;
    }
    node.arguments.push_back(readSubselect());
    stream_.expect(Kind::Close, u"')'"_s);
}

/// Expressions separated by commas, up to and with the closing bracket.
void ExpressionParser::readList(std::vector<ExpressionPtr>& list) {
    ++lists_;
    do {
        list.push_back(read());
    } while (stream_.accept(Kind::Comma));
    --lists_;
    stream_.expect(Kind::Close, u"an operator, ',' or ')'"_s);
}

ExpressionPtr ExpressionParser::readItem() {
    const bool qualified = (stream_.at(Kind::Name) || stream_.at(Kind::BracketedName)) &&
                           stream_.peek(1).kind == Kind::Dot && stream_.peek(2).kind == Kind::Star;
    if (!stream_.at(Kind::Star) && !qualified)
        return read();
    ExpressionPtr node = makeNode(Expression::Kind::Star, stream_.current().position);
    if (qualified) {
        node->qualifier = stream_.advance().text;
        stream_.advance();
    }
    stream_.advance();
    return node;
}

} // namespace dao
