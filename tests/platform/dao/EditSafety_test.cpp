#include "platform/dao/EngineFixture.h"
#include "platform/dao/Transaction.h"
#include "support/FullDisk.h"

#include <QDir>
#include <QFileInfo>
#include <fcntl.h>
#include <functional>
#include <limits>
#include <sqlite3.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using dao::Value;

namespace {

/// What must not end in a lost edit, an edit of another entry, or a wrong sum.
class EditSafetyTest : public EngineTest {
protected:
    EditSafetyTest() : database_(create(u"a.mdb"_s)) {
        addTable(*database_, u"entry"_s, {{u"k"_s, dao::dbText}, {u"v"_s, dao::dbText}});
        for (const QString& key : {u"a"_s, u"b"_s, u"c"_s})
            database_->Execute(u"INSERT INTO entry (k, v) VALUES ('%1', 'old')"_s.arg(key));
        addTable(*database_, u"n"_s, {{u"id"_s, dao::dbLong}, {u"x"_s, dao::dbDouble}, {u"memo"_s, dao::dbMemo}});
        for (int id = 1; id <= 3; ++id)
            database_->Execute(u"INSERT INTO n (id, x) VALUES (%1, %1)"_s.arg(id));
    }

    void runAsStranger(const QByteArray& sql) const {
        sqlite3* handle = nullptr;
        sqlite3_open(path(u"a.mdb"_s).toUtf8().constData(), &handle);
        EXPECT_EQ(sqlite3_exec(handle, sql.constData(), nullptr, nullptr, nullptr), SQLITE_OK) << sql.constData();
        sqlite3_close(handle);
    }

    /// Loaded rows and a table that waits in its file.
    std::vector<dao::RecordsetPtr> bothWays(const QString& table) {
        return {database_->OpenRecordset(u"SELECT * FROM %1 WHERE true"_s.arg(table)), database_->OpenRecordset(table)};
    }

    void set(dao::Recordset& rows, const QString& field, const Value& value) {
        rows.Edit();
        rows.setValue(field, value);
        rows.Update();
    }

    dao::DatabasePtr database_;
};

} // namespace

TEST_F(EditSafetyTest, AnEditBeginsWithWhatAnotherRecordsetHasWritten) {
    for (const auto& rows : bothWays(u"entry"_s)) {
        (void)rows->value(u"v"_s);
        database_->Execute(u"UPDATE entry SET v = 'newer' WHERE k = 'a'"_s);
        rows->Edit();
        EXPECT_EQ(rows->value(u"v"_s), Value(u"newer"_s));
        database_->Execute(u"UPDATE entry SET v = 'old'"_s);
        rows->CancelUpdate();
    }
}

TEST_F(EditSafetyTest, ARowNumberThatAnotherEntryHasTakenIsNotTheRowAnyMore) {
    for (const QString& successor : {u"d"_s, u"e"_s}) {
        for (const auto& rows : bothWays(u"entry"_s)) {
            rows->MoveLast();
            const QString last = rows->text(u"k"_s);
            database_->Execute(u"DELETE FROM entry WHERE k = '%1'"_s.arg(last));
            EXPECT_EQ(errorOf([&] { rows->Delete(); }), 3167);
            database_->Execute(u"INSERT INTO entry (k, v) VALUES ('%1', 'other')"_s.arg(successor));
            EXPECT_EQ(errorOf([&] { rows->Edit(); }), 3167);
            EXPECT_EQ(errorOf([&] { rows->Delete(); }), 3167);
            EXPECT_EQ(EngineTest::rows(*database_, u"SELECT k, v FROM entry ORDER BY k"_s),
                      u"a,old;b,old;%1,other"_s.arg(successor));
            database_->Execute(u"UPDATE entry SET k = 'c' WHERE k = '%1'"_s.arg(successor));
        }
    }
}

