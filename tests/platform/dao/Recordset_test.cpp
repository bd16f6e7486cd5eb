#include "platform/dao/EngineFixture.h"

using namespace Qt::StringLiterals;
using dao::Value;

namespace {

/// A table `t` of entries: counter, name (20 characters), number, memo, yes/no.
class RecordsetTest : public EngineTest {
protected:
    RecordsetTest() {
        database_ = create(u"catalogue.mdb"_s);
        addTable(*database_, u"t"_s,
                 {{u"id"_s, dao::dbLong, 0, dao::dbAutoIncrField},
                  {u"name"_s, dao::dbText, 20},
                  {u"number"_s, dao::dbDouble},
                  {u"memo"_s, dao::dbMemo},
                  {u"yes"_s, dao::dbBoolean}});
    }

    void fill(int rows) {
        const auto appender = database_->openAppender(u"t"_s, {u"name"_s, u"number"_s, u"memo"_s});
        workspace().BeginTrans();
        for (int i = 1; i <= rows; ++i) {
            appender->setText(0, u"Entry %1"_s.arg(i));
            appender->setNumber(1, i * 1.5);
            if (i % 3 != 0)
                appender->setText(2, QString(i, u'ä'));
            appender->appendRow();
        }
        workspace().CommitTrans();
    }

    dao::RecordsetPtr openTable(int type = dao::dbOpenDynaset) { return database_->OpenRecordset(u"t"_s, type); }

    dao::DatabasePtr database_;
};

} // namespace

TEST_F(RecordsetTest, FieldTypesAndValuesSurviveTheFile) {
    fill(3);
    for (const int type : {dao::dbOpenTable, dao::dbOpenDynaset, dao::dbOpenSnapshot}) {
        const auto rows = openTable(type);
        std::vector<int> types;
        for (const dao::Field& field : rows->Fields())
            types.push_back(field.Type);
        EXPECT_EQ(types, (std::vector<int>{dao::dbLong, dao::dbText, dao::dbDouble, dao::dbMemo, dao::dbBoolean}));
        EXPECT_EQ(rows->Fields()[0].Attributes, dao::dbAutoIncrField);
        EXPECT_EQ(rows->Fields()[1].Size, 20);
        rows->MoveNext();
        EXPECT_EQ(rows->value(u"NUMBER"_s), Value(3.0)) << "a whole number in a Double column stays a Double";
        EXPECT_EQ(rows->value(u"memo"_s), Value(u"ää"_s));
        EXPECT_EQ(rows->value(u"t.name"_s), Value(u"Entry 2"_s));
        rows->MoveLast();
        EXPECT_TRUE(rows->value(u"memo"_s).isNull());
        EXPECT_EQ(rows->value(u"yes"_s), Value(0));
        EXPECT_EQ(errorOf([&] { rows->value(u"nothing"_s); }), 3265);
    }
}

TEST_F(RecordsetTest, EveryTypeWalksAlike) {
    fill(5);
    for (const int type : {dao::dbOpenTable, dao::dbOpenDynaset, dao::dbOpenSnapshot}) {
        const auto rows = openTable(type);
        EXPECT_EQ(rows->RecordCount(), 5);
        EXPECT_FALSE(rows->Bof() || rows->Eof());
        rows->MoveLast();
        EXPECT_EQ(rows->value(0), Value(5));
        rows->MoveFirst();
        EXPECT_EQ(rows->AbsolutePosition(), 0);
        rows->MovePrevious();
        EXPECT_TRUE(rows->Bof());
        EXPECT_EQ(errorOf([&] { rows->value(0); }), 3021);
        EXPECT_EQ(errorOf([&] { rows->MovePrevious(); }), 3021);
        EXPECT_EQ(dao::DBEngine::instance().errors().Count(), 1) << "the list holds the last operation's errors";
        rows->MoveNext();
        rows->Move(3);
        EXPECT_EQ(rows->value(0), Value(4));
        rows->Move(7);
        EXPECT_TRUE(rows->Eof());
        EXPECT_EQ(errorOf([&] { rows->MoveNext(); }), 3021);
        rows->MovePrevious();
        EXPECT_EQ(rows->value(0), Value(5));
    }
    const auto nothing = database_->OpenRecordset(u"SELECT * FROM t WHERE id > 99"_s);
    EXPECT_TRUE(nothing->Bof() && nothing->Eof());
    EXPECT_EQ(nothing->RecordCount(), 0);
    EXPECT_EQ(errorOf([&] { nothing->MoveFirst(); }), 3021);
}

