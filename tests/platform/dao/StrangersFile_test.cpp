#include "platform/dao/Connection.h"
#include "platform/dao/EngineFixture.h"
#include "platform/dao/EngineSettings.h"
#include "platform/dao/Stranger.h"

#include <utility>

using namespace Qt::StringLiterals;
using dao::Value;

namespace {

/// Files that another program has made, to do harm or because it knows no better.
class StrangersFile : public EngineTest {
protected:
    /// What is said when the table is opened, empty if it can be.
    static QString refusalOf(dao::Database& database, const QString& table) {
        try {
            rows(database, table);
        } catch (const dao::Error& error) {
            EXPECT_EQ(error.number(), 3274) << qPrintable(table);
            return error.description();
        }
        return {};
    }
};

} // namespace

TEST_F(StrangersFile, ALinkWithTheNameOfATableNeitherHidesItNorTakesItAlong) {
    createCases(u"elsewhere.mdb"_s, u"secret"_s, 7);
    {
        const auto database = create(u"a.mdb"_s);
        addTable(*database, u"tkey_Study"_s, {{u"id"_s, dao::dbLong}});
        database->Execute(u"INSERT INTO tkey_Study (id) VALUES (1)"_s);
        database->Close();
    }
    const QString secret = u"'secret', ';DATABASE=%1')"_s.arg(path(u"elsewhere.mdb"_s));
    const QString links =
        u"CREATE TABLE __vx_links(name, source, connect); INSERT INTO __vx_links VALUES ('cases', %1, "
        "('TKEY_study', %1, ('tkey_Study', %1"_s.arg(secret);
    Stranger(path(u"a.mdb"_s)).run(links.toUtf8().constData());
    const auto database = open(u"a.mdb"_s);
    ASSERT_EQ(database->TableDefs().Count(), 2);
    EXPECT_EQ(database->TableDefs().Item(u"tkey_study"_s)->Attributes(), 0);
    EXPECT_EQ(rows(*database, u"tkey_Study"_s), u"1"_s);
    database->TableDefs().DeleteLinks();
    EXPECT_FALSE(database->TableDefs().contains(u"cases"_s));
    EXPECT_EQ(rows(*database, u"tkey_Study"_s), u"1"_s);
    database->Close();
    const Stranger after(path(u"a.mdb"_s));
    EXPECT_EQ(after.ask("SELECT (SELECT count(*) FROM __vx_links), (SELECT count(*) FROM tkey_Study)"), u"0 1"_s);
    EXPECT_EQ(Stranger(path(u"elsewhere.mdb"_s)).ask("SELECT count(*) FROM secret"), u"7"_s);
}

TEST_F(StrangersFile, AStrangersFileBringsNothingAlongThatRuns) {
    const Stranger stranger(path(u"strange.mdb"_s));
    stranger.run("CREATE TABLE t(a LONG, b TEXT, \"\"\"odd\"\" 'name'\" MEMOTEXT, plain);"
                 "CREATE TABLE log(x);"
                 "INSERT INTO t VALUES (1, 'x', 'y', 2);"
                 "CREATE TRIGGER spy AFTER INSERT ON t BEGIN INSERT INTO log VALUES (1); END;"
                 "CREATE VIEW v AS SELECT * FROM t;"
                 "CREATE VIRTUAL TABLE f USING fts5(x);"
                 "CREATE TABLE __vx_queries(other); CREATE TABLE __vx_links(name, source, connect);"
                 "INSERT INTO __vx_links VALUES ('L', 't', ';DATABASE=file::memory:?cache=shared')");
    const auto database = open(u"strange.mdb"_s);
    database->Execute(u"INSERT INTO t (a, b) VALUES (2, 'z')"_s);
    EXPECT_EQ(rows(*database, u"SELECT Count(*) FROM log"_s), u"0"_s);
    for (const QString& name : {u"f_data"_s, u"sqlite_schema"_s, u"pragma_table_list"_s})
        EXPECT_EQ(errorOf([&] { rows(*database, u"SELECT * FROM "_s + name); }), 3078) << name.toStdString();
    EXPECT_TRUE(refusalOf(*database, u"v"_s).contains(u"v is a view"_s));
    EXPECT_TRUE(refusalOf(*database, u"F"_s).contains(u"f is a virtual table"_s));
    EXPECT_EQ(errorOf([&] { database->OpenRecordset(u"L"_s); }), 3024) << "a link is a path and nothing else";
    EXPECT_EQ(rows(*database, u"SELECT [\"odd\" 'name'], plain FROM t WHERE a = 1"_s), u"y,2"_s);
    EXPECT_EQ(errorOf([&] { rows(*database, u"SELECT \"nothing\" AS c FROM t WHERE b = nothing"_s); }), 3061);
}

