#include "platform/dao/Parser.h"

#include "platform/dao/ExpressionParser.h"

using namespace Qt::StringLiterals;

namespace dao {

namespace {

constexpr int statementSyntax = 3075;
constexpr int criteriaSyntax = 3077;

/// Reads whole statements, clause by clause; what stands in the clauses is read by the expression parser.
class StatementParser {
public:
    StatementParser(const QString& text, int errorNumber)
        : stream_(text, errorNumber), expressions_(stream_, [this] { return readSelect(); }) {}

    tree::Statement readStatement();
    tree::ExpressionPtr readCriteria();

private:
    void readUpdate(tree::Statement& statement);
    void readDelete(tree::Statement& statement);
    void readInsert(tree::Statement& statement);

    tree::SelectPtr readSelect();
    tree::SelectPtr readOneSelect();
    void readItems(tree::Select& select);
    void readTop(tree::Select& select);
    void readFrom(tree::Select& select);
    tree::SourcePtr readJoins();
    tree::SourcePtr readPlace();
    void readBracketEnd();
    std::optional<tree::Source::JoinKind> readJoinWords();
    void readAlias(tree::Source& source);
    std::vector<tree::ExpressionPtr> readList();
    tree::ExpressionPtr readCondition(QStringView word);
    std::vector<tree::OrderTerm> readOrder();
    void readEnd(const QString& expected);