TEST_F(RecordsetTest, AWholeTableIsNotReadBeforeSomebodyWalksThroughIt) {
    fill(200);
    QStringList statements;
    dao::DBEngine::instance().setTrace([&](const QString&, const QString& sql) { statements += sql; });
    for (const QString& source : {u"t"_s, u"SELECT * FROM t"_s, u"SELECT * FROM t ORDER BY number DESC;"_s}) {
        statements.clear();
        const auto rows = database_->OpenRecordset(source);
        EXPECT_EQ(rows->RecordCount(), 200);
        rows->MoveLast();
        rows->MoveFirst();
        rows->FindFirst(u"name = 'ENTRY 77' AND number > 1"_s);
        EXPECT_FALSE(rows->NoMatch());
        EXPECT_EQ(rows->value(u"id"_s), Value(77));
        rows->FindFirst(u"name = 'Entry 777'"_s);
        EXPECT_TRUE(rows->NoMatch());
        EXPECT_EQ(rows->value(u"id"_s), Value(77)) << "without a match the current row stays";
        for (const QString& sql : statements)
            EXPECT_TRUE(sql.contains(u"LIMIT 1"_s) || sql.contains(u"count(*)"_s)) << sql.toStdString();
        rows->MoveNext();
        EXPECT_EQ(rows->value(u"id"_s), source.contains(u"DESC"_s) ? Value(76) : Value(78));
        EXPECT_EQ(rows->RecordCount(), 200);
    }
}

TEST_F(RecordsetTest, FindFirstFindsTheSameInMemoryAndInTheFile) {
    fill(100);
    database_->Execute(u"UPDATE t SET memo = '1,5' WHERE id = 50"_s);
    struct {
        QString criteria;
        int id; // 0: none
    } const cases[] = {
        {u"number = 15"_s, 10},     {u"number = '15'"_s, 10},    {u"number <> 1,5"_s, 2},
        {u"name LIKE '*9'"_s, 9},   {u"memo Is Null"_s, 3},      {u"memo = 'Ä'"_s, 1},
        {u"memo = 1.5"_s, 50},      {u"memo = 'a'"_s, 0},        {u"id = 100 OR id = 99"_s, 99},
        {u"name = 'entry 8'"_s, 8}, {u"name = 'entry 8 '"_s, 0}, {u"number = Null"_s, 0},
    };
    const auto inFile = openTable();
    const auto inMemory = openTable(dao::dbOpenSnapshot);
    for (int repeat = 0; repeat < 6; ++repeat) { // from the fourth time on an index answers
        for (const auto& [criteria, id] : cases) {
            for (const auto& rows : {inFile, inMemory}) {
                rows->FindFirst(criteria);
                EXPECT_EQ(rows->NoMatch(), id == 0) << criteria.toStdString();
                EXPECT_TRUE(id == 0 || rows->value(0) == Value(id)) << criteria.toStdString();
            }
        }
    }
    for (const auto& rows : {inFile, inMemory}) {
        EXPECT_EQ(errorOf([&] { rows->FindFirst(u"nothing = 1"_s); }), 3070);
        EXPECT_EQ(errorOf([&] { rows->FindFirst(u"id = = 1"_s); }), 3077);
    }
}

TEST_F(RecordsetTest, EditsReachTheFileAndTheRowInView) {
    fill(4);
    for (const QString& source : {u"t"_s, u"SELECT id, name AS label, number, yes FROM t WHERE id > 0"_s}) {
        const auto rows = database_->OpenRecordset(source);
        const int name = source == u"t"_s ? rows->indexOf(u"name"_s) : rows->indexOf(u"label"_s);
        rows->FindFirst(u"id = 2"_s);
        rows->Edit();
        rows->setValue(name, Value(u"changed"_s));
        rows->setValue(u"number"_s, Value(u"2,25"_s));
        rows->setValue(u"yes"_s, Value(5));
        EXPECT_EQ(rows->value(name), Value(u"changed"_s));
        rows->Update();
        EXPECT_EQ(rows->value(u"number"_s), Value(2.25));
        EXPECT_EQ(rows->LastModified(), rows->Bookmark());
        EXPECT_EQ(EngineTest::rows(*database_, u"SELECT name, number, yes FROM t WHERE id = 2"_s),
                  u"changed,2,25,-1"_s);

        rows->Edit();
        rows->setValue(name, Value(u"never"_s));
        rows->CancelUpdate();
        rows->Edit();
        rows->setValue(name, Value(u"never"_s));
        rows->MoveFirst();
        EXPECT_EQ(errorOf([&] { rows->Update(); }), 3020) << "moving gives the edit up";
        EXPECT_EQ(errorOf([&] { rows->setValue(name, Value(1)); }), 3020);
        EXPECT_EQ(errorOf([&] { rows->CancelUpdate(); }), 3020);
        EXPECT_EQ(EngineTest::rows(*database_, u"SELECT Count(*) FROM t WHERE name = 'never'"_s), u"0"_s);
    }
}