TEST_F(StrangersFile, ComputesNothingWhenItIsRead) {
    const QString file = path(u"strange.mdb"_s);
    Stranger(file).run("CREATE TABLE title(id LONG, t TEXT AS (hex(zeroblob(40))));"
                       "CREATE TABLE kept(id LONG, t TEXT AS (id + 1) STORED);"
                       "CREATE TABLE plain(id LONG); INSERT INTO plain VALUES (3);"
                       "INSERT INTO title VALUES (1);");
    const auto strange = open(u"strange.mdb"_s);
    const auto own = create(u"own.mdb"_s);
    for (const QString& table : {u"title"_s, u"kept"_s, u"plain"_s})
        addLink(*own, table, file);
    for (const dao::DatabasePtr& database : {strange, own}) {
        EXPECT_EQ(database->TableDefs().Count(), 3);
        EXPECT_TRUE(refusalOf(*database, u"Title"_s).contains(u"title.t is a computed field"_s));
        EXPECT_TRUE(refusalOf(*database, u"SELECT id FROM kept"_s).contains(u"kept.t is a computed field"_s));
        EXPECT_EQ(errorOf([&] { database->Execute(u"DELETE FROM title"_s); }), 3274);
        EXPECT_EQ(errorOf([&] { database->TableDefs().Item(u"title"_s)->columns(); }), 3274);
        EXPECT_EQ(rows(*database, u"plain"_s), u"3"_s);
    }
}

TEST_F(StrangersFile, ItsListsOfLinksAndQueriesComputeNothingEither) {
    const QByteArray queries = "CREATE TABLE __vx_queries(name TEXT, sql TEXT CHECK (hex(sql) <> ''));";
    const QByteArray lists[] = {
        queries + "CREATE TABLE __vx_links(name TEXT, source TEXT, connect TEXT AS (';DATABASE=' || hex(zeroblob(4))));"
                  "INSERT INTO __vx_links VALUES ('L', 't')",
        queries + "CREATE VIEW __vx_links AS SELECT 'L' AS name, 't' AS source, ';DATABASE=x' AS connect"};
    for (const QByteArray& list : lists) {
        const QString file = u"%1.mdb"_s.arg(list.size());
        Stranger(path(file)).run(list.constData());
        const auto database = open(file);
        EXPECT_EQ(database->TableDefs().Count(), 0);
        database->CreateQueryDef(u"q"_s, u"SELECT 1"_s);
        database->saveDefinitions();
        EXPECT_TRUE(database->QueryDefs().contains(u"q"_s)) << "it lives in memory";
        EXPECT_EQ(Stranger(path(file)).ask("SELECT count(*) FROM __vx_queries"), u"0"_s);
    }
}

TEST_F(StrangersFile, IsReadButNotWrittenWhereAWriteWouldCompute) {
    const struct {
        QByteArray declaration, index;
        int number; ///< of the error that a write ends in, 0 for none
    } cases[] = {
        {"(a LONG, b TEXT DEFAULT (hex(zeroblob(40))))", {}, 3027},
        {"(a LONG CHECK (length(hex(zeroblob(40))) > a), b TEXT)", {}, 3027},
        {"(a LONG, b TEXT, CHECK (b GLOB 'o*l*d' OR a > 0))", {}, 3027},
        {"(a LONG, b TEXT, CHECK (b || b || b <> ''))", {}, 3027},
        {"(a LONG, b TEXT, CHECK (a > 0 /* ( */ AND \"hex\" -- )\n (b) <> ''))", {}, 3027},
        {"(a LONG, b TEXT)", "(hex(zeroblob(a)))", 3027},
        {"(a LONG, b TEXT)", "(a) WHERE hex(b) <> ''", 3027},
        {"(a LONG, b TEXT)", "(a) WHERE b || b > ''", 3027},
        {"(a LONG, b TEXT)", "(a + 1, abs(a)) WHERE (a) > 0", 0},
        {"(a LONG CHECK (a > 0 AND (a IN (1, 9)) AND length(b) < 5), b VARCHAR(20) DEFAULT 'hex (|| y)')", "(a, b)", 0},
        {"(a LONG CHECK ((a) <> 3), b TEXT, FOREIGN KEY (a) REFERENCES x (y), UNIQUE (a, b COLLATE NOCASE))", {}, 0},
        {"(a LONG CHECK (a > 5), b TEXT)", {}, 3317},
    };
    int number = 0;
    for (const auto& test : cases) {
        SCOPED_TRACE(test.declaration.constData());
        const QString file = u"%1.mdb"_s.arg(++number);
        QByteArray sql = "CREATE TABLE t" + test.declaration + "; INSERT INTO t VALUES (9, 'old');";
        if (!test.index.isEmpty())
            sql += "CREATE INDEX i ON t" + test.index;
        Stranger(path(file)).run(sql.constData());
        const auto database = open(file);
        EXPECT_EQ(rows(*database, u"t"_s), u"9,old"_s);
        EXPECT_EQ(errorOf([&] { database->Execute(u"INSERT INTO t (a, b) VALUES (1, 'new')"_s); }), test.number);
        EXPECT_EQ(errorOf([&] { database->openAppender(u"t"_s, {u"a"_s}); }), test.number == 3027 ? 3027 : 0);
        const auto row = database->OpenRecordset(u"SELECT * FROM t"_s);
        EXPECT_EQ(errorOf([&] { row->Edit(); }), test.number == 3027 ? 3027 : 0);
    }
}

