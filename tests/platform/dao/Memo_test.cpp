#include "platform/dao/EngineFixture.h"
#include "platform/dao/EngineSettings.h"
#include "platform/dao/Transaction.h"

#include <utility>

using namespace Qt::StringLiterals;
using dao::Value;

namespace {

/// A table of variables with memos: the key is a text, so that the file may give a row's number to another row.
class MemoTest : public EngineTest {
protected:
    MemoTest() {
        database_ = create(u"catalogue.mdb"_s);
        addTable(*database_, u"v"_s,
                 {{u"name"_s, dao::dbText},
                  {u"place"_s, dao::dbLong},
                  {u"graph"_s, dao::dbMemo},
                  {u"layout"_s, dao::dbMemo}});
        for (int i = 1; i <= 4; ++i)
            database_->Execute(
                u"INSERT INTO v (name, place, graph) VALUES ('V%1', %2, 'graph %1')"_s.arg(i).arg(5 - i));
        database_->Execute(u"UPDATE v SET graph = Null WHERE name = 'V3'"_s);
    }

    dao::RecordsetPtr variables() { return database_->OpenRecordset(u"SELECT * FROM v WHERE true ORDER BY place"_s); }
    static QString graphs(dao::Recordset& rows) {
        QStringList texts;
        for (rows.MoveFirst(); !rows.Eof(); rows.MoveNext())
            texts << (rows.value(u"graph"_s).isNull() ? u"~"_s : rows.text(u"graph"_s));
        return texts.join(u',');
    }
    static void set(dao::Recordset& rows, const QString& field, const Value& value) {
        rows.Edit();
        rows.setValue(field, value);
        rows.Update();
    }

    dao::DatabasePtr database_;
};

/// Each of the 256 characters that a byte becomes, in three orders, beginning and ending with NUL.
QString allBytes() {
    QByteArray bytes;
    for (const int step : {1, 255, 77})
        for (int i = 0; i < 256; ++i)
            bytes += static_cast<char>(i * step);
    return QString::fromLatin1(bytes + '\0');
}

} // namespace

TEST_F(MemoTest, EveryByteSurvivesAMemoOnEveryWayOut) {
    const QString all = allBytes();
    ASSERT_EQ(all.size(), 769);
    const auto rows = variables();
    rows->FindFirst(u"name = 'V2'"_s);
    set(*rows, u"graph"_s, Value(all));
    EXPECT_EQ(rows->value(u"graph"_s), Value(all));
    database_->Execute(u"INSERT INTO v (name, graph) SELECT 'copy', graph FROM v WHERE name = 'V2'"_s);
    database_->Execute(u"UPDATE v SET layout = graph WHERE name = 'V2'"_s);
    database_->Close();
    database_ = open(u"catalogue.mdb"_s);
    const auto links = create(u"links.mdb"_s);
    addLink(*links, u"v"_s, path(u"catalogue.mdb"_s));
    for (const QString& statement :
         {u"SELECT * FROM v WHERE name = 'V2'"_s, u"SELECT layout AS graph FROM v WHERE name = 'V2'"_s,
          u"SELECT * FROM v WHERE name = 'copy'"_s,
          u"SELECT graph FROM v WHERE place = 3 UNION SELECT 'x' FROM v WHERE false"_s,
          u"SELECT '' & graph AS graph FROM v WHERE name = 'V2'"_s,
          u"SELECT a.graph FROM v AS a INNER JOIN v AS b ON a.layout = b.graph WHERE b.name = 'V2'"_s})
        for (dao::Database* const database : {database_.get(), links.get()})
            for (const int type : {dao::dbOpenSnapshot, dao::dbOpenDynaset})
                EXPECT_EQ(database->OpenRecordset(statement, type)->value(u"graph"_s), Value(all))
                    << statement.toStdString() << ", " << type;
    const auto table = database_->OpenRecordset(u"v"_s, dao::dbOpenTable);
    table->FindFirst(u"name = 'V2'"_s);
    EXPECT_EQ(table->value(u"graph"_s), Value(all)) << "fetched alone";
    EXPECT_EQ(EngineTest::rows(*database_, u"SELECT Len(graph) FROM v WHERE name = 'V2'"_s), u"769"_s);
}