TEST_F(RecordsetTest, ANewRowIsReachedThroughLastModified) {
    for (const int before : {0, 3}) {
        fill(before);
        for (const bool walked : {false, true}) {
            const auto rows = openTable();
            const int count = rows->RecordCount();
            if (walked && count > 0)
                rows->MoveNext();
            rows->AddNew();
            EXPECT_TRUE(rows->value(u"name"_s).isNull());
            rows->setValue(u"name"_s, Value(7));
            rows->Update();
            EXPECT_EQ(rows->RecordCount(), count + 1);
            rows->setBookmark(rows->LastModified());
            EXPECT_EQ(rows->value(u"name"_s), Value(u"7"_s));
            EXPECT_GT(rows->value(u"id"_s).toInteger(), 0);
            rows->MoveNext();
            EXPECT_TRUE(rows->Eof()) << "a new row stands at the end";
        }
    }
}

TEST_F(RecordsetTest, ADeletedRowIsNoneUntilSomebodyMovesOn) {
    fill(5);
    for (const bool walked : {false, true}) {
        const auto rows = openTable();
        if (walked)
            rows->MoveNext();
        const QString third = walked ? u"id = 4"_s : u"id = 3"_s;
        rows->FindFirst(third);
        const qint64 gone = rows->Bookmark();
        const qint64 next = rows->value(0).toInteger() + 1;
        const int count = rows->RecordCount();
        rows->Delete();
        EXPECT_EQ(errorOf([&] { rows->value(0); }), 3167);
        EXPECT_EQ(errorOf([&] { rows->Edit(); }), 3167);
        EXPECT_EQ(errorOf([&] { rows->setBookmark(gone); }), 3167);
        EXPECT_EQ(rows->RecordCount(), count - 1);
        EXPECT_EQ(rows->AbsolutePosition(), -1);
        rows->MoveNext();
        EXPECT_EQ(rows->value(0), Value(next));
        rows->MovePrevious();
        EXPECT_EQ(rows->value(0), Value(2));
    }
    const auto rows = database_->OpenRecordset(u"SELECT * FROM t WHERE id > 1"_s);
    for (; !rows->Eof(); rows->MoveNext())
        rows->Delete();
    EXPECT_EQ(EngineTest::rows(*database_, u"SELECT id FROM t"_s), u"1"_s);
    rows->AddNew();
    rows->Update();
    EXPECT_EQ(EngineTest::rows(*database_, u"SELECT id FROM t ORDER BY id"_s), u"1;6"_s)
        << "a counter never gives a number twice";
}

TEST_F(RecordsetTest, WhatCannotBeWrittenIsRefusedAndStaysInEdit) {
    addTable(*database_, u"u"_s,
             {{u"k"_s, dao::dbText, 5}, {u"r"_s, dao::dbText, 3, 0, true}, {u"n"_s, dao::dbInteger}});
    const auto rows = database_->OpenRecordset(u"u"_s);
    rows->AddNew();
    EXPECT_EQ(errorOf([&] { rows->setValue(u"k"_s, Value(u"123456"_s)); }), 3163);
    EXPECT_EQ(errorOf([&] { rows->setValue(u"n"_s, Value(u"abc"_s)); }), 13);
    EXPECT_EQ(errorOf([&] { rows->setValue(u"n"_s, Value(40000)); }), 6);
    rows->setValue(u"k"_s, Value(u"äöüß€"_s));
    EXPECT_EQ(errorOf([&] { rows->Update(); }), 3314);
    EXPECT_TRUE(dao::DBEngine::instance().errors().Item(0).description.contains(u"'r'"_s));
    rows->setValue(u"r"_s, Value(u"x"_s));
    rows->Update();
    rows->AddNew();
    rows->setValue(u"k"_s, Value(u"ÄÖÜß€"_s));
    rows->setValue(u"r"_s, Value(u"x"_s));
    EXPECT_EQ(errorOf([&] { rows->Update(); }), 3022) << "a key is the same in either case";
    EXPECT_EQ(errorOf([&] { database_->Execute(u"UPDATE u SET r = 'long text'"_s); }), 3163);
    EXPECT_EQ(errorOf([&] { database_->Execute(u"INSERT INTO u (k, r) VALUES ('b', 'abcd')"_s); }), 3163);
    const auto appender = database_->openAppender(u"u"_s, {u"k"_s, u"r"_s});
    appender->setText(0, u"c"_s);
    appender->setText(1, u"abcd"_s);
    EXPECT_EQ(errorOf([&] { appender->appendRow(); }), 3163);
    EXPECT_EQ(EngineTest::rows(*database_, u"SELECT k, r FROM u"_s), u"äöüß€,x"_s);

    const auto grouped = database_->OpenRecordset(u"SELECT Count(*) AS c FROM u"_s);
    EXPECT_FALSE(grouped->Updatable());
    EXPECT_EQ(errorOf([&] { grouped->Edit(); }), 3027);
    EXPECT_EQ(errorOf([&] { database_->OpenRecordset(u"u"_s, dao::dbOpenSnapshot)->Edit(); }), 3027);
}

