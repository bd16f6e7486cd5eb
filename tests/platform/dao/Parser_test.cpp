#include "platform/dao/Error.h"
#include "platform/dao/Parser.h"
#include "platform/dao/TreeText.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

struct Pair {
    const char* given;
    const char* understood;
};

QString read(const QString& statement) {
    return dao::toText(dao::parseStatement(statement));
}

/// Description of the error, "" if there was none.
std::string failure(const QString& text, int number, bool criteria = false) {
    try {
        if (criteria)
            dao::parseCriteria(text);
        else
            dao::parseStatement(text);
    } catch (const dao::Error& error) {
        EXPECT_EQ(error.number(), number) << text.toStdString();
        return error.what();
    }
    return {};
}

QString readCondition(const QString& condition) {
    return dao::toText(*dao::parseCriteria(condition));
}

/// Each text is understood as its fully bracketed form says, and that form means itself.
void expectUnderstood(std::initializer_list<Pair> pairs, QString (*reader)(const QString&)) {
    for (const Pair& pair : pairs) {
        SCOPED_TRACE(pair.given);
        const QString understood = reader(QString::fromUtf8(pair.given));
        EXPECT_EQ(understood.toStdString(), pair.understood);
        EXPECT_EQ(reader(understood), understood);
    }
}

TEST(Condition, OperatorsBindAsTheEngineBindsThem) {
    expectUnderstood(
        {Pair{"a = 1 And b = 2 Or c", "((([a] = 1) And ([b] = 2)) Or [c])"},
         Pair{"c Or a = 1 And b = 2", "([c] Or (([a] = 1) And ([b] = 2)))"},
         Pair{"Not a = 1 And b", "((Not ([a] = 1)) And [b])"}, Pair{"a Or Not b Or c", "(([a] Or (Not [b])) Or [c])"},
         Pair{"a Xor b Or c", "([a] Xor ([b] Or [c]))"}, Pair{"a = 1 OR(b = 2)", "(([a] = 1) Or ([b] = 2))"},
         Pair{"NOT(a=1)AND(b<>2)", "((Not ([a] = 1)) And ([b] <> 2))"},
         Pair{"a & b = c + d", "(([a] & [b]) = ([c] + [d]))"},
         Pair{"a & b + c Mod d \\ e * -f ^ 2", "([a] & ([b] + ([c] Mod ([d] \\ ([e] * (-([f] ^ 2)))))))"},
         Pair{"a - b - c / d / e", "(([a] - [b]) - (([c] / [d]) / [e]))"}, Pair{"2 ^ -1 * 3", "((2 ^ (-1)) * 3)"},
         Pair{"a Like 'x' & b", "([a] Like ('x' & [b]))"},
         Pair{"a Not Like '*x' Or b Not In (1, 2)", "(([a] Not Like '*x') Or ([b] Not In (1, 2)))"},
         Pair{"a Between 1 And 2 And b", "(([a] Between 1 And 2) And [b])"},
         Pair{"a Not Between b + 1 And 9", "([a] Not Between ([b] + 1) And 9)"},
         Pair{"a Is Null And b Is Not Null", "(([a] Is Null) And ([b] Is Not Null))"},
         Pair{"a = b = c", "(([a] = [b]) = [c])"}, Pair{"a And b And c And d", "(([a] And [b]) And ([c] And [d]))"}},
        readCondition);
}

