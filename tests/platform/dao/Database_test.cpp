#include "platform/dao/EngineFixture.h"
#include "platform/dao/RowBlock.h"
#include "platform/dao/Stranger.h"

#include <QFile>
#include <cstdio>
#include <sqlite3.h>

using namespace Qt::StringLiterals;
using dao::Value;

namespace {

class DatabaseTest : public EngineTest {
protected:
    QByteArray content(const QString& name) const {
        QFile file(path(name));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return file.readAll();
    }
    void write(const QString& name, const QByteArray& content) const {
        QFile file(path(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    }
};

} // namespace

TEST_F(DatabaseTest, FilesThatCannotBeOpenedSayWhy) {
    createCases(u"good.mdb"_s, u"QX1_1"_s, 5000);
    write(u"text.mdb"_s, QByteArray(5000, 'x'));
    write(u"empty.mdb"_s, QByteArray());
    write(u"short.mdb"_s, content(u"good.mdb"_s).left(9000));
    const std::pair<QString, int> cases[] = {
        {u"nofolder/a.mdb"_s, 3044}, {u"nofile.mdb"_s, 3024}, {u"text.mdb"_s, 3343},
        {u"empty.mdb"_s, 3343},      {u"short.mdb"_s, 3049},  {u"home"_s, 3051},
    };
    const auto catalogue = create(u"catalogue.mdb"_s);
    for (const auto& [file, number] : cases) {
        EXPECT_EQ(errorOf([&] { open(file); }), number) << file.toStdString();
        const dao::Errors& errors = dao::DBEngine::instance().errors();
        ASSERT_EQ(errors.Count(), 1);
        EXPECT_TRUE(errors.Item(0).description.contains(file)) << errors.Item(0).description.toStdString();
        addLink(*catalogue, u"L"_s, path(file));
        EXPECT_EQ(errorOf([&] { catalogue->OpenRecordset(u"SELECT * FROM L"_s); }), number) << file.toStdString();
        EXPECT_EQ(errorOf([&] { catalogue->TableDefs().Item(u"L"_s)->RefreshLink(); }), number);
        catalogue->TableDefs().Delete(u"L"_s);
    }
    EXPECT_EQ(errorOf([&] { create(u"good.mdb"_s); }), 3204);
    EXPECT_EQ(errorOf([&] { create(u"nofolder/new.mdb"_s); }), 3044);
    open(u"good.mdb"_s);
    EXPECT_EQ(dao::DBEngine::instance().errors().Count(), 0) << "the list empties when the next operation begins";
}

TEST_F(DatabaseTest, LinksLeadToOtherFilesInAnySpelling) {
    createCases(u"QX1.mdb"_s, u"QX1_1"_s, 3, 1.5);
    createCases(u"QX2.mdb"_s, u"QX1_1"_s, 2, 10);
    const auto catalogue = create(u"catalogue.mdb"_s);
    addLink(*catalogue, u"QX1_1"_s, path(u"QX1.mdb"_s).replace(u'/', u'\\'));
    addLink(*catalogue, u"other"_s, path(u"qx2.MDB"_s), u"qx1_1"_s);
    const auto link = catalogue->TableDefs().Item(u"qx1_1"_s);
    EXPECT_EQ(link->Attributes(), dao::dbAttachedTable);
    EXPECT_EQ(rows(*catalogue, u"SELECT V1 FROM QX1_1 ORDER BY V1 DESC"_s), u"4,5;3;1,5"_s);
    EXPECT_EQ(rows(*catalogue,
                   u"SELECT QX1_1.V1, other.V1 FROM QX1_1 INNER JOIN other ON QX1_1.dt_CaseID = other.dt_CaseID"_s),
              u"1,5,10;3,20"_s);
    EXPECT_EQ(catalogue->OpenRecordset(u"QX1_1"_s)->Fields()[1].Type, dao::dbDouble);

    link->setConnect(u";DATABASE="_s + path(u"QX2.mdb"_s));
    EXPECT_EQ(rows(*catalogue, u"SELECT V1 FROM QX1_1"_s), u"10;20"_s);
    link->setSourceTableName(u"gone"_s);
    EXPECT_EQ(errorOf([&] { rows(*catalogue, u"SELECT V1 FROM QX1_1"_s); }), 3011);
    EXPECT_EQ(errorOf([&] { link->setConnect(u"nothing"_s); }), 3170);
    EXPECT_EQ(errorOf([&] { rows(*catalogue, u"SELECT V1 FROM nowhere"_s); }), 3078);
    for (const QString& none : {u"nowhere"_s, u"QX1_1"_s, u"DROP TABLE QX1_1"_s, QString()})
        EXPECT_EQ(errorOf([&] { catalogue->Execute(none, 0); }), 3075) << none.toStdString();

    catalogue->Execute(u"UPDATE other SET V1 = 7 WHERE dt_CaseID = 1"_s);
    EXPECT_EQ(catalogue->RecordsAffected(), 1);
    catalogue->TableDefs().Delete(u"other"_s);
    EXPECT_EQ(rows(*open(u"QX2.mdb"_s), u"SELECT V1 FROM QX1_1"_s), u"7;20"_s) << "only the link goes";
}

TEST_F(DatabaseTest, AFileThatTakesTheNameOfALinkedOneIsRead) {
    createCases(u"QX1.mdb"_s, u"QX1_1"_s, 2);
    createCases(u"new.mdb"_s, u"QX1_1"_s, 2, 100);
    const auto catalogue = create(u"catalogue.mdb"_s);
    addLink(*catalogue, u"QX1_1"_s, path(u"QX1.mdb"_s));
    EXPECT_EQ(rows(*catalogue, u"SELECT V1 FROM QX1_1"_s), u"1;2"_s);
    QFile::remove(path(u"QX1.mdb"_s));
    EXPECT_EQ(errorOf([&] { rows(*catalogue, u"SELECT V1 FROM QX1_1"_s); }), 3024);
    QFile::rename(path(u"new.mdb"_s), path(u"QX1.mdb"_s));
    EXPECT_EQ(rows(*catalogue, u"SELECT V1 FROM QX1_1"_s), u"100;200"_s);

    const auto takesOver = [this](const QString& file, const QString& place) {
        return std::rename(QFile::encodeName(path(file)).constData(), QFile::encodeName(path(place)).constData()) == 0;
    };
    createCases(u"same.mdb"_s, u"QX1_1"_s, 2, 7);
    ASSERT_TRUE(takesOver(u"same.mdb"_s, u"QX1.mdb"_s));
    EXPECT_EQ(rows(*catalogue, u"SELECT V1 FROM QX1_1"_s), u"7;14"_s) << "at no time was there none";
    createCases(u"elsewhere.mdb"_s, u"QX1_1"_s, 1, 9);
    ASSERT_TRUE(QFile::link(path(u"elsewhere.mdb"_s), path(u"symbolic"_s)));
    ASSERT_TRUE(takesOver(u"symbolic"_s, u"QX1.mdb"_s));
    EXPECT_EQ(rows(*catalogue, u"SELECT V1 FROM QX1_1"_s), u"9"_s);
    catalogue->TableDefs().Item(u"QX1_1"_s)->setConnect(u";DATABASE="_s + path(u"Elsewhere.mdb"_s));
    EXPECT_EQ(rows(*catalogue, u"SELECT V1 FROM QX1_1"_s), u"9"_s);
    createCases(u"other.mdb"_s, u"QX1_1"_s, 1, 8);
    ASSERT_TRUE(takesOver(u"other.mdb"_s, u"Elsewhere.mdb"_s));
    EXPECT_EQ(rows(*catalogue, u"SELECT V1 FROM QX1_1"_s), u"8"_s) << "the name that is spelled just so comes first";
}

/// Only so many files are open at a time: what was known of one that was let go holds as long as nobody wrote into it.
TEST_F(DatabaseTest, AFileThatComesBackIsLookedAtAgainIfItWasChangedMeanwhile) {
    const auto catalogue = create(u"catalogue.mdb"_s);
    for (int i = 1; i <= 12; ++i) {
        createCases(u"S%1.mdb"_s.arg(i), u"S%1_1"_s.arg(i), 2, i);
        addLink(*catalogue, u"S%1_1"_s.arg(i), path(u"S%1.mdb"_s.arg(i)));
    }
    Stranger(path(u"S1.mdb"_s))
        .run("CREATE TABLE s (id INTEGER PRIMARY KEY, x DOUBLE); INSERT INTO s VALUES (1, 7), (2, 1)");
    addLink(*catalogue, u"s"_s, path(u"S1.mdb"_s));
    const auto letGo = [&] {
        for (int i = 2; i <= 12; ++i)
            rows(*catalogue, u"SELECT V1 FROM S%1_1"_s.arg(i));
    };
    const auto above = [&] { return rows(*catalogue, u"SELECT Count(*) FROM s WHERE x > 6"_s); };
    EXPECT_EQ(above(), u"1"_s);
    // The file is open again for another of its tables when it is written into.
    letGo();
    EXPECT_EQ(rows(*catalogue, u"SELECT V1 FROM S1_1"_s), u"1;2"_s);
    Stranger(path(u"S1.mdb"_s)).run("UPDATE s SET x = 'abc' WHERE id = 2");
    EXPECT_EQ(above(), u"1"_s);
    Stranger(path(u"S1.mdb"_s)).run("UPDATE s SET x = 1 WHERE id = 2");
    EXPECT_EQ(above(), u"1"_s);
    const QByteArray changes[] = {"UPDATE s SET x = 'abc' WHERE id = 2",         // a text is above every number
                                  "PRAGMA journal_mode=WAL; UPDATE s SET x = 5", // where the file itself tells nothing
                                  "UPDATE s SET x = 'abc' WHERE id = 2",
                                  "PRAGMA journal_mode=DELETE; UPDATE s SET x = 8 WHERE id = 1"};
    const QString found[] = {u"1"_s, u"0"_s, u"0"_s, u"1"_s};
    for (int i = 0; i < 4; ++i) {
        letGo();
        Stranger(path(u"S1.mdb"_s)).run(changes[i]);
        EXPECT_EQ(above(), found[i]) << changes[i].constData();
        letGo();
        EXPECT_EQ(above(), found[i]) << "nothing was changed after: " << changes[i].constData();
    }
    letGo();
    Stranger(path(u"S1.mdb"_s)).run("DROP TABLE s; CREATE TABLE s (x TEXT, id INTEGER); INSERT INTO s VALUES ('9', 1)");
    EXPECT_EQ(rows(*catalogue, u"SELECT * FROM s"_s), u"9,1"_s);
    letGo();
    createCases(u"S1.new"_s, u"s"_s, 2, 3);
    ASSERT_EQ(
        std::rename(QFile::encodeName(path(u"S1.new"_s)).constData(), QFile::encodeName(path(u"S1.mdb"_s)).constData()),
        0);
    EXPECT_EQ(rows(*catalogue, u"SELECT V1 FROM s"_s), u"3;6"_s);
}

TEST_F(DatabaseTest, AStatementRunAgainMeansWhatItMeansByNow) {
    createCases(u"QX1.mdb"_s, u"QX1_1"_s, 2);
    const auto catalogue = create(u"catalogue.mdb"_s);
    addLink(*catalogue, u"L"_s, path(u"QX1.mdb"_s), u"QX1_1"_s);
    catalogue->CreateQueryDef(u"q"_s, u"SELECT V1 FROM L"_s);
    const auto all = [&](const QString& source) { return rows(*catalogue, u"SELECT * FROM "_s + source); };
    const auto typeOfV1 = [&] { return catalogue->OpenRecordset(u"SELECT V1 FROM L"_s)->Fields()[0].Type; };
    const Stranger cases(path(u"QX1.mdb"_s)), stranger(path(u"catalogue.mdb"_s));

    EXPECT_EQ(all(u"q"_s) + u'|' + rows(*catalogue, u"q"_s), u"1;2|1;2"_s);
    catalogue->QueryDefs().Item(u"q"_s)->setSQL(u"SELECT V1 * 2 AS W FROM L"_s);
    EXPECT_EQ(all(u"q"_s) + u'|' + rows(*catalogue, u"q"_s), u"2;4|2;4"_s);
    EXPECT_EQ(all(u"L"_s), u"1,1;2,2"_s);
    EXPECT_EQ(typeOfV1(), dao::dbDouble);
    cases.run("ALTER TABLE QX1_1 ADD COLUMN W TEXT DEFAULT 'x'");
    EXPECT_EQ(all(u"L"_s), u"1,1,x;2,2,x"_s);
    cases.run("DROP TABLE QX1_1; CREATE TABLE QX1_1 (V1 TEXT, dt_CaseID INTEGER PRIMARY KEY); INSERT INTO QX1_1 VALUES "
              "('3', 1)");
    EXPECT_EQ(all(u"L"_s) + u'|' + all(u"q"_s), u"3,1|6"_s);
    EXPECT_EQ(typeOfV1(), dao::dbText);

    stranger.run("CREATE TABLE L (V1 INTEGER PRIMARY KEY); INSERT INTO L VALUES (77)");
    EXPECT_EQ(all(u"L"_s) + u'|' + all(u"q"_s), u"77|154"_s) << "its own table hides a link";
    stranger.run("DROP TABLE L");
    EXPECT_EQ(all(u"L"_s) + u'|' + all(u"q"_s), u"3,1|6"_s);

    for (const QString& field : {u"a"_s, u"b"_s}) {
        workspace().BeginTrans();
        addTable(*catalogue, u"t"_s, {{field, dao::dbLong}});
        EXPECT_EQ(catalogue->OpenRecordset(u"SELECT * FROM t"_s)->Fields()[0].Name, field);
        workspace().Rollback();
        EXPECT_EQ(errorOf([&] { all(u"t"_s); }), 3078);
    }
    catalogue->TableDefs().Delete(u"L"_s);
    EXPECT_EQ(errorOf([&] { all(u"q"_s); }), 3078);
}

TEST_F(DatabaseTest, AnyNumberOfLinksMayExistButOneStatementReachesTenFiles) {
    const auto catalogue = create(u"catalogue.mdb"_s);
    QString from;
    QString elevenFiles;
    for (int i = 1; i <= 25; ++i) {
        createCases(u"S%1.mdb"_s.arg(i), u"S%1_1"_s.arg(i), 1, i);
        addLink(*catalogue, u"S%1_1"_s.arg(i), path(u"S%1.mdb"_s.arg(i)));
        from += (i == 1 ? u""_s : u" UNION ALL "_s) + u"SELECT V1 FROM S%1_1"_s.arg(i);
        if (i == 10) {
            EXPECT_EQ(rows(*catalogue, from), u"1;2;3;4;5;6;7;8;9;10"_s);
        }
        elevenFiles = i == 11 ? from : elevenFiles;
    }
    for (const int i : {25, 1, 13, 7, 20, 2})
        EXPECT_EQ(rows(*catalogue, u"SELECT V1 FROM S%1_1"_s.arg(i)), QString::number(i));
    EXPECT_EQ(errorOf([&] { rows(*catalogue, elevenFiles); }), 3048);
    const auto loaded = catalogue->OpenRecordset(u"SELECT * FROM S1_1 WHERE true"_s);
    Stranger(path(u"S1.mdb"_s)).run("UPDATE S1_1 SET V1 = 5");
    for (int i = 2; i <= 12; ++i)
        rows(*catalogue, u"SELECT V1 FROM S%1_1"_s.arg(i));
    loaded->FindFirst(u"V1 = 5"_s);
    EXPECT_FALSE(loaded->NoMatch()) << "the file was let go in between";
    workspace().BeginTrans();
    for (int i = 1; i <= 10; ++i)
        catalogue->Execute(u"UPDATE S%1_1 SET V1 = 0"_s.arg(i));
    EXPECT_EQ(errorOf([&] { rows(*catalogue, u"SELECT V1 FROM S11_1"_s); }), 3048) << "all ten take part in it";
    workspace().Rollback();
    EXPECT_EQ(rows(*catalogue, u"SELECT V1 FROM S11_1"_s), u"11"_s);
    EXPECT_EQ(rows(*catalogue, u"SELECT V1 FROM S3_1"_s), u"3"_s);
}

TEST_F(DatabaseTest, DefinitionsLiveInMemoryUntilTheyAreSaved) {
    createCases(u"QX1.mdb"_s, u"QX1_1"_s, 2);
    {
        const auto catalogue = create(u"catalogue.mdb"_s);
        addLink(*catalogue, u"QX1_1"_s, path(u"QX1.mdb"_s));
        catalogue->CreateQueryDef(u"q"_s, u"SELECT dt_CaseID AS ID FROM QX1_1;"_s);
        EXPECT_EQ(errorOf([&] { catalogue->CreateQueryDef(u"Q"_s); }), 3012);
        EXPECT_EQ(errorOf([&] { addLink(*catalogue, u"qx1_1"_s, path(u"QX1.mdb"_s)); }), 3010);
        EXPECT_EQ(rows(*catalogue, u"q"_s), u"1;2"_s);
        EXPECT_EQ(open(u"catalogue.mdb"_s)->QueryDefs().Count(), 0);
        catalogue->saveDefinitions();
        const auto other = open(u"catalogue.mdb"_s);
        EXPECT_EQ(other->QueryDefs().Item(0)->SQL(), u"SELECT dt_CaseID AS ID FROM QX1_1;"_s);
        catalogue->QueryDefs().Item(u"Q"_s)->setSQL(u"SELECT V1 FROM QX1_1"_s);
        catalogue->Close();
        EXPECT_EQ(rows(*other, u"SELECT ID FROM q"_s), u"1;2"_s) << "what is open keeps its own";
        other->QueryDefs().Refresh();
        EXPECT_EQ(rows(*other, u"SELECT * FROM q"_s), u"1;2"_s);
        EXPECT_EQ(other->OpenRecordset(u"q"_s)->Fields()[0].Name, u"V1"_s);
    }
    const QByteArray before = content(u"catalogue.mdb"_s);
    for (const bool readOnly : {false, true}) {
        dao::DBEngine::instance().setDefinitionsInMemory(!readOnly);
        const auto catalogue = open(u"catalogue.mdb"_s, readOnly);
        EXPECT_EQ(catalogue->TableDefs().Count(), 1) << "the engine's own tables don't show";
        EXPECT_EQ(errorOf([&] { rows(*catalogue, u"SELECT * FROM __vx_links"_s); }), 3078);
        catalogue->QueryDefs().Item(u"q"_s)->setSQL(u"SELECT Count(*) AS n FROM QX1_1"_s);
        addLink(*catalogue, u"L2"_s, path(u"QX1.mdb"_s), u"QX1_1"_s);
        EXPECT_EQ(rows(*catalogue, u"SELECT n FROM q"_s), u"2"_s);
        EXPECT_EQ(rows(*catalogue, u"SELECT V1 FROM L2"_s), u"1;2"_s);
        if (readOnly) {
            EXPECT_EQ(errorOf([&] { catalogue->Execute(u"UPDATE QX1_1 SET V1 = 5"_s); }), 3027);
            EXPECT_FALSE(catalogue->OpenRecordset(u"QX1_1"_s)->Updatable());
        }
        catalogue->QueryDefs().Delete(u"q"_s);
        EXPECT_EQ(errorOf([&] { catalogue->QueryDefs().Item(u"q"_s); }), 3265);
        catalogue->Close();
        EXPECT_EQ(content(u"catalogue.mdb"_s), before);
    }
}

TEST_F(DatabaseTest, TablesAreMadeAsTheirDefinitionSays) {
    const auto database = create(u"a.mdb"_s);
    const auto table = database->CreateTableDef(u"tsys_Comparison"_s);
    const std::pair<QString, int> fields[] = {
        {u"Yes"_s, dao::dbBoolean},   {u"Byte"_s, dao::dbByte},        {u"Small"_s, dao::dbInteger},
        {u"Long"_s, dao::dbLong},     {u"Money"_s, dao::dbCurrency},   {u"Single"_s, dao::dbSingle},
        {u"Double"_s, dao::dbDouble}, {u"Date"_s, dao::dbDate},        {u"Text"_s, dao::dbText},
        {u"Memo"_s, dao::dbMemo},     {u"Bytes"_s, dao::dbLongBinary},
    };
    table->Fields.push_back(dao::TableDef::CreateField(u"ID"_s, dao::dbLong, 0, dao::dbAutoIncrField));
    for (const auto& [name, type] : fields)
        table->Fields.push_back(dao::TableDef::CreateField(name, type, type == dao::dbText ? 50 : 0));
    table->Indexes.push_back({u"byText"_s, {u"Text"_s}, true});
    database->TableDefs().Append(table);
    EXPECT_EQ(errorOf([&] { database->TableDefs().Append(table); }), 3010);
    const std::vector<dao::ColumnInfo> columns = database->TableDefs().Item(0)->columns();
    ASSERT_EQ(columns.size(), std::size(fields) + 1);
    for (size_t i = 0; i < std::size(fields); ++i) {
        EXPECT_EQ(columns[i + 1].name, fields[i].first);
        EXPECT_EQ(columns[i + 1].type, fields[i].second) << fields[i].first.toStdString();
    }
    EXPECT_EQ(columns[0].attributes, dao::dbAutoIncrField);
    EXPECT_EQ(columns[9].size, 50);

    database->Execute(u"INSERT INTO tsys_Comparison ([Text], [Memo], [Double]) VALUES ('Ä', 5, 2)"_s);
    EXPECT_EQ(errorOf([&] { database->Execute(u"INSERT INTO tsys_Comparison ([Text]) VALUES ('ä')"_s); }), 3022);
    const auto row = database->OpenRecordset(u"SELECT [Yes], [Memo], [Double] FROM tsys_Comparison"_s);
    EXPECT_EQ(row->value(0), Value(0));
    EXPECT_EQ(row->value(1), Value(u"5"_s));
    EXPECT_EQ(row->value(2), Value(2.0));

    EXPECT_EQ(errorOf([&] { database->TableDefs().Append(database->CreateTableDef(u"none"_s)); }), 3264);
    EXPECT_EQ(errorOf([&] { addTable(*database, u"twice"_s, {{u"a"_s}, {u"A"_s}}); }), 3191);
    for (const QString& name : {u""_s, u"a.b"_s, u"a]"_s, u"__vx_x"_s, u"sqlite_x"_s, QString(65, u'a')})
        EXPECT_EQ(errorOf([&] { addTable(*database, name, {{u"a"_s}}); }), 3125) << name.toStdString();
    database->TableDefs().Delete(u"TSYS_comparison"_s);
    EXPECT_FALSE(database->TableDefs().contains(u"tsys_Comparison"_s));
}

TEST_F(DatabaseTest, AFieldIsUniqueIfItsDeclarationSaysSoForAllRows) {
    const auto database = create(u"own.mdb"_s);
    const auto pair = database->CreateTableDef(u"pair"_s);
    pair->Fields = {{u"Counter"_s, dao::dbLong, 0, dao::dbAutoIncrField}, {u"a"_s, dao::dbLong}, {u"t"_s}};
    pair->Indexes = {{u"both"_s, {u"Counter"_s, u"a"_s}, true}, {u"a"_s, {u"a"_s}, false}, {u"t"_s, {u"t"_s}, true}};
    database->TableDefs().Append(pair);
    const Stranger stranger(path(u"strange.mdb"_s));
    stranger.run("CREATE TABLE cases(id LONG, x LONG, y LONG, word TEXT, PRIMARY KEY (id));"
                 "CREATE UNIQUE INDEX some ON cases(x) WHERE y > 0; CREATE UNIQUE INDEX spelled ON cases(word);"
                 "CREATE UNIQUE INDEX sum ON cases(x + y);"
                 "CREATE TABLE double(id LONG, n LONG, PRIMARY KEY (id, n)); CREATE TABLE none(id LONG)");
    for (const QString& table : {u"cases"_s, u"double"_s, u"none"_s, u"gone"_s})
        addLink(*database, table, path(u"strange.mdb"_s));
    const struct {
        QString table, field;
        bool unique;
    } cases[] = {{u"PAIR"_s, u"counter"_s, true}, {u"pair"_s, u"a"_s, false},  {u"pair"_s, u"t"_s, true},
                 {u"cases"_s, u"ID"_s, true},     {u"cases"_s, u"x"_s, false}, // only where y is positive
                 {u"cases"_s, u"word"_s, false},                               // 'a' beside 'A', which are equal here
                 {u"double"_s, u"id"_s, false},   {u"none"_s, u"id"_s, false}};
    for (const auto& test : cases)
        EXPECT_EQ(database->isUnique(test.table, test.field), test.unique) << qPrintable(test.table + test.field);
    stranger.run("CREATE UNIQUE INDEX late ON none(id)");
    EXPECT_TRUE(database->isUnique(u"none"_s, u"id"_s));
    EXPECT_EQ(errorOf([&] { database->isUnique(u"nowhere"_s, u"id"_s); }), 3078);
    EXPECT_EQ(errorOf([&] { database->isUnique(u"gone"_s, u"id"_s); }), 3011);
    EXPECT_EQ(errorOf([&] { database->isUnique(u"none"_s, u"other"_s); }), 3265);
}

TEST_F(DatabaseTest, AnotherProcessesLockIsWaitedForAndThenReported) {
    createCases(u"a.mdb"_s, u"t"_s, 2);
    const Stranger stranger(path(u"a.mdb"_s));
    stranger.run("BEGIN EXCLUSIVE");
    EXPECT_EQ(errorOf([&] { open(u"a.mdb"_s); }), 3050);
    stranger.run("COMMIT; BEGIN IMMEDIATE");
    const auto database = open(u"a.mdb"_s);
    EXPECT_EQ(rows(*database, u"SELECT V1 FROM t"_s), u"1;2"_s);
    EXPECT_EQ(errorOf([&] { database->Execute(u"UPDATE t SET V1 = 9"_s); }), 3260);
    const auto row = database->OpenRecordset(u"t"_s);
    row->Edit();
    row->setValue(u"V1"_s, Value(9));
    EXPECT_EQ(errorOf([&] { row->Update(); }), 3260);
    stranger.run("COMMIT");
    row->Update();
    EXPECT_EQ(rows(*database, u"SELECT V1 FROM t"_s), u"9;2"_s);
    database->Close();
    const auto alone = workspace().OpenDatabase(path(u"a.mdb"_s), true);
    EXPECT_EQ(errorOf([&] { open(u"a.mdb"_s); }), 3050);
    alone->Close();
    EXPECT_EQ(errorOf([&] { open(u"a.mdb"_s); }), 0);
}

TEST_F(DatabaseTest, TransactionsNestAndCoverEveryOpenDatabase) {
    createCases(u"a.mdb"_s, u"t"_s, 2);
    createCases(u"b.mdb"_s, u"t"_s, 2);
    const auto a = open(u"a.mdb"_s);
    workspace().BeginTrans();
    const auto b = open(u"b.mdb"_s);
    a->Execute(u"UPDATE t SET V1 = 10"_s);
    b->Execute(u"UPDATE t SET V1 = 10"_s);
    workspace().BeginTrans();
    b->Execute(u"DELETE FROM t"_s);
    addTable(*a, u"made"_s, {{u"x"_s, dao::dbLong}});
    EXPECT_EQ(rows(*b, u"SELECT V1 FROM t"_s), u""_s);
    workspace().Rollback();
    EXPECT_FALSE(a->TableDefs().contains(u"made"_s));
    EXPECT_EQ(rows(*b, u"SELECT V1 FROM t"_s), u"10;10"_s);
    workspace().BeginTrans();
    a->Execute(u"DELETE FROM t WHERE dt_CaseID = 1"_s);
    workspace().CommitTrans();
    workspace().CommitTrans();
    EXPECT_EQ(rows(*open(u"a.mdb"_s), u"SELECT V1 FROM t"_s), u"10"_s);
    EXPECT_EQ(errorOf([&] { workspace().CommitTrans(); }), 3034);
    EXPECT_EQ(errorOf([&] { workspace().Rollback(); }), 3034);
    workspace().BeginTrans();
    a->Execute(u"DELETE FROM t"_s);
    a->Close();
    workspace().CommitTrans();
    EXPECT_EQ(rows(*open(u"a.mdb"_s), u"SELECT V1 FROM t"_s), u"10"_s) << "closing gives up what was not committed";
}

TEST_F(DatabaseTest, WhatWasLearntOfATableInATransactionIsForgottenWithIt) {
    const auto own = create(u"a.mdb"_s);
    createCases(u"QX1.mdb"_s, u"t"_s, 1);
    const auto companion = own->openCompanion(path(u"QX1.mdb"_s));
    addLink(*own, u"linked"_s, path(u"QX1.mdb"_s), u"made"_s);
    const auto definition = own->CreateTableDef(u"made"_s);
    definition->Fields = {{u"id"_s, dao::dbLong}, {u"before"_s}};
    definition->PrimaryKey = QStringList{u"id"_s};
    workspace().BeginTrans();
    own->TableDefs().Append(definition);
    companion->createTable(*definition);
    for (const QString& table : {u"made"_s, u"linked"_s}) {
        own->Execute(u"INSERT INTO %1 (id, before) VALUES (1, 'x')"_s.arg(table));
        EXPECT_EQ(rows(*own, u"SELECT before FROM "_s + table), u"x"_s);
        EXPECT_TRUE(own->isUnique(table, u"id"_s));
    }
    EXPECT_EQ(own->TableDefs().Count(), 2);
    workspace().Rollback();
    // Each file has the same version now that it had in the transaction.
    const char* const otherwise = "CREATE TABLE made(after TEXT, id LONG); INSERT INTO made VALUES ('y', 7)";
    Stranger(path(u"a.mdb"_s)).run("CREATE TABLE other(x LONG)");
    EXPECT_FALSE(own->TableDefs().contains(u"made"_s));
    EXPECT_TRUE(own->TableDefs().contains(u"other"_s));
    EXPECT_EQ(errorOf([&] { rows(*own, u"made"_s); }), 3078);
    Stranger(path(u"a.mdb"_s)).run("DROP TABLE other");
    Stranger(path(u"a.mdb"_s)).run(otherwise);
    Stranger(path(u"QX1.mdb"_s)).run(otherwise);
    for (const QString& table : {u"made"_s, u"linked"_s}) {
        EXPECT_EQ(rows(*own, u"SELECT * FROM "_s + table), u"y,7"_s);
        EXPECT_FALSE(own->isUnique(table, u"id"_s));
    }
}

TEST_F(DatabaseTest, ACompanionIsCommittedWithItsDatabaseOrNotAtAll) {
    createCases(u"a.mdb"_s, u"t"_s, 1);
    const auto database = open(u"a.mdb"_s);
    for (const bool commit : {false, true}) {
        const auto companion = database->openCompanion(path(u"QX9.mdb"_s));
        workspace().BeginTrans();
        const auto table = database->CreateTableDef(u"QX9_1"_s);
        table->Fields = {{u"dt_CaseID"_s, dao::dbLong}, {u"V1"_s, dao::dbText}};
        table->PrimaryKey = QStringList{u"dt_CaseID"_s};
        companion->createTable(*table);
        {
            const auto cases = companion->openAppender(u"QX9_1"_s, {u"dt_CaseID"_s, u"V1"_s});
            cases->setNumber(0, 1);
            cases->setNumber(1, 1.5);
            cases->appendRow();
            cases->setNumber(0, 2);
            cases->appendRow();
            cases->setNumber(0, 2);
            EXPECT_EQ(errorOf([&] { cases->appendRow(); }), 3022);
        }
        database->Execute(u"UPDATE t SET V1 = 77"_s);
        EXPECT_EQ(errorOf([&] { companion->close(); }), 3246);
        commit ? workspace().CommitTrans() : workspace().Rollback();
        EXPECT_EQ(companion->tableNames().size(), commit ? 1 : 0);
        EXPECT_EQ(rows(*database, u"SELECT V1 FROM t"_s), commit ? u"77"_s : u"1"_s);
        companion->close();
    }
    addLink(*database, u"QX9_1"_s, path(u"QX9.mdb"_s));
    EXPECT_EQ(rows(*database, u"SELECT V1 FROM QX9_1"_s), u"1,5;~"_s);
}

TEST_F(DatabaseTest, ABlockOfRowsIsStoredAsTheSameRowsOneByOneAre) {
    const auto database = create(u"a.mdb"_s);
    const QStringList names{u"id"_s, u"d"_s, u"b"_s, u"t"_s};
    for (const QString& table : {u"single"_s, u"block"_s}) {
        addTable(
            *database, table,
            {{names[0], dao::dbLong}, {names[1], dao::dbDouble}, {names[2], dao::dbBoolean}, {names[3], dao::dbText}});
    }
    const auto fill = [](auto& target, auto&& endRow) {
        const double numbers[] = {0, -0.0, 1, -7, 2.5, 1e300, 9007199254740992.0, 9007199254740994.0, 5e-324};
        int id = 0;
        for (const double number : numbers) {
            target.setNumber(0, ++id);
            target.setNumber(1, number);
            target.setNumber(2, number);
            target.setText(3, u"\u00DC %1 \U0001F600"_s.arg(id).repeated(id));
            endRow();
        }
        target.setNumber(0, ++id);
        target.setText(3, QString());
        target.setNumber(2, 0);
        endRow();
    };
    const auto single = database->openAppender(u"single"_s, names);
    fill(*single, [&] { single->appendRow(); });
    const auto appender = database->openAppender(u"block"_s, names);
    dao::RowBlock block = appender->newBlock();
    fill(block, [&] { block.endRow(); });
    appender->appendRows(block);
    const QString all = u"SELECT * FROM %1 ORDER BY id"_s;
    EXPECT_EQ(rows(*database, all.arg(u"block"_s)), rows(*database, all.arg(u"single"_s)));
    database->Close();
    const Stranger stranger(path(u"a.mdb"_s));
    EXPECT_EQ(
        stranger.ask("SELECT count(*), sum(b), (SELECT count(*) FROM (SELECT id, d, typeof(d), b, hex(t) FROM single "
                     "INTERSECT SELECT id, d, typeof(d), b, hex(t) FROM block)) FROM block"),
        u"10 -7 10"_s);
}

TEST_F(DatabaseTest, ABlockOfRowsRefusesWhatItsFieldsCannotHold) {
    const auto database = create(u"a.mdb"_s);
    addTable(*database, u"t"_s, {{u"id"_s, dao::dbLong}, {u"d"_s, dao::dbDouble}, {u"x"_s, dao::dbText}});
    const auto appender = database->openAppender(u"t"_s, {u"id"_s, u"d"_s, u"x"_s});
    dao::RowBlock block = appender->newBlock();
    EXPECT_EQ(errorOf([&] { block.setNumber(3, 1); }), 3265);
    EXPECT_EQ(errorOf([&] { block.setNumber(-1, 1); }), 3265);
    EXPECT_EQ(errorOf([&] { block.setNumber(2, 1); }), 3421);
    EXPECT_EQ(errorOf([&] { block.setText(1, u"1"_s); }), 3421);
    EXPECT_EQ(errorOf([&] { block.setNumber(1, HUGE_VAL); }), 6);
    for (int row = 0; row < 3; ++row) {
        block.setNumber(0, row / 2); // 0, 0, 1
        block.endRow();
    }
    workspace().BeginTrans();
    EXPECT_EQ(errorOf([&] { appender->appendRows(block); }), 3022);
    workspace().Rollback();
    EXPECT_EQ(rows(*database, u"SELECT Count(*) FROM t"_s), u"0"_s);

    // A block takes more rows than it asks for, and is as new once it is empty.
    block.clear();
    for (int row = 0; row < 10'000; ++row) {
        block.setNumber(0, row);
        block.setText(2, QString::number(row));
        block.endRow();
    }
    EXPECT_TRUE(block.isFull());
    appender->appendRows(block);
    block.clear();
    block.setNumber(0, 10'000);
    block.endRow();
    appender->appendRows(block);
    EXPECT_EQ(rows(*database, u"SELECT Count(*), Count(d), Count(x), Max(Val(x)) FROM t"_s), u"10001,0,10000,9999"_s);
    EXPECT_EQ(errorOf([&] { database->OpenRecordset(u"__vx_rows"_s); }), 3078);
}

TEST_F(DatabaseTest, WorkThatWasInterruptedIsTakenBackAtTheNextOpening) {
    createCases(u"a.mdb"_s, u"t"_s, 2000);
    {
        const Stranger stranger(path(u"a.mdb"_s));
        // So small a cache writes changed pages to the file before the transaction ends.
        stranger.run("PRAGMA cache_size=5; BEGIN; UPDATE t SET V1 = 0");
        QFile::copy(path(u"a.mdb"_s), path(u"killed.mdb"_s));
        QFile::copy(path(u"a.mdb-journal"_s), path(u"killed.mdb-journal"_s));
        stranger.run("ROLLBACK");
    }
    EXPECT_NE(content(u"killed.mdb"_s), content(u"a.mdb"_s));
    EXPECT_EQ(rows(*open(u"killed.mdb"_s, true), u"SELECT Sum(V1) FROM t"_s), u"2001000"_s);
}