TEST_F(EditSafetyTest, BookmarksFindTheRowAfterDeletionsAndChangedKeys) {
    for (const auto& rows : bothWays(u"entry"_s)) {
        rows->MoveLast();
        rows->Delete();
        rows->AddNew();
        rows->setValue(u"k"_s, Value(u"z"_s));
        rows->Update();
        rows->setBookmark(rows->LastModified());
        EXPECT_EQ(rows->value(u"k"_s), Value(u"z"_s));
    }
    const auto rows = database_->OpenRecordset(u"SELECT * FROM n WHERE id > 0"_s);
    set(*rows, u"id"_s, Value(10));
    rows->setBookmark(rows->LastModified());
    EXPECT_EQ(rows->value(u"id"_s), Value(10));
    rows->setBookmark(2);
    EXPECT_EQ(rows->value(u"id"_s), Value(2));
}

TEST_F(EditSafetyTest, TheFirstRowOfAnEmptyTableIsReachedByMovingOn) {
    database_->Execute(u"DELETE FROM n"_s);
    for (const QString& emptied : {u"before the table was opened"_s, u"through its recordset"_s}) {
        const auto rows = database_->OpenRecordset(u"n"_s);
        while (rows->RecordCount() > 0) {
            rows->MoveFirst();
            rows->Delete();
        }
        for (int id = 1; id <= 2; ++id) {
            rows->AddNew();
            rows->setValue(u"id"_s, Value(id));
            rows->Update();
        }
        rows->MoveNext();
        EXPECT_EQ(rows->value(u"id"_s), Value(1)) << emptied.toStdString();
    }
}

TEST_F(EditSafetyTest, AfterATransactionThatFailedEditsAreKept) {
    for (const int megabytes : {1, 8}) { // fails when it is committed; when the row is written
        const auto rows = database_->OpenRecordset(u"SELECT * FROM n WHERE id = 1"_s);
        workspace().BeginTrans();
        {
            const FullDisk full(QFileInfo(path(u"a.mdb"_s)).size());
            const int written = errorOf([&] { set(*rows, u"memo"_s, Value(QString(megabytes << 20, u'x'))); });
            EXPECT_EQ(written, megabytes == 1 ? 0 : 3026);
            if (written != 0) {
                EXPECT_EQ(errorOf([&] { database_->Execute(u"UPDATE n SET x = 7"_s); }), 3026);
                EXPECT_EQ(errorOf([&] { workspace().BeginTrans(); }), 3026);
            }
            EXPECT_EQ(errorOf([&] { workspace().CommitTrans(); }), 3026);
        }
        EXPECT_EQ(errorOf([&] { workspace().Rollback(); }), 3034) << "it is over";
        database_->Execute(u"UPDATE n SET x = %1 WHERE id = 1"_s.arg(megabytes * 100));
        database_->Close();
        database_ = open(u"a.mdb"_s);
        EXPECT_EQ(EngineTest::rows(*database_, u"SELECT x, memo FROM n WHERE id = 1"_s),
                  u"%1,~"_s.arg(megabytes * 100));
    }
    workspace().BeginTrans();
    database_->Close();
    database_ = open(u"a.mdb"_s);
    database_->Execute(u"UPDATE n SET x = 5"_s);
    database_->Close();
    EXPECT_EQ(EngineTest::rows(*open(u"a.mdb"_s), u"SELECT x FROM n"_s), u"5;5;5"_s)
        << "a transaction that was closed and never ended is over";
}

TEST_F(EditSafetyTest, OnlyADiskThatIsFullIsCalledFullAndByTheFolderThatIsMeant) {
    const QString content(1000, u'x');
    workspace().BeginTrans();
    for (int id = 4; id < 4000; ++id)
        database_->Execute(u"INSERT INTO n (id, memo) VALUES (%1, '%2')"_s.arg(id).arg(content));
    workspace().CommitTrans();
    {
        const FullDisk full(1 << 16);
        QString words;
        try {
            EngineTest::rows(*database_, u"SELECT memo FROM n ORDER BY memo & id DESC"_s);
        } catch (const dao::Error& error) {
            words = error.description();
        }
        EXPECT_TRUE(words.startsWith(u"Not enough space on disk in '/"_s)) << words.toStdString();
    }

    // A limit that is far away, and a file that can't be written for another reason.
    const FullDisk roomy(1 << 30);
    const QByteArray file = path(u"a.mdb"_s).toUtf8();
    workspace().BeginTrans();
    database_->Execute(u"UPDATE n SET x = 7"_s);
    const int toRead = ::open(file.constData(), O_RDONLY);
    for (const QString& name : QDir(u"/proc/self/fd"_s).entryList(QDir::Files | QDir::System))
        if (name.toInt() != toRead && QFile::symLinkTarget(u"/proc/self/fd/"_s + name) == path(u"a.mdb"_s))
            dup2(toRead, name.toInt());
    EXPECT_EQ(errorOf([&] { workspace().CommitTrans(); }), 3043);
    ::close(toRead);
}

