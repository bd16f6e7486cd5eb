#include "binder_support.h"

using namespace Qt::StringLiterals;

namespace {

/// Six cases in two tables; the weight of case 5 is absent.
class CountStatements : public BinderTest {
protected:
    CountStatements() {
        createTable(u"QX1_1"_s, u"dt_CaseID counter, V5 double, V7 double, W double, T text"_s);
        createTable(u"QX1_2"_s, u"dt_CaseID counter, V6 double"_s);
        insert(u"QX1_1"_s, u"(1, 1, 1, 0.5, 'x'), (2, 2, 1, 1.5, 'X'), (3, 1, 2, 2, 'y'), (4, NULL, 1, 1, NULL), "
                           "(5, 2, 1, NULL, 'x'), (6, 8.5, 1, 3, 'ä')"_s);
        insert(u"QX1_2"_s, u"(1, 10), (2, 20), (3, 10), (4, 20), (5, 10), (6, NULL)"_s);
        query(u"q"_s, u"SELECT QX1_1.dt_CaseID AS ID FROM QX1_1;"_s);
        weighted();
    }
    void weighted() {
        query(u"qw"_s, u"SELECT QX1_1.dt_CaseID AS ID , QX1_1.W AS W2 FROM QX1_1 WHERE (QX1_1.W Is Not Null)"_s);
    }
};

const QString join = u"(q INNER JOIN QX1_1 ON q.ID = QX1_1.dt_CaseID)"_s;

TEST_F(CountStatements, CountsSumsAndFiltersCases) {
    const QString frequency = u"SELECT QX1_1.V5 AS [Value], Count(q.ID) AS Count FROM "_s + join;
    const QString group = u" GROUP BY QX1_1.V5 ORDER BY QX1_1.V5;"_s;
    EXPECT_EQ(rows(frequency + group), u"~|1;1.0|2;2.0|2;8.5|1"_s);
    EXPECT_EQ(columnsOf(frequency + group), u"Value:7 Count:4"_s);
    EXPECT_EQ(rows(frequency + u" WHERE QX1_1.V7=1"_s + group), u"~|1;1.0|1;2.0|2;8.5|1"_s);
    EXPECT_EQ(rows(frequency + u" WHERE QX1_1.V7=1 AND (QX1_1.V5 <> 8,5) "_s + group), u"1.0|1;2.0|2"_s);
    EXPECT_EQ(rows(frequency +
                   u" WHERE QX1_1.V7=1 AND (QX1_1.V5 < CDbl('-1,79769313486231E308') OR "
                   "QX1_1.V5 > 2) "_s +
                   group),
              u"8.5|1"_s);
    query(u"q"_s, *findQuery(u"qw"_s));
    const QString sums = u"SELECT QX1_1.V5 AS [Value], Sum(q.W2) AS Count FROM "_s + join + group;
    EXPECT_EQ(rows(sums), u"~|1.0;1.0|2.5;2.0|1.5;8.5|3.0"_s);
    EXPECT_EQ(columnsOf(sums), u"Value:7 Count:7"_s);
}

TEST_F(CountStatements, CrosstabJoinsASecondTable) {
    EXPECT_EQ(rows(u"SELECT QX1_1.V5 AS [V5], QX1_2.V6 AS [V6], Count(q.ID) AS Count FROM ((q INNER JOIN QX1_1 ON "
                   "q.ID = QX1_1.dt_CaseID)INNER JOIN QX1_2 ON q.ID = QX1_2.dt_CaseID) GROUP BY QX1_1.V5, QX1_2.V6 "
                   "ORDER BY QX1_1.V5, QX1_2.V6;"_s),
              u"~|20.0|1;1.0|10.0|2;2.0|10.0|1;2.0|20.0|1;8.5|~|1"_s);
}

TEST_F(CountStatements, DescriptivesReadTheirStoredQueries) {
    query(u"q"_s, *findQuery(u"qw"_s));
    query(u"stat"_s, u"SELECT q.*, QX1_1.V5 AS VAR , QX1_1.T AS VAR2  FROM "_s + join);
    EXPECT_EQ(columnsOf(u"SELECT * FROM stat"_s), u"ID:4 W2:7 VAR:7 VAR2:10"_s);
    EXPECT_EQ(rows(u"SELECT VAR2 FROM stat GROUP BY VAR2;"_s), u"~;x;y;ä"_s);
    EXPECT_EQ(rows(u"SELECT ID FROM stat WHERE VAR2='X';"_s), u"1;2"_s);
    EXPECT_EQ(rows(u"SELECT * FROM stat WHERE false"_s), QString());
    EXPECT_EQ(rows(u"SELECT COUNT(VAR) AS COUNT, VAR FROM stat GROUP BY VAR ORDER BY COUNT(VAR) DESC, VAR ASC;"_s),
              u"2|1.0;1|2.0;1|8.5;0|~"_s);
    EXPECT_EQ(bind(u"SELECT * FROM stat"_s).queries, (QStringList{u"stat"_s, u"q"_s}));
    EXPECT_EQ(bind(u"SELECT * FROM stat"_s).tables, QStringList{u"QX1_1"_s});
}

/// The cases are walked once and every other table is looked up by its key: a second walk would double the
/// time.
TEST_F(CountStatements, WalkOneTableAndLookTheOthersUp) {
    const QString group = u" GROUP BY QX1_1.V5 ORDER BY QX1_1.V5;"_s;
    const QString statements[] = {
        u"SELECT QX1_1.V5 AS [Value], Count(q.ID) AS Count FROM "_s + join + group,
        u"SELECT QX1_1.V5 AS [Value], Sum(q.W2) AS Count FROM "_s +
            QString(join).replace(u"q INNER"_s, u"qw AS q INNER"_s) + group,
        u"SELECT QX1_1.V5 AS [Value], Count(q.ID) AS Count FROM ("_s + join +
            u" INNER JOIN QX1_2 ON q.ID = "
            "QX1_2.dt_CaseID)  WHERE QX1_2.V6=10 AND QX1_1.V7=1"_s +
            group,
    };
    for (const QString& statement : statements) {
        const QString steps = plan(statement);
        EXPECT_EQ(steps.count(u"SCAN"_s), 1) << steps.toStdString();
        EXPECT_EQ(steps.count(u"USING INTEGER PRIMARY KEY (rowid=?)"_s), steps.count(u"SEARCH"_s));
        EXPECT_FALSE(steps.contains(u"MATERIALIZE"_s) || steps.contains(u"AUTOMATIC"_s)) << steps.toStdString();
    }
}

} // namespace