TEST_F(RecordsetTest, ARowThatLeavesTheConditionStaysInView) {
    fill(3);
    const auto rows = database_->OpenRecordset(u"SELECT id, number FROM t WHERE number < 4"_s);
    rows->Edit();
    rows->setValue(u"number"_s, Value(100));
    rows->Update();
    EXPECT_EQ(rows->value(u"number"_s), Value(100.0));
    rows->AddNew();
    rows->setValue(u"number"_s, Value(200));
    rows->Update();
    rows->setBookmark(rows->LastModified());
    EXPECT_EQ(rows->value(u"number"_s), Value(200.0));
    rows->Requery();
    EXPECT_EQ(rows->RecordCount(), 1);
}

TEST_F(RecordsetTest, SortTakesEffectInTheRecordsetOpenedFromIt) {
    fill(12);
    const auto rows = openTable(dao::dbOpenSnapshot);
    rows->setSort(u"memo DESC, [name] ASC"_s);
    const auto sorted = rows->OpenRecordset();
    QStringList names;
    for (; !sorted->Eof(); sorted->MoveNext())
        names += sorted->text(u"name"_s).mid(6);
    EXPECT_EQ(names.join(u' '), u"11 10 8 7 5 4 2 1 12 3 6 9"_s) << "Null comes last when sorted downwards";
    EXPECT_EQ(rows->value(0), Value(1));
    rows->setSort(u"nothing"_s);
    EXPECT_EQ(errorOf([&] { rows->OpenRecordset(); }), 3070);
}

TEST_F(RecordsetTest, RowsInMemoryOutliveTheDatabase) {
    fill(3);
    const auto rows = database_->OpenRecordset(u"SELECT * FROM t WHERE id > 0"_s);
    const auto unread = openTable();
    database_->Close();
    rows->MoveLast();
    EXPECT_EQ(rows->value(u"name"_s), Value(u"Entry 3"_s));
    EXPECT_EQ(errorOf([&] { rows->Edit(); }), 3420);
    EXPECT_EQ(errorOf([&] { rows->Requery(); }), 3420);
    EXPECT_EQ(errorOf([&] { unread->MoveNext(); }), 3420);
    rows->Close();
    EXPECT_EQ(errorOf([&] { rows->MoveFirst(); }), 3420);
}

TEST_F(RecordsetTest, TheHookEndsAStatementAndMustNotRunAnother) {
    fill(400);
    int inside = 0;
    dao::DBEngine::instance().setProgress([&] {
        inside = errorOf([&] { database_->OpenRecordset(u"t"_s); });
        return true;
    });
    const QString slow = u"SELECT Count(*) FROM t AS a, t AS b, t AS c WHERE a.number + b.number = c.number"_s;
    EXPECT_EQ(errorOf([&] { database_->OpenRecordset(slow); }), 3059);
    EXPECT_EQ(inside, 3219);
    dao::DBEngine::instance().setProgress([&] {
        database_->Close();
        return false;
    });
    EXPECT_EQ(errorOf([&] { database_->OpenRecordset(slow); }), 3059) << "closing ends what runs";
    EXPECT_FALSE(database_->isOpen());
    dao::DBEngine::instance().setProgress({});
    EXPECT_EQ(EngineTest::rows(*open(u"catalogue.mdb"_s), u"SELECT Count(*) FROM t"_s), u"400"_s);
}