// What is closed while the failure ends a scope may still be in use, and adds its own.
TEST_F(EditSafetyTest, AFullDiskIsWhatIsToldWhenAFileOfTheTransactionCannotBeLetGo) {
    auto companion = database_->openCompanion(path(u"cases.mdb"_s));
    const auto table = database_->CreateTableDef(u"c"_s);
    table->Fields = {{u"x"_s, dao::dbMemo}};
    companion->createTable(*table);
    const auto appender = companion->openAppender(u"c"_s, {u"x"_s});
    const auto rows = database_->OpenRecordset(u"SELECT * FROM n WHERE id = 1"_s);
    {
        const dao::Transaction transaction;
        const FullDisk full(QFileInfo(path(u"a.mdb"_s)).size());
        EXPECT_EQ(errorOf([&] { set(*rows, u"memo"_s, Value(QString(8 << 20, u'x'))); }), 3026);
    }
    companion.reset();
    const dao::Errors& told = dao::DBEngine::instance().errors();
    ASSERT_EQ(told.Count(), 1);
    EXPECT_EQ(told.Item(0).number, 3026);
}

TEST_F(EditSafetyTest, ACommitThatMeetsALockMayBeTriedAgain) {
    sqlite3* reader = nullptr;
    sqlite3_open(path(u"a.mdb"_s).toUtf8().constData(), &reader);
    workspace().BeginTrans();
    database_->Execute(u"UPDATE n SET x = 7"_s);
    sqlite3_exec(reader, "BEGIN; SELECT * FROM n", nullptr, nullptr, nullptr);
    EXPECT_EQ(errorOf([&] { workspace().CommitTrans(); }), 3260);
    sqlite3_close(reader);
    workspace().CommitTrans();
    EXPECT_EQ(EngineTest::rows(*database_, u"SELECT x FROM n"_s), u"7;7;7"_s);
}