TEST(Condition, NumbersAndTexts) {
    expectUnderstood({Pair{"a = 'it''s' Or a = \"say \"\"so\"\"\"", "(([a] = 'it''s') Or ([a] = 'say \"so\"'))"},
                      Pair{"a <> 8,5", "([a] <> 8.5)"}, Pair{"(a>=-8,5)AND b", "(([a] >= (-8.5)) And [b])"},
                      Pair{"a < 1,79769313486231E+308", "([a] < 1.79769313486231e+308)"},
                      Pair{"a > 1.79769313486232E+308", "([a] > 1.7976931348623157e+308)"},
                      Pair{"a In (8,5)", "([a] In (8, 5))"}, Pair{"a In (b = 8,5)", "([a] In (([b] = 8), 5))"},
                      Pair{"IIf(a = 8,5,6) = 8,5", "(IIf(([a] = 8), 5, 6) = 8.5)"},
                      Pair{"a In (SELECT b FROM t WHERE c = 8,5)", "([a] In (SELECT [b] FROM [t] WHERE ([c] = 8.5)))"},
                      Pair{"a = 1.5 Or a = .5 Or a = 2E3", "((([a] = 1.5) Or ([a] = 0.5)) Or ([a] = 2000.0))"},
                      Pair{"a=1AND b=2", "(([a] = 1) And ([b] = 2))"}, Pair{"d = #2/29/2000#", "([d] = '2000-02-29')"},
                      Pair{"False Or TRUE", "(False Or True)"}, Pair{"a = Null", "([a] = Null)"}},
                     readCondition);
}

TEST(Condition, ReservedWordsAndAnyLetterMakeNames) {
    expectUnderstood({Pair{"order = 1 And index = key And group = value",
                           "((([order] = 1) And ([index] = [key])) And ([group] = [value]))"},
                      Pair{"Left(left, 2) = right", "(Left([left], 2) = [right])"},
                      Pair{"T!F = [T].[F] And T.Order = [a b]", "(([T].[F] = [T].[F]) And ([T].[Order] = [a b]))"},
                      Pair{"straße Like 'Ä?' And Größe > 1", "(([straße] Like 'Ä?') And ([Größe] > 1))"},
                      Pair{"1919_1.V5 = 1.5", "([1919_1].[V5] = 1.5)"}, Pair{"[not] = 1", "([not] = 1)"},
                      Pair{"Count(*) > Count (q.ID)", "(Count(*) > Count([q].[ID]))"}},
                     readCondition);
}

TEST(Statement, Selects) {
    expectUnderstood(
        {Pair{"SELECT q.*, T.F AS VAR  FROM (q INNER JOIN T ON q.ID = T.C)",
              "SELECT [q].*, [T].[F] AS [VAR] FROM ([q] INNER JOIN [T] ON ([q].[ID] = [T].[C]))"},
         Pair{"SELECT Count(a) AS Count FROM t ORDER BY COUNT(a) DESC, year",
              "SELECT Count([a]) AS [Count] FROM [t] ORDER BY COUNT([a]) DESC, [year]"},
         Pair{"select distinct top 5 order from t order by order asc ;",
              "SELECT DISTINCT TOP 5 [order] FROM [t] ORDER BY [order]"},
         Pair{"SELECT Max(o) as Maximum, top FROM t GROUP BY a, b HAVING Max(o) > 1",
              "SELECT Max([o]) AS [Maximum], [top] FROM [t] GROUP BY [a], [b] HAVING (Max([o]) > 1)"},
         Pair{"SELECT 1 AS [Value] FROM t u, [v w] AS x WHERE false",
              "SELECT 1 AS [Value] FROM [t] AS [u], [v w] AS [x] WHERE False"},
         Pair{"Select a From t Where b = 0; UNION Select a From u; union all select a from v order by a;  ",
              "SELECT [a] FROM [t] WHERE ([b] = 0) UNION SELECT [a] FROM [u] UNION ALL SELECT [a] FROM [v] "
              "ORDER BY [a]"},
         Pair{"SELECT a FROM (SELECT b AS a FROM t) AS s LEFT JOIN u ON s.a = u.a",
              "SELECT [a] FROM ((SELECT [b] AS [a] FROM [t]) AS [s] LEFT JOIN [u] ON ([s].[a] = [u].[a]))"}},
        read);
}