    TokenStream stream_;
    ExpressionParser expressions_;
    bool mayMissBracket_ = false; ///< in FROM, until a bracket was found missing
    int joins_ = 0;               ///< in the present FROM
    int selects_ = 0;             ///< SELECTs around the present one
};

tree::Statement StatementParser::readStatement() {
    tree::Statement statement;
    if (stream_.at(u"SELECT")) {
        statement.kind = tree::Statement::Kind::Select;
        statement.select = readSelect();
    } else if (stream_.accept(u"UPDATE")) {
        readUpdate(statement);
    } else if (stream_.accept(u"DELETE")) {
        readDelete(statement);
    } else if (stream_.accept(u"INSERT")) {
        readInsert(statement);
    } else {
        stream_.fail(u"SELECT, UPDATE, DELETE or INSERT"_s);
    }
    stream_.accept(Token::Kind::Semicolon);
    readEnd(u"an operator or the end of the statement"_s);
    return statement;
}

tree::ExpressionPtr StatementParser::readCriteria() {
    tree::ExpressionPtr criteria = expressions_.read();
    readEnd(u"an operator or the end of the condition"_s);
    return criteria;
}

void StatementParser::readEnd(const QString& expected) {
    if (!stream_.at(Token::Kind::End))
        stream_.fail(expected);
}

void StatementParser::readUpdate(tree::Statement& statement) {
    statement.kind = tree::Statement::Kind::Update;
    statement.table = expressions_.readName(u"a table name"_s);
    stream_.expect(u"SET");
    do {
        tree::Assignment assignment;
        assignment.field = expressions_.readName(u"a column name"_s);
        if (assignment.field.compare(statement.table, Qt::CaseInsensitive) == 0 &&
            (stream_.accept(Token::Kind::Dot) || stream_.accept(Token::Kind::Exclamation)))
            assignment.field = expressions_.readName(u"a column name"_s);
        stream_.expect(Token::Kind::Equal, u"'='"_s);
        assignment.value = expressions_.read();
        statement.assignments.push_back(std::move(assignment));
    } while (stream_.accept(Token::Kind::Comma));
    statement.where = readCondition(u"WHERE");
}

void StatementParser::readDelete(tree::Statement& statement) {
    statement.kind = tree::Statement::Kind::Delete;
    // The engine takes DELETE *, DELETE T.* and DELETE alone for the same.
    QString deleted;
    if (!stream_.at(u"FROM")) {
        const tree::ExpressionPtr star = expressions_.readItem();
        if (star->kind != tree::Expression::Kind::Star)
            stream_.fail(u"'*' or FROM"_s);
        deleted = star->qualifier;
    }
    stream_.expect(u"FROM");
    statement.table = expressions_.readName(u"a table name"_s);
    if (!deleted.isEmpty() && deleted.compare(statement.table, Qt::CaseInsensitive) != 0)
        stream_.fail(u"FROM %1"_s.arg(deleted));
    statement.where = readCondition(u"WHERE");
}

void StatementParser::readInsert(tree::Statement& statement) {
    statement.kind = tree::Statement::Kind::Insert;
    stream_.expect(u"INTO");
    statement.table = expressions_.readName(u"a table name"_s);
    if (stream_.accept(Token::Kind::Open)) {
        do {
            statement.insertFields.push_back(expressions_.readName(u"a column name"_s));
        } while (stream_.accept(Token::Kind::Comma));
        stream_.expect(Token::Kind::Close, u"',' or ')'"_s);
    }
    if (stream_.at(u"SELECT")) {
        statement.select = readSelect();
        return;
    }
    if (!stream_.accept(u"VALUES"))
        stream_.fail(u"VALUES or SELECT"_s);
    stream_.expect(Token::Kind::Open, u"'('"_s);
    statement.insertValues = readList();
    stream_.expect(Token::Kind::Close, u"an operator, ',' or ')'"_s);
}

/// A SELECT and those that UNION adds. Statements that were complete with their ";" are joined by UNION too.
tree::SelectPtr StatementParser::readSelect() {
    const bool outermost = selects_++ == 0;
    tree::SelectPtr first = readOneSelect();
    int count = 1;
    for (tree::Select* last = first.get();; last = last->unionWith.get()) {
        if (outermost && stream_.at(Token::Kind::Semicolon) && stream_.peek(1).is(u"UNION"))
            stream_.advance();
        if (!stream_.at(u"UNION"))
            break;
        if (!last->orderBy.empty())
            stream_.fail(u"the end of the statement, as ORDER BY belongs behind the last SELECT of a UNION,"_s);
        if (++count > maxNesting)
            stream_.failTooDeep();
        stream_.advance();
        last->unionAll = stream_.accept(u"ALL");
        last->unionWith = readOneSelect();
    }
    --selects_;
    return first;
}

tree::SelectPtr StatementParser::readOneSelect() {
    stream_.expect(u"SELECT");
    auto select = std::make_unique<tree::Select>();
    select->distinct = stream_.accept(u"DISTINCT");
    readTop(*select);
    readItems(*select);
    if (stream_.accept(u"FROM"))
        readFrom(*select);
    select->where = readCondition(u"WHERE");
    if (stream_.at(u"GROUP", u"BY")) {
        stream_.advance();
        stream_.advance();
        select->groupBy = readList();
    }
    select->having = readCondition(u"HAVING");
    if (stream_.at(u"ORDER", u"BY"))
        select->orderBy = readOrder();
    return select;
}

void StatementParser::readTop(tree::Select& select) {
    if (!stream_.at(u"TOP") || stream_.peek(1).kind != Token::Kind::Number)
        return;
    stream_.advance();
    bool isWhole = false;
    select.top = stream_.current().text.toInt(&isWhole);
    if (!isWhole)
        stream_.fail(u"a whole number of rows"_s);
    stream_.advance();
}

void StatementParser::readItems(tree::Select& select) {
    do {
        tree::SelectItem item;
        item.expression = expressions_.readItem();
        if (stream_.accept(u"AS")) {
            if (!stream_.at(Token::Kind::Name) && !stream_.at(Token::Kind::BracketedName))
                stream_.fail(u"a name"_s);
            item.alias = stream_.advance().text;
        }
        select.items.push_back(std::move(item));
    } while (stream_.accept(Token::Kind::Comma));
}

void StatementParser::readFrom(tree::Select& select) {
    const bool outerMayMiss = std::exchange(mayMissBracket_, true);
    const int outerJoins = std::exchange(joins_, 0);
    do {
        select.from.push_back(readJoins());
    } while (stream_.accept(Token::Kind::Comma));
    mayMissBracket_ = outerMayMiss;
    joins_ = outerJoins;
}

tree::SourcePtr StatementParser::readJoins() {
    tree::SourcePtr left = readPlace();
    while (const std::optional<tree::Source::JoinKind> kind = readJoinWords()) {
        if (++joins_ > maxNesting)
            stream_.failTooDeep();
        auto join = std::make_unique<tree::Source>();
        join->kind = tree::Source::Kind::Join;
        join->position = left->position;
        join->join = *kind;
        join->left = std::move(left);
        join->right = readPlace();
        stream_.expect(u"ON");
        join->on = expressions_.read();
        left = std::move(join);
    }
    return left;
}

std::optional<tree::Source::JoinKind> StatementParser::readJoinWords() {
    using JoinKind = tree::Source::JoinKind;
    if (stream_.accept(u"INNER")) {
        stream_.expect(u"JOIN");
        return JoinKind::Inner;
    }
    if (!stream_.atAny({u"LEFT", u"RIGHT"}))
        return std::nullopt;
    const JoinKind kind = stream_.advance().is(u"LEFT") ? JoinKind::Left : JoinKind::Right;
    stream_.accept(u"OUTER");
    stream_.expect(u"JOIN");
    return kind;
}

/// A name, a bracketed SELECT or a bracketed join.
tree::SourcePtr StatementParser::readPlace() {
    const int position = stream_.current().position;
    if (!stream_.accept(Token::Kind::Open)) {
        auto source = std::make_unique<tree::Source>();
        source->position = position;
        source->name = expressions_.readName(u"a table name"_s);
        readAlias(*source);
        return source;
    }
    const TokenStream::Nesting nesting(stream_);
    if (!stream_.at(u"SELECT")) {
        tree::SourcePtr joins = readJoins();
        readBracketEnd();
        return joins;
    }
    auto source = std::make_unique<tree::Source>();
    source->kind = tree::Source::Kind::Select;
    source->position = position;
    source->select = readSelect();
    stream_.expect(Token::Kind::Close, u"an operator or ')'"_s);
    readAlias(*source);
    return source;
}

/// The list of a category's variables opens one bracket more than it closes when the catalogue has no
/// variable groups; the engine takes the end of FROM for the missing one.
void StatementParser::readBracketEnd() {
    if (stream_.accept(Token::Kind::Close))
        return;
    const bool fromEnds = stream_.at(u"WHERE") || stream_.at(u"GROUP", u"BY") || stream_.at(u"HAVING") ||
                          stream_.at(u"ORDER", u"BY") || stream_.at(u"UNION") || stream_.at(Token::Kind::Semicolon) ||
                          stream_.at(Token::Kind::End);
    if (!fromEnds || !std::exchange(mayMissBracket_, false))
        stream_.fail(u"an operator, a join or ')'"_s);
}

void StatementParser::readAlias(tree::Source& source) {
    const bool named = stream_.accept(u"AS");
    if (named || stream_.at(Token::Kind::BracketedName) || (stream_.at(Token::Kind::Name) && !expressions_.atKeyword()))
        source.alias = expressions_.readName(u"a name"_s);
}

std::vector<tree::ExpressionPtr> StatementParser::readList() {
    std::vector<tree::ExpressionPtr> list;
    do {
        list.push_back(expressions_.read());
    } while (stream_.accept(Token::Kind::Comma));
    return list;
}

tree::ExpressionPtr StatementParser::readCondition(QStringView word) {
    return stream_.accept(word) ? expressions_.read() : nullptr;
}

std::vector<tree::OrderTerm> StatementParser::readOrder() {
    stream_.advance();
    stream_.advance();
    std::vector<tree::OrderTerm> order;
    do {
        tree::OrderTerm term;
        term.expression = expressions_.read();
        term.descending = stream_.accept(u"DESC");
        if (!term.descending)
            stream_.accept(u"ASC");
        order.push_back(std::move(term));
    } while (stream_.accept(Token::Kind::Comma));
    return order;
}

} // namespace

tree::Statement parseStatement(const QString& text) {
    return StatementParser(text, statementSyntax).readStatement();
}

tree::ExpressionPtr parseCriteria(const QString& text) {
    return StatementParser(text, criteriaSyntax).readCriteria();
}

} // namespace dao