/// Rows in memory are searched as they are in the file by now, but for a snapshot.
TEST_F(EditSafetyTest, ASearchFindsWhatOthersHaveWrittenSince) {
    const auto rows = database_->OpenRecordset(u"SELECT * FROM entry WHERE true"_s);
    const auto snapshot = database_->OpenRecordset(u"SELECT * FROM entry"_s, dao::dbOpenSnapshot);
    const auto found = [](dao::Recordset& searched, const QString& criteria) {
        searched.FindFirst(criteria);
        return searched.NoMatch() ? u"none"_s : searched.value(u"k"_s).toText();
    };
    EXPECT_EQ(found(*rows, u"v = 'new'"_s), u"none"_s);
    database_->Execute(u"UPDATE entry SET v = 'new' WHERE k = 'b'"_s);
    EXPECT_EQ(found(*rows, u"v = 'new'"_s), u"b"_s);
    EXPECT_EQ(found(*snapshot, u"v = 'new'"_s), u"none"_s);
    runAsStranger("UPDATE entry SET v = 'newer' WHERE rowid = 3");
    EXPECT_EQ(found(*rows, u"v = 'newer'"_s), u"c"_s);
    set(*rows, u"v"_s, u"mine"_s);
    EXPECT_EQ(found(*rows, u"v = 'newer'"_s), u"none"_s);
    const auto other = database_->OpenRecordset(u"entry"_s);
    set(*other, u"v"_s, u"first"_s);
    for (int search = 0; search < 5; ++search) // by walking first, then by an index
        EXPECT_EQ(found(*rows, u"v = 'first'"_s), u"a"_s);
    other->Delete();
    for (int search = 0; search < 5; ++search)
        EXPECT_EQ(found(*rows, u"v = 'first'"_s), u"none"_s);
    workspace().BeginTrans();
    database_->Execute(u"UPDATE entry SET v = 'lost' WHERE k = 'b'"_s);
    EXPECT_EQ(found(*rows, u"v = 'lost'"_s), u"b"_s);
    workspace().Rollback();
    EXPECT_EQ(found(*rows, u"v = 'lost'"_s), u"none"_s);
    EXPECT_EQ(found(*rows, u"v = 'new'"_s), u"b"_s);

    workspace().BeginTrans();
    database_->Execute(u"DELETE FROM entry WHERE k = 'b'"_s);
    EXPECT_EQ(found(*rows, u"v = 'new'"_s), u"none"_s);
    workspace().Rollback();
    EXPECT_EQ(found(*rows, u"v = 'new'"_s), u"b"_s);
    database_->Execute(u"UPDATE entry SET k = 'z' WHERE k = 'b'"_s);
    EXPECT_EQ(found(*rows, u"v = 'new'"_s), u"none"_s);
    database_->Execute(u"UPDATE entry SET k = 'b' WHERE k = 'z'"_s);
    EXPECT_EQ(found(*rows, u"v = 'new'"_s), u"b"_s);
    set(*rows, u"v"_s, u"edited"_s);
    EXPECT_EQ(EngineTest::rows(*database_, u"SELECT v FROM entry WHERE k = 'b'"_s), u"edited"_s);

    const auto withoutKey = database_->OpenRecordset(u"SELECT v FROM entry WHERE true"_s);
    database_->Execute(u"DELETE FROM entry WHERE k = 'c'"_s);
    withoutKey->FindFirst(u"v = 'newer'"_s);
    EXPECT_TRUE(withoutKey->NoMatch());
    database_->Execute(u"INSERT INTO entry (k, v) VALUES ('d', 'other')"_s);
    withoutKey->FindFirst(u"v = 'other'"_s);
    EXPECT_TRUE(withoutKey->NoMatch()) << "another entry has taken the row's number";
}

TEST_F(EditSafetyTest, OthersMayWriteWhileRowsOfALinkedFileAreCounted) {
    createCases(u"cases.mdb"_s, u"t"_s, 20000);
    addLink(*database_, u"t"_s, path(u"cases.mdb"_s));
    EngineTest::rows(*database_,
                     u"SELECT Count(*) FROM t WHERE V1 > 5"_s); // what the field holds is known from here on
    const auto whole = database_->OpenRecordset(u"t"_s);
    int calls = 0;
    dao::DBEngine::instance().setProgress([&] {
        ++calls;
        runAsStranger("UPDATE n SET x = 4 WHERE id = 3");
        return false;
    });
    const std::function<void()> reads[] = {
        [&] { EngineTest::rows(*database_, u"SELECT Count(*) FROM t WHERE V1 > 5"_s); },
        [&] { database_->OpenRecordset(u"SELECT * FROM t WHERE V1 > 19990"_s); },
        [&] { database_->OpenRecordset(u"SELECT * FROM t ORDER BY V1"_s)->value(0); },
        [&] { whole->FindFirst(u"V1 = -1"_s); },
        [&] { whole->MoveNext(); },
    };
    for (const auto& read : reads) {
        calls = 0;
        read();
        EXPECT_GT(calls, 0) << &read - reads;
    }
}

