#include "binder_support.h"

#include "platform/dao/Error.h"

using namespace Qt::StringLiterals;

namespace {

/// A small catalogue: two studies, their variables, one category.
class SelectStatements : public BinderTest {
protected:
    SelectStatements() {
        createTable(u"tkey_Study"_s, u"id_StudyNo text, fid text, Order long, dt_IsGroup yesno, dt_StudyTitle text, "
                                     "dt_EnStudyTitle text, dt_StudyDescription memo, dt_Year text"_s);
        createTable(u"tkey_Variable"_s,
                    u"fi_StudyNo text, id_VarName text, dt_Position long, dt_VarLabel text, dt_EnVarLabel text, "
                    "dt_QuestionText memo, dt_EnQuestionText memo, dt_VarGroup text"_s);
        createTable(u"tkey_VarGroups"_s, u"id_VarGroup counter, dt_VarGroupName text, dt_VarGroupNameEn text"_s);
        createTable(u"tkey_Subject"_s, u"id counter, fid long, Order long, dt_IndicatorName text"_s);
        createTable(u"trel_VariableSubject"_s, u"id counter, fid long, fi_StudyNo text, fi_VariableNo text"_s);
        createTable(u"N"_s, u"id counter, a double, b text, VAR double"_s);
        insert(u"tkey_Study"_s, u"('QX1', '0', 2, 0, 'First', 'Erste', 'same', '2018'), "
                                "('G001', '0', 1, -1, 'Group', NULL, NULL, NULL), "
                                "('QX2', 'G001', 1, 0, 'Second', NULL, NULL, '2020')"_s);
        insert(u"tkey_Variable"_s, u"('QX1', 'V5', 2, 'Age', NULL, 'How old?', NULL, '1'), "
                                   "('qx1', 'V4', 1, 'Sex', NULL, NULL, NULL, '9'), "
                                   "('QX2', 'V5', 1, 'Age', NULL, NULL, NULL, NULL)"_s);
        insert(u"tkey_VarGroups"_s, u"(1, 'Person', 'Person')"_s);
        insert(u"tkey_Subject"_s, u"(7, 0, 1, 'Leute')"_s);
        insert(u"trel_VariableSubject"_s, u"(1, 7, 'QX2', 'V5'), (2, 7, 'QX1', 'v5'), (3, 8, 'QX1', 'V4')"_s);
        insert(u"N"_s, u"(1, 5, 'x', 50), (2, 6, 'X', 40), (3, NULL, NULL, 30)"_s);
    }
};

const QString variables =
    u"SELECT tkey_Variable.id_VarName AS fi_VariableNo, tkey_Variable.fi_StudyNo, tkey_Study.dt_Year, "
    "tkey_VarGroups.dt_VarGroupName FROM (tkey_Variable LEFT JOIN tkey_Study ON tkey_Variable.fi_StudyNo = "
    "tkey_Study.id_StudyNo) LEFT JOIN tkey_VarGroups ON tkey_Variable.dt_VarGroup = "
    "tkey_VarGroups.id_VarGroup   "
    "WHERE [fi_StudyNo] = 'QX1' ORDER BY tkey_Variable.fi_StudyNo, tkey_Variable.dt_Position;"_s;

/// Open brackets one more than closed, as the statement without groups stands.
const QString category =
    u"SELECT trel_VariableSubject.fid, trel_VariableSubject.fi_VariableNo, trel_VariableSubject.fi_StudyNo, "
    "tkey_Study.dt_Year, '' AS dt_VarGroupName FROM ((tkey_Variable LEFT JOIN tkey_Study ON "
    "tkey_Variable.fi_StudyNo "
    "= tkey_Study.id_StudyNo) LEFT JOIN trel_VariableSubject ON (tkey_Variable.id_VarName = "
    "trel_VariableSubject.fi_VariableNo) AND (tkey_Variable.fi_StudyNo = trel_VariableSubject.fi_StudyNo)  "
    "WHERE "
    "trel_VariableSubject.fid = 7 ORDER BY trel_VariableSubject.fid, trel_VariableSubject.fi_StudyNo, "
    "tkey_Variable.dt_Position;"_s;

TEST_F(SelectStatements, GiveTheirRows) {
    query(u"twins"_s, u"Select dt_StudyTitle, dt_StudyDescription from tkey_Study Where dt_IsGroup = 0; UNION Select "
                      "'FIRST', 'SAME' from tkey_Study; UNION Select 'First', 'other' from tkey_Study;"_s);
    const struct {
        QString statement, rows;
    } cases[] = {
        {variables, u"V4|qx1|2018|~;V5|QX1|2018|Person"_s},
        {category, u"7|v5|QX1|2018|;7|V5|QX2|2020|"_s},
        {u"Select * from trel_VariableSubject INNER JOIN tkey_Subject ON trel_VariableSubject.fid = "
         u"tkey_Subject.id "
         "Where fi_StudyNo = 'qx2' And fi_VariableNo = 'V5'"_s,
         u"1|7|QX2|V5|7|0|1|Leute"_s},
        {u"SELECT id_StudyNo FROM TKEY_STUDY ORDER BY [fid], [order] ASC;"_s, u"G001;QX1;QX2"_s},
        {u"Select Max(Order) as Maximum from tkey_Study"_s, u"2"_s},
        // Joins nested on the right side, from the other side, and beside a comma.
        {u"SELECT v.dt_Position, s.id FROM tkey_Variable AS v LEFT JOIN (trel_VariableSubject AS t INNER "
         u"JOIN "
         "tkey_Subject AS s ON t.fid = s.id) ON v.id_VarName = t.fi_VariableNo AND v.fi_StudyNo = "
         "t.fi_StudyNo ORDER "
         "BY v.dt_Position, s.id"_s,
         u"1|~;1|7;2|7"_s},
        {u"SELECT s.*, t.fi_VariableNo FROM tkey_Subject AS s RIGHT JOIN trel_VariableSubject AS t ON t.fid "
         u"= s.id "
         "ORDER BY t.id DESC"_s,
         u"~|~|~|~|V4;7|0|1|Leute|v5;7|0|1|Leute|V5"_s},
        {u"SELECT n.id, s.id, g.id_VarGroup FROM N AS n, tkey_Subject AS s LEFT JOIN tkey_VarGroups AS g ON "
         u"s.id = "
         "g.id_VarGroup WHERE n.id < 3"_s,
         u"1|7|~;2|7|~"_s},
        // Equal texts are one group, one distinct value and one row of a union, also in a memo.
        {u"SELECT Count(*) AS c FROM (SELECT fi_StudyNo FROM tkey_Variable GROUP BY fi_StudyNo)"_s, u"2"_s},
        {u"SELECT Count(*) AS c FROM (SELECT DISTINCT fi_StudyNo FROM tkey_Variable)"_s, u"2"_s},
        {u"SELECT DISTINCT b FROM N WHERE a = 5 ORDER BY b DESC"_s, u"x"_s},
        {u"SELECT Max(b) AS m, Min(b) AS n, Avg(a) AS v, Count(b) AS c FROM N WHERE a > 5"_s, u"X|X|6.0|1"_s},
        // 30, 40, 50: squares of the distances 100, 0, 100.
        {u"SELECT Var([VAR]), VarP([VAR]) * 3, StDev([VAR]), StDevP(id) * StDevP(id) * 3 FROM N"_s,
         u"100.0|200.0|10.0|2.0"_s},
        {u"SELECT StDev(a), VarP(a), Var(id) FROM N WHERE id = 1"_s, u"~|0.0|~"_s},
        {u"SELECT Count(*) FROM twins"_s, u"3"_s},
        {u"SELECT id FROM N UNION SELECT '2' FROM N UNION SELECT 'z' FROM N ORDER BY id DESC"_s, u"z;3;2;1"_s},
        {u"SELECT b FROM N UNION ALL SELECT dt_VarGroupName FROM tkey_VarGroups ORDER BY 1"_s, u"~;Person;x;X"_s},
        // A name in ORDER BY is a column first, then an alias; a number is a place, unless it is part of
        // something.
        {u"SELECT id, -a AS a FROM N WHERE a > 0 ORDER BY a DESC"_s, u"2|-6.0;1|-5.0"_s},
        {u"SELECT id, -a AS m FROM N WHERE a > 0 ORDER BY m"_s, u"2|-6.0;1|-5.0"_s},
        {u"SELECT b, id FROM N ORDER BY 2 DESC"_s, u"~|3;X|2;x|1"_s},
        {u"SELECT n.*, n.a AS VAR FROM N AS n ORDER BY VAR"_s, u"3|~|~|30.0|~;2|6.0|X|40.0|6.0;1|5.0|x|50.0|5.0"_s},
        {u"SELECT TOP 1 id FROM N ORDER BY id DESC"_s, u"3"_s},
        // What the order leaves equal to the last row counts with it.
        {u"SELECT TOP 1 id FROM N ORDER BY b DESC"_s, u"1;2"_s},
        {u"SELECT TOP 2 id FROM N ORDER BY b DESC, id DESC"_s, u"2;1"_s},
        {u"SELECT DISTINCT TOP 1 b, id > 1 AS c FROM N ORDER BY b DESC"_s, u"x|0;X|-1"_s},
        {u"SELECT Count(*) FROM (SELECT TOP 1 Count(*) AS c FROM N GROUP BY a ORDER BY Count(*)) AS q"_s, u"3"_s},
        // Values of conditions, subqueries, grouped expressions.
        {u"SELECT id > 1 AS big, a IS NULL FROM N"_s, u"0|0;-1|0;-1|-1"_s},
        {u"SELECT id FROM N WHERE id IN (SELECT fid FROM tkey_Subject) OR b IN (SELECT 'X' FROM N)"_s, u"1;2"_s},
        {u"SELECT id FROM N WHERE id = (SELECT Max(m.id) FROM N AS m WHERE m.id < 3)"_s, u"2"_s},
        {u"SELECT id FROM N WHERE id IN (SELECT fi_VariableNo FROM trel_VariableSubject UNION SELECT '2' FROM N)"_s,
         u"2"_s},
        {u"SELECT Trim(b) & '!' AS t, Sum(a) FROM N GROUP BY Trim(b) & '!' HAVING Sum(a) > 5"_s, u"x!|11.0"_s},
        // HAVING takes grouped expressions, aggregates that aren't selected, and constants.
        {u"SELECT Count(*) FROM N GROUP BY b HAVING b & '' = 'X' And Max(a) > 5 And 1 < 2"_s, u"2"_s},
        {u"SELECT Count(*) FROM N HAVING Max(id) > 3"_s, QString()},
        {u"SELECT Count(*) FROM N HAVING Count(a) = 2"_s, u"3"_s},
        {u"SELECT a + 1 AS w FROM N GROUP BY a + 1 HAVING a + 1 > 6"_s, u"7.0"_s},
        {u"SELECT b FROM N GROUP BY b HAVING Count(*) = (SELECT Count(*) FROM tkey_Study WHERE fid = '0')"_s, u"x"_s},
        // A whole number is a place, any other constant leaves the rows as they are.
        {u"SELECT id FROM N ORDER BY 1.5, 'id', id DESC"_s, u"3;2;1"_s},
        {u"SELECT 5 AS five, Count(*) FROM N GROUP BY 1 ORDER BY Count(*)"_s, u"5|3"_s},
        {u"SELECT id FROM N GROUP BY id, a ORDER BY a DESC, id"_s, u"2;1;3"_s},
    };
    for (const auto& test : cases)
        EXPECT_EQ(rows(test.statement), test.rows) << test.statement.toStdString();
}

TEST_F(SelectStatements, NameAndTypeTheirColumns) {
    query(u"twice"_s, u"SELECT N.id, M.id, N.b AS t FROM N INNER JOIN N AS M ON N.id = M.id"_s);
    const struct {
        QString statement, columns;
    } cases[] = {
        {u"select ID, Val(b), b & a, a > 1 from n"_s, u"id:4 Expr1001:7 Expr1002:10 Expr1003:1"_s},
        {u"SELECT Count(*), Sum(id), Avg(id), Max(b), Min(a), Max(id) FROM N"_s,
         u"Expr1000:4 Expr1001:7 Expr1002:7 Expr1003:10 Expr1004:7 Expr1005:4"_s},
        {u"SELECT id + 1 AS w, id + a AS d, id / 1 AS q, -id AS n, id \\ 2 AS i, True AS b, 'x' AS t, 2 AS "
         u"l, 2.0 AS f "
         "FROM N"_s,
         u"w:4 d:7 q:7 n:4 i:4 b:1 t:10 l:4 f:7"_s},
        {u"SELECT IIf(a > 1, 1, 2.5) AS i, IIf(a > 1, 'x', Null) AS t, Nz(id) AS n, CLng(b) AS c, Abs(id) AS p FROM N"_s,
         u"i:7 t:10 n:4 c:4 p:4"_s},
        {u"SELECT a.id, b.id, a.b FROM N AS a, N AS b"_s, u"a.id:4 b.id:4 b:10"_s},
        {u"SELECT trel_VariableSubject.*, tkey_Subject.id FROM trel_VariableSubject, tkey_Subject"_s,
         u"trel_VariableSubject.id:4 fid:4 fi_StudyNo:10 fi_VariableNo:10 tkey_Subject.id:4"_s},
        {u"SELECT N.*, a AS VAR FROM N"_s, u"id:4 a:7 b:10 N.VAR:7 VAR:7"_s},
        {u"SELECT a, a FROM N"_s, u"N.a:7 Expr1001:7"_s},
        {u"SELECT * FROM twice"_s, u"N.id:4 M.id:4 t:10"_s},
        {u"SELECT [M.id], N.id AS x FROM twice WHERE M.id = 1"_s, u"M.id:4 x:4"_s},
        {u"SELECT dt_StudyDescription, Order FROM tkey_Study UNION SELECT id_StudyNo, 'x' FROM tkey_Study"_s,
         u"dt_StudyDescription:12 Order:10"_s},
        {u"SELECT id FROM N UNION SELECT a FROM N"_s, u"id:7"_s},
    };
    for (const auto& test : cases)
        EXPECT_EQ(columnsOf(test.statement), test.columns) << test.statement.toStdString();
    const dao::ColumnInfo column = bind(u"SELECT x.id AS y FROM (SELECT id FROM N) AS x"_s).columns[0];
    EXPECT_EQ(column.sourceTable + u'.' + column.sourceField, u"N.id"_s);
    EXPECT_EQ(column.attributes, int{dao::dbAutoIncrField});
}

TEST_F(SelectStatements, ThatCanNotBeMeantAreRefusedWithTheName) {
    query(u"a"_s, u"SELECT * FROM b"_s);
    query(u"b"_s, u"SELECT * FROM a"_s);
    query(u"killer"_s, u"DELETE FROM N"_s);
    query(u"empty"_s, QString());
    query(u"m0"_s, u"SELECT id FROM N"_s);
    for (int i = 1; i < 20; ++i)
        query(u"m%1"_s.arg(i), u"SELECT x.id FROM m%1 AS x, m%1 AS y"_s.arg(i - 1));
    query(u"c0"_s, u"SELECT id FROM N"_s);
    for (int i = 1; i < 20; ++i)
        query(u"c%1"_s.arg(i),
              u"SELECT x.id FROM N AS y INNER JOIN (c%1 AS x LEFT JOIN N ON x.id = N.id) ON x.id = y.id "
              "WHERE NOT (x.id In (SELECT id FROM N WHERE (id = 2)))"_s.arg(i - 1));
    const struct {
        QString statement;
        int number;
        QString name;
    } cases[] = {
        {u"SELECT * FROM nowhere"_s, 3078, u"nowhere"_s},
        {u"SELECT id FROM N WHERE lost = 1"_s, 3061, u"lost"_s},
        {u"SELECT N.id, M.id FROM N"_s, 3061, u"M.id"_s},
        {u"SELECT M.* FROM N"_s, 3061, u"M.*"_s},
        {u"SELECT id FROM N ORDER BY lost"_s, 3061, u"lost"_s},
        {u"SELECT id FROM N, tkey_Subject"_s, 3079, u"id"_s},
        {u"SELECT * FROM N, N"_s, 3081, u"N"_s},
        {u"SELECT * FROM N LEFT JOIN tkey_Subject AS s ON N.id = s.fid INNER JOIN tkey_VarGroups ON q.id = 1"_s, 3061,
         u"q.id"_s},
        {u"SELECT a AS x, b AS X FROM N"_s, 3062, u"X"_s},
        {u"SELECT a, Count(*) FROM N"_s, 3122, u"a"_s},
        {u"SELECT a + 1, b FROM N GROUP BY a + 1"_s, 3122, u"b"_s},
        {u"SELECT a FROM N GROUP BY a ORDER BY b"_s, 3122, u"b"_s},
        {u"SELECT *  FROM N HAVING id > 1"_s, 3122, u"id"_s},
        {u"SELECT Count(*) FROM N HAVING id > 1"_s, 3122, u"id"_s},
        {u"SELECT a FROM N GROUP BY a HAVING Count(*) > 0 And (a = 5 Or Len(b) = 1)"_s, 3122, u"b"_s},
        {u"SELECT a + 1 FROM N GROUP BY a + 1 HAVING a > 1"_s, 3122, u"a"_s},
        {u"SELECT a FROM N GROUP BY a HAVING a IN (SELECT fid FROM tkey_Subject WHERE id = N.id)"_s, 3122, u"id"_s},
        {u"SELECT a AS twice FROM N GROUP BY a HAVING twice > 1"_s, 3061, u"twice"_s},
        {u"SELECT a FROM N GROUP BY a HAVING Sum(Max(id)) > 1"_s, 3096, u"Max"_s},
        {u"SELECT a FROM N GROUP BY a HAVING Max(b)"_s, 3464, {}},
        {u"SELECT a, b FROM N ORDER BY 3"_s, 3351, u"'3'"_s},
        {u"SELECT DISTINCT a FROM N ORDER BY 9"_s, 3351, u"'9'"_s},
        {u"SELECT a FROM N ORDER BY a, 0"_s, 3351, u"'0'"_s},
        {u"SELECT a FROM N UNION SELECT a FROM N ORDER BY 2"_s, 3351, u"'2'"_s},
        {u"SELECT Count(*), (SELECT Count(*) FROM tkey_Subject WHERE fid = N.id) FROM N"_s, 3122, u"id"_s},
        {u"SELECT id FROM N WHERE Sum(a) > 1"_s, 3096, u"Sum"_s},
        {u"SELECT Sum(Max(a)) FROM N"_s, 3096, u"Max"_s},
        {u"SELECT Sum(b) FROM N"_s, 3464, u"b"_s},
        {u"SELECT Avg(b & 'x') FROM N"_s, 3464, {}},
        {u"SELECT id FROM N WHERE b"_s, 3464, u"b"_s},
        {u"SELECT Format(a) FROM N"_s, 3085, u"Format"_s},
        {u"SELECT First(a) FROM N"_s, 3085, u"First"_s}, // which row that is, nothing tells
        {u"SELECT DISTINCT a FROM N ORDER BY b"_s, 3093, {}},
        {u"SELECT a FROM N UNION SELECT a FROM N ORDER BY b"_s, 3351, u"b"_s},
        {u"SELECT a FROM N UNION SELECT a, b FROM N"_s, 3307, {}},
        {u"SELECT a FROM N WHERE a IN (SELECT a, b FROM N)"_s, 3306, {}},
        {u"SELECT * FROM a"_s, 3102, u"a"_s},
        {u"SELECT * FROM killer"_s, 3075, u"killer"_s},
        {u"SELECT * FROM empty"_s, 3075, {}},
        {u"SELECT Count(*) FROM m7"_s, 3360, {}},
        {u"SELECT * FROM m19"_s, 3360, {}},
        {u"SELECT * FROM c8"_s, 3360, {}},
    };
    for (const auto& test : cases) {
        try {
            rows(test.statement);
            ADD_FAILURE() << test.statement.toStdString();
        } catch (const dao::Error& error) {
            EXPECT_EQ(error.number(), test.number) << test.statement.toStdString() << error.what();
            EXPECT_TRUE(error.description().contains(test.name)) << error.what();
        }
    }
    EXPECT_EQ(rows(u"SELECT * FROM c7"_s), u"1;3"_s);
    EXPECT_EQ(rows(u"SELECT Count(*) FROM m3"_s), u"6561"_s);
}

TEST_F(SelectStatements, OverOneTableCanBeEditedAndSearched) {
    EXPECT_TRUE(bind(u"SELECT * FROM N"_s).editable);
    EXPECT_TRUE(bind(u"SELECT a, b & 'x' AS c FROM N AS m WHERE id > 1 ORDER BY a"_s).editable);
    for (const QString& statement :
         {u"SELECT DISTINCT a FROM N"_s, u"SELECT a FROM N GROUP BY a"_s, u"SELECT Max(a) FROM N"_s,
          u"SELECT a FROM N UNION SELECT a FROM N"_s, u"SELECT TOP 2 a FROM N"_s, u"SELECT a FROM (SELECT a FROM N)"_s,
          u"SELECT N.a FROM N, tkey_Subject"_s})
        EXPECT_FALSE(bind(statement).editable) << statement.toStdString();

    const dao::BoundStatement bound = bind(u"SELECT b, a AS x FROM N AS m WHERE id = 1 OR id = 2 ORDER BY id DESC"_s);
    EXPECT_EQ(sqliteRows(bound.keySql), u"X|6.0|2;x|5.0|1"_s);
    EXPECT_EQ(sqliteRows(bound.whereSql + u" AND rowid = 1"_s + bound.orderSql), u"x|5.0|1"_s);
    EXPECT_EQ(bound.columns[1].sourceField, u"a"_s);

    query(u"sorted"_s, u"SELECT id FROM N ORDER BY id DESC"_s);
    EXPECT_EQ(sqliteRows(dao::bindName(u"SORTED"_s, *this).sql), u"3;2;1"_s);
    EXPECT_EQ(dao::bindName(u"n"_s, *this).editable->name, u"N"_s);
    EXPECT_THROW(dao::bindName(u"nowhere"_s, *this), dao::Error);
}

TEST_F(SelectStatements, AreAnsweredFromAnIndexWhereOneServes) {
    sqliteRows(u"CREATE INDEX v ON tkey_Variable(fi_StudyNo, id_VarName)"_s);
    sqliteRows(u"CREATE INDEX s ON tkey_Study(id_StudyNo)"_s);
    for (const QString& statement :
         {u"SELECT * FROM tkey_Variable WHERE fi_StudyNo like 'QX1'"_s,
          u"SELECT * FROM tkey_Variable WHERE 'QX1' = fi_StudyNo AND id_VarName = 'v5'"_s,
          u"SELECT * FROM tkey_Variable WHERE [fi_StudyNo] = 'QX1' ORDER BY fi_StudyNo, id_VarName"_s,
          u"SELECT * FROM tkey_Variable WHERE fi_StudyNo IN ('QX1', 'QX2')"_s,
          u"SELECT * FROM tkey_Subject WHERE id like '7'"_s, u"SELECT * FROM tkey_Subject WHERE id = '7'"_s,
          variables}) {
        const QString steps = plan(statement);
        EXPECT_TRUE(steps.startsWith(u"SEARCH"_s)) << steps.toStdString();
        EXPECT_FALSE(statement != variables && steps.contains(u"TEMP B-TREE"_s)) << steps.toStdString();
    }
    EXPECT_FALSE(plan(u"SELECT fi_StudyNo FROM tkey_Variable GROUP BY fi_StudyNo"_s).contains(u"TEMP B-TREE"_s));
}

} // namespace