TEST(Statement, JoinsNestAsTheirBracketsSay) {
    expectUnderstood(
        {Pair{"SELECT a FROM ((q INNER JOIN t ON q.i = t.i)INNER JOIN u ON q.i = u.i)WHERE a=1",
              "SELECT [a] FROM (([q] INNER JOIN [t] ON ([q].[i] = [t].[i])) INNER JOIN [u] ON ([q].[i] = "
              "[u].[i])) "
              "WHERE ([a] = 1)"},
         // One bracket more is opened than closed: the joins nest as if it were closed at the end of FROM.
         Pair{"SELECT a FROM ((t LEFT JOIN u ON t.i = u.i) LEFT JOIN v ON (t.n = v.n) AND (t.i = v.i)  WHERE "
              "v.f = 1",
              "SELECT [a] FROM (([t] LEFT JOIN [u] ON ([t].[i] = [u].[i])) LEFT JOIN [v] "
              "ON (([t].[n] = [v].[n]) And ([t].[i] = [v].[i]))) WHERE ([v].[f] = 1)"},
         Pair{"SELECT a FROM t RIGHT JOIN (u LEFT OUTER JOIN v ON u.i = v.i) ON t.i = u.i",
              "SELECT [a] FROM ([t] RIGHT JOIN ([u] LEFT JOIN [v] ON ([u].[i] = [v].[i])) ON ([t].[i] = "
              "[u].[i]))"}},
        read);
}

TEST(Statement, Changes) {
    expectUnderstood(
        {Pair{"update sys set wert = 1, sys.[key] = 'a' where key  = 'Language'",
              "UPDATE [sys] SET [wert] = 1, [key] = 'a' WHERE ([key] = 'Language')"},
         Pair{"DELETE FROM t WHERE a = 1;", "DELETE FROM [t] WHERE ([a] = 1)"},
         Pair{"DELETE * FROM t", "DELETE FROM [t]"}, Pair{"delete T.* from t", "DELETE FROM [t]"},
         Pair{"INSERT INTO t (a, [order]) VALUES (1, Null);", "INSERT INTO [t] ([a], [order]) VALUES (1, Null)"},
         Pair{"INSERT INTO t SELECT * FROM u", "INSERT INTO [t] SELECT * FROM [u]"}},
        read);
}

struct Broken {
    const char* text;
    const char* message; ///< a part of it
};

TEST(Syntax, ErrorsSayWhatWasExpectedWhatStandsThereAndWhere) {
    const Broken broken[] = {
        {"", "expected SELECT, UPDATE, DELETE or INSERT, found the end at position 1"},
        {"DROP TABLE t", "expected SELECT, UPDATE, DELETE or INSERT, found 'DROP' at position 1"},
        {"SELECT a INTO b FROM t", "found 'INTO' at position 10"},
        {"SELECT a FROM t WHERE", "expected an expression, found the end at position 22"},
        {"SELECT a FROM t WHERE a = 1 b", "expected an operator or the end of the statement, found 'b' at position 29"},
        {"SELECT a FROM t WHERE a =", "expected an expression, found the end"},
        {"SELECT a FROM t WHERE (a = 1", "expected an operator or ')', found the end"},
        {"SELECT a FROM t WHERE a = 1)", "found ')' at position 28"},
        {"SELECT a FROM t WHERE a = 'x", "a text has no closing '; it begins at position 27"},
        {"SELECT [a FROM t", "a name has no closing ]; it begins at position 8"},
        {"SELECT [ ] FROM t", "a name in brackets is empty"},
        {"SELECT a, FROM t", "expected an expression, found 'FROM'"},
        {"SELECT a FROM t; SELECT b FROM t", "found 'SELECT' at position 18"},
        {"SELECT a FROM t WHERE a = 1 WHERE b = 2", "found 'WHERE' at position 29"},
        {"SELECT a FROM (((t LEFT JOIN u ON t.i = u.i) WHERE a = 1",
         "expected an operator, a join or ')', found 'WHERE'"},
        {"SELECT a FROM t ORDER BY a UNION SELECT b FROM u", "found 'UNION'"},
        {"SELECT a FROM t LEFT JOIN u WHERE a = 1", "expected ON, found 'WHERE'"},
        {"SELECT a FROM t WHERE a Is 1", "expected NULL, found '1'"},
        {"SELECT a FROM t WHERE a Between 1 Or 2", "expected AND, found 'Or'"},
        {"SELECT a FROM t WHERE a = 8, 5", "found ',' at position 28"},
        {"SELECT a FROM t WHERE a In ()", "expected an expression, found ')'"},
        {"SELECT a FROM t WHERE a ~ 1", "the character ~ has no meaning here"},
        {"SELECT a FROM t WHERE a = 😀", "the character 😀 has no meaning here"},
        {"UPDATE t SET a 1", "expected '=', found '1'"},
        {"DELETE a FROM t", "expected '*' or FROM, found 'FROM'"},
        {"INSERT INTO t (a) b", "expected VALUES or SELECT, found 'b'"},
    };
    for (const Broken& one : broken)
        EXPECT_PRED2([](const std::string& text, const std::string& part) { return text.find(part) != text.npos; },
                     failure(QString::fromUtf8(one.text), 3075), one.message);
}