/// The values of x: 5, 10, 8.5 in three spellings that only a stranger's file has, and what is no number.
TEST_F(EditSafetyTest, AValueInANumberFieldIsComparedByWhatItIs) {
    runAsStranger("CREATE TABLE s (id INTEGER PRIMARY KEY, x DOUBLE, yes BOOLEAN);"
                  "INSERT INTO s VALUES (1, 5, 0), (2, 'abc', 0), (3, x'3939', 'abc'), (4, 10, -1), (5, NULL, 0),"
                  "(6, '8,5', 0), (7, 'ABC', 0), (8, '8.5', 0)");
    const std::pair<QString, QString> cases[] = {
        {u"SELECT id FROM s WHERE x > 6 ORDER BY id"_s, u"4;6;8"_s},
        {u"SELECT id FROM s WHERE x < 9 ORDER BY id"_s, u"1;6;8"_s},
        {u"SELECT id FROM s WHERE Not x <= 6 ORDER BY id"_s, u"2;3;4;6;7;8"_s},
        {u"SELECT id FROM s WHERE x <> 5 ORDER BY id"_s, u"2;3;4;6;7;8"_s},
        {u"SELECT id FROM s WHERE x Between 6 And 99 ORDER BY id"_s, u"4;6;8"_s},
        {u"SELECT id FROM s WHERE x In (5, 8.5) ORDER BY id"_s, u"1;6;8"_s},
        {u"SELECT id FROM s WHERE x In (SELECT x FROM s WHERE id = 8)"_s, u"6;8"_s},
        {u"SELECT id FROM s WHERE x = 'Abc' ORDER BY id"_s, u"2;7"_s},
        {u"SELECT id FROM s WHERE x = '10'"_s, u"4"_s},
        {u"SELECT id FROM s WHERE x > '6' ORDER BY id"_s, u"4;6;8"_s},
        {u"SELECT id FROM s WHERE x < '6'"_s, u"1"_s},
        {u"SELECT id FROM s WHERE x Between '6' And '99' ORDER BY id"_s, u"4;6;8"_s},
        {u"SELECT id FROM s WHERE x In ('5', '10') ORDER BY id"_s, u"1;4"_s},
        {u"SELECT id FROM s WHERE yes = 0 ORDER BY id"_s, u"1;2;5;6;7;8"_s},
        {u"SELECT a.id FROM s AS a INNER JOIN s AS b ON a.x = b.x WHERE b.id = 6 ORDER BY a.id"_s, u"6;8"_s},
        {u"SELECT Count(id) FROM s WHERE x < 99 GROUP BY x ORDER BY x"_s, u"1;2;1"_s},
        {u"SELECT Max(x), Min(x) FROM s WHERE x > 0 And id <> 4"_s, u"8,5,5"_s},
        {u"SELECT id FROM s WHERE x > 0 ORDER BY x DESC, id"_s, u"4;6;8;1"_s},
        {u"SELECT Count(*) FROM (SELECT DISTINCT x FROM s)"_s, u"6"_s},
        {u"SELECT Count(*) FROM (SELECT * FROM s) AS q WHERE q.x > 6"_s, u"3"_s},
        {u"SELECT Count(*) FROM (SELECT x FROM s UNION SELECT x FROM s)"_s, u"6"_s},
        {u"SELECT id, Nz(x) FROM s WHERE id = 5"_s, u"5,0"_s},
    };
    for (const auto& [statement, expected] : cases)
        EXPECT_EQ(EngineTest::rows(*database_, statement), expected) << statement.toStdString();
    const std::pair<QString, int> firsts[] = {{u"x > 6"_s, 4},
                                              {u"x = '10'"_s, 4},
                                              {u"x > '6'"_s, 4},
                                              {u"x < '6'"_s, 1},
                                              {u"x Between '6' And '99'"_s, 4},
                                              {u"x In ('5', '10')"_s, 1}};
    for (const auto& rows : bothWays(u"s"_s)) {
        for (const auto& [criteria, first] : firsts) {
            rows->FindFirst(criteria);
            EXPECT_EQ(rows->NoMatch() ? Value() : rows->value(0), Value(first)) << criteria.toStdString();
        }
    }
    EXPECT_EQ(errorOf([&] { database_->Execute(u"INSERT INTO n (x) SELECT x FROM s WHERE id = 2"_s); }), 13);
    EXPECT_EQ(
        errorOf([&] { database_->Execute(u"INSERT INTO n SELECT id + 10, x, Null FROM (SELECT * FROM s) AS q"_s); }),
        13);
}