TEST_F(StrangersFile, LetsNoStatementRunButTheEnginesOwn) {
    createCases(u"a.mdb"_s, u"t"_s, 1);
    using Mode = dao::DatabaseLocation::Mode;
    dao::Connection connection(dao::DatabaseLocation::find(path(u"a.mdb"_s)), Mode::ReadWrite);
    for (const QString& statement :
         {u"SELECT hex(zeroblob(4))"_s, u"SELECT printf('%9d', V1) FROM t"_s, u"SELECT load_extension('x')"_s,
          u"WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n) SELECT count(*) FROM n"_s,
          u"SELECT * FROM json_each('[1]')"_s, u"CREATE VIEW v AS SELECT 1"_s, u"CREATE TEMP TABLE x(a)"_s,
          u"CREATE TRIGGER g AFTER INSERT ON t BEGIN SELECT 1; END"_s, u"CREATE VIRTUAL TABLE f USING fts5(x)"_s,
          u"ALTER TABLE t ADD COLUMN x"_s, u"PRAGMA writable_schema=1"_s, u"PRAGMA temp_store_directory='/'"_s,
          u"ANALYZE"_s})
        EXPECT_NE(errorOf([&] { connection.run(statement); }), 0) << qPrintable(statement);
    EXPECT_EQ(connection.ask(u"SELECT count(*) FROM t WHERE length(coalesce(V1, 0)) > 0"_s), 1);

    constexpr int beyond = 65 * 1024 * 1024;
    dao::Statement update(connection, u"UPDATE t SET V1 = ?1"_s);
    EXPECT_EQ(errorOf([&] { update.bind(1, Value(QByteArray(beyond, 'x'))); }), 3035);
    EXPECT_GT(sqlite3_hard_heap_limit64(-1), 0);
}

TEST_F(StrangersFile, AQueryOfFewLongStepsCanBeStopped) {
    createCases(u"a.mdb"_s, u"t"_s, 200);
    const auto database = open(u"a.mdb"_s);
    database->CreateQueryDef(u"q"_s, u"SELECT Len(Replace(Space(500000 + dt_CaseID), ' ', 'xy')) AS n FROM t"_s);
    int calls = 0;
    dao::DBEngine::instance().setProgress([&] { return ++calls == 2; });
    EXPECT_EQ(errorOf([&] { database->OpenRecordset(u"SELECT Sum(n) FROM q"_s); }), 3059);
    EXPECT_EQ(calls, 2);
    dao::DBEngine::instance().setProgress([]() -> bool { throw dao::Error(1, u"from the hook"_s); });
    EXPECT_EQ(errorOf([&] { database->OpenRecordset(u"SELECT Sum(n) FROM q"_s); }), 1);
}

TEST_F(StrangersFile, AQueryTakesNoMoreThanTheProgramCanGive) {
    createCases(u"a.mdb"_s, u"t"_s, 1000);
    const auto database = open(u"a.mdb"_s);
    const auto limit = std::exchange(dao::engineSettings().mostResultBytes, 100'000);
    EXPECT_EQ(errorOf([&] { database->OpenRecordset(u"SELECT a.V1 FROM t AS a, t AS b"_s); }), 3035);
    EXPECT_EQ(errorOf([&] { database->OpenRecordset(u"SELECT a.V1 FROM t AS a"_s); }), 0);
    dao::engineSettings().mostResultBytes = limit;
    // What would compare for hours in a single step.
    for (const QString& search :
         {u"InStr(Space(9000000), Space(4000000) & 'x')"_s, u"Space(9000000) Like '*' & Space(4000000) & 'x'"_s,
          u"Replace(Space(9000000), Space(4000000) & 'x', '')"_s})
        EXPECT_EQ(errorOf([&] { rows(*database, u"SELECT %1 FROM t WHERE dt_CaseID = 1"_s.arg(search)); }), 3035)
            << qPrintable(search);
    EXPECT_EQ(errorOf([&] { rows(*database, u"SELECT Space(9000000) & Space(9000000) FROM t"_s); }), 5);
    EXPECT_EQ(rows(*database, u"SELECT InStr(Space(9000000) & 'needle', 'needle') FROM t WHERE dt_CaseID = 1"_s),
              u"9000001"_s);
}