TEST_F(MemoTest, MemosStayInTheFileUntilTheyAreRead) {
    const auto limit = std::exchange(dao::engineSettings().mostResultBytes, 100'000);
    const auto rows = variables();
    const QString large(80'000, u'ä');
    for (rows->MoveFirst(); !rows->Eof(); rows->MoveNext())
        set(*rows, u"graph"_s, Value(large));
    const auto read = variables();
    read->MoveLast();
    EXPECT_EQ(read->text(u"graph"_s), large);
    read->FindFirst(u"graph LIKE 'ä*ä' AND place = 2"_s);
    EXPECT_FALSE(read->NoMatch());
    EXPECT_EQ(errorOf([&] { database_->OpenRecordset(u"SELECT * FROM v"_s, dao::dbOpenSnapshot); }), 3035)
        << "a snapshot holds what it was opened on";
    dao::engineSettings().mostResultBytes = limit;
}

TEST_F(MemoTest, ColumnsThatNobodyAskedForAreNotRead) {
    database_->Execute(u"UPDATE v SET graph = '%1'"_s.arg(QString(80'000, u'ä')));
    const auto limit = std::exchange(dao::engineSettings().mostResultBytes, 100'000);
    const QString statement = u"SELECT * FROM v WHERE graph LIKE '*ä*' ORDER BY place DESC;"_s;
    const auto names = [](dao::Recordset& rows) {
        QStringList all;
        for (rows.MoveFirst(); !rows.Eof(); rows.MoveNext())
            all << rows.text(u"Name"_s);
        return all.join(u',');
    };
    const auto rows = database_->OpenColumns(statement, {u"PLACE"_s, u"name"_s, u"Name"_s});
    ASSERT_EQ(rows->Fields().size(), 2u);
    EXPECT_EQ(rows->Fields()[0].Name, u"place"_s);
    EXPECT_EQ(names(*rows), u"V1,V2,V3,V4"_s);
    EXPECT_FALSE(rows->Updatable());
    database_->Execute(u"DELETE FROM v WHERE name = 'V2'"_s);
    EXPECT_EQ(names(*rows), u"V1,V2,V3,V4"_s);
    rows->Requery();
    EXPECT_EQ(names(*rows), u"V1,V3,V4"_s);
    EXPECT_EQ(errorOf([&] { database_->OpenColumns(statement, {u"name"_s, u"graph"_s}); }), 3035);
    EXPECT_EQ(errorOf([&] { database_->OpenColumns(statement, {u"nobody"_s}); }), 3061);
    dao::engineSettings().mostResultBytes = limit;
}

TEST_F(MemoTest, AMemoIsReadAsTheFileHasItByThen) {
    const auto rows = variables();
    EXPECT_EQ(graphs(*rows), u"graph 4,~,graph 2,graph 1"_s);
    database_->Execute(u"UPDATE v SET graph = 'new' WHERE name = 'V4'"_s);
    EXPECT_EQ(graphs(*rows), u"new,~,graph 2,graph 1"_s);

    workspace().BeginTrans();
    rows->FindFirst(u"name = 'V1'"_s);
    set(*rows, u"graph"_s, Value(u"never"_s));
    EXPECT_EQ(rows->text(u"graph"_s), u"never"_s);
    workspace().Rollback();
    EXPECT_EQ(rows->text(u"graph"_s), u"graph 1"_s);

    rows->Edit();
    rows->setValue(u"layout"_s, Value(u"l"_s));
    EXPECT_EQ(rows->text(u"graph"_s), u"graph 1"_s) << "beside a field in edit";
    rows->Update();
    rows->FindFirst(u"graph Is Null"_s);
    EXPECT_EQ(rows->text(u"name"_s), u"V3"_s);
    for (int again = 0; again < 5; ++again) { // from an index in the end
        rows->FindFirst(u"graph = 'GRAPH 2'"_s);
        EXPECT_EQ(rows->text(u"name"_s), u"V2"_s);
    }
    rows->setSort(u"graph DESC"_s);
    EXPECT_EQ(graphs(*rows->OpenRecordset()), u"new,graph 2,graph 1,~"_s);
}

TEST_F(MemoTest, AMemoOfARowThatIsGoneIsAnErrorNeverAnothersContent) {
    const auto rows = variables();
    rows->FindFirst(u"name = 'V4'"_s);
    database_->Execute(u"DELETE FROM v WHERE name = 'V4'"_s);
    EXPECT_EQ(rows->text(u"name"_s), u"V4"_s);
    EXPECT_EQ(errorOf([&] { rows->value(u"graph"_s); }), 3167);
    EXPECT_TRUE(rows->value(u"layout"_s).isNull()) << "was Null when the row was read";
    // The file gives the number of the last row to the next new one.
    database_->Execute(u"INSERT INTO v (name, place, graph) VALUES ('V5', 1, 'another')"_s);
    EXPECT_EQ(errorOf([&] { rows->value(u"graph"_s); }), 3167);

    rows->FindFirst(u"name = 'V1'"_s);
    database_->Close();
    EXPECT_EQ(rows->text(u"name"_s), u"V1"_s);
    EXPECT_EQ(errorOf([&] { rows->value(u"graph"_s); }), 3420);
}

TEST_F(MemoTest, WithoutAKeyThatTellsRowsApartAMemoIsReadWithItsRow) {
    const auto keyless = database_->CreateTableDef(u"k"_s);
    keyless->Fields = {{u"name"_s, dao::dbText}, {u"graph"_s, dao::dbMemo}};
    database_->TableDefs().Append(keyless);
    database_->Execute(u"INSERT INTO k (name, graph) SELECT name, graph FROM v"_s);
    for (const QString& statement :
         {u"SELECT * FROM k WHERE true ORDER BY name"_s, u"SELECT place, graph FROM v WHERE true ORDER BY name"_s}) {
        const auto rows = database_->OpenRecordset(statement);
        rows->MoveLast();
        for (const QString& table : {u"k"_s, u"v"_s}) {
            database_->Execute(u"DELETE FROM %1 WHERE name = 'V4'"_s.arg(table));
            // Takes the number of the row that is gone.
            database_->Execute(u"INSERT INTO %1 (name, graph) VALUES ('V5', 'another')"_s.arg(table));
        }
        EXPECT_EQ(rows->text(u"graph"_s), u"graph 4"_s) << statement.toStdString();
        for (const QString& table : {u"k"_s, u"v"_s})
            database_->Execute(u"UPDATE %1 SET name = 'V4', graph = 'graph 4' WHERE name = 'V5'"_s.arg(table));
    }
}