/// What was found in a field holds until it may have changed.
TEST_F(EditSafetyTest, ANumberFieldIsLookedAtAgainWhenItMayHaveChanged) {
    const auto above = [this](const QString& table) {
        return EngineTest::rows(*database_, u"SELECT Count(*) FROM %1 WHERE x > 6"_s.arg(table));
    };
    runAsStranger("CREATE TABLE s (id INTEGER PRIMARY KEY, x DOUBLE); INSERT INTO s VALUES (1, 7), (2, 1)");
    EXPECT_EQ(above(u"s"_s), u"1"_s);
    runAsStranger("UPDATE s SET x = 'abc' WHERE id = 2");
    EXPECT_EQ(above(u"s"_s), u"1"_s);
    runAsStranger("UPDATE s SET x = 'other' WHERE id = 2");
    workspace().BeginTrans();
    database_->Execute(u"DELETE FROM s WHERE id = 2"_s);
    EXPECT_EQ(above(u"s"_s), u"1"_s);
    workspace().Rollback();
    EXPECT_EQ(above(u"s"_s), u"1"_s);
    runAsStranger("CREATE TABLE r (id INTEGER PRIMARY KEY, x DOUBLE CHECK (\"x\" < ''));"
                  "PRAGMA ignore_check_constraints = ON; INSERT INTO r VALUES (1, 7), (2, 'abc')");
    EXPECT_EQ(above(u"r"_s), u"1"_s) << "a rule of the table may have been ignored";
    for (const QByteArray number : {"9e999", "-9e999"}) {
        runAsStranger("UPDATE s SET x = " + number + " WHERE id = 2");
        EXPECT_EQ(errorOf([&] { above(u"s"_s); }), 6);
        for (const auto& rows : bothWays(u"s"_s))
            EXPECT_EQ(errorOf([&] { rows->FindFirst(u"x = 8"_s); }), 6);
    }
    const auto appender = database_->openAppender(u"n"_s, {u"x"_s});
    EXPECT_EQ(errorOf([&] { appender->setNumber(0, std::numeric_limits<double>::infinity()); }), 6);
}

TEST_F(EditSafetyTest, NothingButNumbersIsSummed) {
    struct {
        QByteArray content; // of x in row 3, beside 1 and 2
        QString sum;
        QString average;
        int error;
    } const cases[] = {
        {"3", u"6"_s, u"2"_s, 0},      {"0.5", u"3,5"_s, u"1,16666666666667"_s, 0},
        {"NULL", u"3"_s, u"1,5"_s, 0}, {"'12abc'", {}, {}, 3464},
        {"'abc'", {}, {}, 3464},       {"x'31'", {}, {}, 3464},
        {"9e999", {}, {}, 6},
    };
    runAsStranger("CREATE TABLE m (id INTEGER PRIMARY KEY, x DOUBLE); INSERT INTO m SELECT id, x FROM n");
    for (const auto& [content, sum, average, error] : cases) {
        runAsStranger("UPDATE m SET x = " + content + " WHERE id = 3");
        for (const auto& [function, expected] : {std::pair(u"Sum"_s, sum), std::pair(u"Avg"_s, average)}) {
            const QString statement = u"SELECT %1(x) FROM m"_s.arg(function);
            QString found;
            EXPECT_EQ(errorOf([&] { found = EngineTest::rows(*database_, statement); }), error) << content.constData();
            EXPECT_EQ(found, expected) << content.constData();
        }
        EXPECT_EQ(errorOf([&] { EngineTest::rows(*database_, u"SELECT x FROM m"_s); }), error == 6 ? 6 : 0);
    }
    EXPECT_EQ(EngineTest::rows(*database_, u"SELECT Sum(x), Avg(x) FROM n WHERE false"_s), u"~,~"_s);
    const auto appender = database_->openAppender(u"n"_s, {u"id"_s, u"x"_s});
    EXPECT_EQ(errorOf([&] { appender->setText(1, u"12abc"_s); }), 3421);
    appender->setText(0, u"4"_s);
    appender->setText(1, u"1,5"_s);
    appender->appendRow();
    EXPECT_EQ(EngineTest::rows(*database_, u"SELECT Sum(x) FROM n WHERE id = 4"_s), u"1,5"_s);
}