TEST(Syntax, AConditionHasItsOwnNumberAndNoSemicolon) {
    for (const QString& text : {u""_s, u"a ="_s, u"a = 1;"_s, u"a = '"_s, u"a b"_s})
        EXPECT_NE(failure(text, 3077, true), "") << text.toStdString();
}

TEST(Limits, DepthIsCountedWhileReading) {
    const auto nested = [](const QString& open, const QString& close, int depth) {
        return u"SELECT a FROM t WHERE "_s + open.repeated(depth) + u'1' + close.repeated(depth);
    };
    struct Shape {
        QString open, close;
    };
    for (const auto& [open, close] : {Shape{u"("_s, u")"_s}, Shape{u"Not "_s, {}}, Shape{u"- "_s, {}},
                                      Shape{u"f("_s, u")"_s}, Shape{{}, u" + 1"_s}, Shape{{}, u" = 1"_s}}) {
        EXPECT_EQ(failure(nested(open, close, dao::maxNesting), 3075), "") << open.toStdString() << close.toStdString();
        EXPECT_NE(failure(nested(open, close, dao::maxNesting + 1), 3075), "");
        EXPECT_NE(failure(nested(open, close, 30000), 3075), "");
    }
    // Neither kind of depth may hide behind the other.
    EXPECT_NE(failure(nested(u"("_s, u" + 1 + 1 + 1 + 1)"_s, dao::maxNesting / 2), 3075), "");
    EXPECT_NE(failure(u"SELECT a FROM "_s + u"("_s.repeated(30000), 3075), "");
    EXPECT_NE(failure(nested(u"(SELECT a FROM t WHERE a = "_s, u")"_s, dao::maxNesting), 3075), "");
    EXPECT_NE(failure(u"SELECT a FROM t"_s + u" INNER JOIN t ON 1"_s.repeated(dao::maxNesting + 1), 3075), "");
    EXPECT_NE(failure(u"SELECT 1"_s + u" UNION SELECT 1"_s.repeated(dao::maxNesting), 3075), "");
}

TEST(Limits, AFilterMayHaveThousandsOfPartsSideBySide) {
    const QString filter = u"SELECT a FROM t WHERE a = 0"_s;
    EXPECT_EQ(failure(filter + u" OR a = 1"_s.repeated(5000), 3075), "");
    EXPECT_EQ(failure(filter + u" AND a In (1"_s + u",1"_s.repeated(5000) + u')', 3075), "");
}

TEST(Limits, AStatementHasAGreatestLength) {
    const QString statement = u"SELECT a FROM t WHERE a = 1"_s;
    EXPECT_EQ(failure(statement.leftJustified(dao::maxStatementLength), 3075), "");
    EXPECT_NE(failure(statement.leftJustified(dao::maxStatementLength + 1), 3075), "");
}

TEST(Tree, IsFreedWithoutRecursion) {
    auto top = std::make_unique<dao::tree::Expression>();
    for (int depth = 0; depth < 100000; ++depth) {
        auto parent = std::make_unique<dao::tree::Expression>();
        parent->arguments.push_back(std::move(top));
        top = std::move(parent);
    }
    auto select = std::make_unique<dao::tree::Select>();
    for (int depth = 0; depth < 100000; ++depth) {
        auto next = std::make_unique<dao::tree::Select>();
        next->unionWith = std::move(select);
        select = std::move(next);
    }
    top.reset();
    select.reset();
    SUCCEED();
}

} // namespace