/// What additions round off decides on which side of a half a weighted count lies.
TEST_F(EditSafetyTest, ASumLosesNothingOfItsTerms) {
    runAsStranger("CREATE TABLE w (g LONG, x DOUBLE);"
                  "WITH RECURSIVE c(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM c WHERE i < 205)"
                  " INSERT INTO w SELECT 1, 1.7 FROM c;"
                  "INSERT INTO w SELECT 2, 1.3 FROM w LIMIT 75;"
                  "INSERT INTO w VALUES (3, 1e16), (3, 1), (3, -1e16)");
    const auto found = database_->OpenRecordset(u"SELECT Sum(x), Avg(x) FROM w GROUP BY g ORDER BY g"_s);
    for (const auto& [sum, average] : {std::pair(348.5, 1.7), {97.5, 1.3}, {1.0, 1.0 / 3}}) {
        EXPECT_EQ(found->value(0).toDouble(), sum);
        EXPECT_EQ(found->value(1).toDouble(), average);
        found->MoveNext();
    }
}

TEST_F(EditSafetyTest, DatesBytesAndRulesAreReadAsTheyAre) {
    runAsStranger("CREATE TABLE s(b BLOB, c LONG CHECK (c > 0), d DATE);"
                  "INSERT INTO s VALUES (x'00ff', 1, '2024-03-04'), (x'00ff', 2, '2024-04-03T14:05:00')");
    EXPECT_EQ(EngineTest::rows(*database_, u"SELECT c FROM s WHERE d = #3/4/2024#"_s), u"1"_s);
    EXPECT_EQ(EngineTest::rows(*database_, u"SELECT c FROM s WHERE d = #2024-03-04#"_s), u"1"_s);
    EXPECT_EQ(EngineTest::rows(*database_, u"SELECT c FROM s WHERE d = #4/3/2024 14:05#"_s), u"2"_s);
    for (const QString& date : {u"13/4/2024"_s, u"2024-02-30"_s, u"4.3.2024"_s, u"abc"_s})
        EXPECT_EQ(errorOf([&] { database_->OpenRecordset(u"SELECT c FROM s WHERE d = #%1#"_s.arg(date)); }), 3075);

    const auto bytes = database_->OpenRecordset(u"SELECT b FROM s UNION SELECT b FROM s"_s, dao::dbOpenSnapshot);
    EXPECT_EQ(bytes->RecordCount(), 1);
    EXPECT_EQ(bytes->value(0), Value(QByteArray("\x00\xff", 2)));
    EXPECT_EQ(errorOf([&] { database_->Execute(u"UPDATE s SET c = -1"_s); }), 3317);

    runAsStranger("CREATE TABLE sized (id INTEGER PRIMARY KEY, t VARCHAR(3)); INSERT INTO sized VALUES (1, 'abcd')");
    for (const QString& value : {u"'abcd'"_s, u"1234"_s, u"(SELECT t FROM sized)"_s})
        EXPECT_EQ(errorOf([&] { database_->Execute(u"UPDATE sized SET t = "_s + value); }), 3163)
            << value.toStdString();
    EXPECT_EQ(errorOf([&] { database_->Execute(u"INSERT INTO sized VALUES (2, 'abcd')"_s); }), 3163);
    database_->Execute(u"INSERT INTO sized (id, t) VALUES (2, 'äöü')"_s);
    EXPECT_EQ(EngineTest::rows(*database_, u"SELECT t FROM sized"_s), u"abcd;äöü"_s);

    QDir().mkpath(path(u"a;b"_s));
    createCases(u"a;b/c.mdb"_s, u"t"_s, 1);
    addLink(*database_, u"t"_s, path(u"a;b/c.mdb"_s));
    EXPECT_EQ(EngineTest::rows(*database_, u"SELECT V1 FROM t"_s), u"1"_s);
}
