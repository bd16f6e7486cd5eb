#include "EngineFixture.h"
#include "Stranger.h"
#include "platform/dao/Functions.h"
#include "platform/dao/Transaction.h"
#include "support/PrintQt.h"

#include <QBuffer>

using namespace Qt::StringLiterals;

namespace {

class Changes : public EngineTest {
protected:
    dao::DatabasePtr file;
    QBuffer store;

    void SetUp() override {
        file = create(u"catalogue.mdb"_s);
        addTable(*file, u"study"_s,
                 {{u"no"_s, dao::dbText},
                  {u"title"_s, dao::dbText},
                  {u"year"_s, dao::dbDouble},
                  {u"picture"_s, dao::dbMemo}});
        addTable(*file, u"category"_s, {{u"id"_s, dao::dbLong, 0, dao::dbAutoIncrField}, {u"name"_s, dao::dbText}});
        file->Execute(u"INSERT INTO study (no, title, year) VALUES ('Ä1', 'Alte Wahl', 1919.5)"_s);
        file->Execute(u"INSERT INTO study (no, title, year, picture) VALUES ('b2', '', Null, 'groß')"_s);
        file->Execute(u"INSERT INTO category (name) VALUES ('eins')"_s);
        store.open(QIODevice::ReadWrite);
    }
    QString all() {
        return rows(*file, u"SELECT * FROM study ORDER BY no"_s) + u'/' +
               rows(*file, u"SELECT * FROM category ORDER BY id"_s);
    }
    dao::ChangeSet recorded(const QStringList& statements) {
        dao::Transaction transaction;
        const auto recorder = file->record({u"STUDY"_s, u"category"_s});
        for (const QString& statement : statements)
            file->Execute(statement);
        const dao::ChangeSet changes = recorder->take(store);
        EXPECT_TRUE(recorder->missed().isEmpty());
        transaction.commit();
        return changes;
    }
    QString apply(const dao::ChangeSet& changes, dao::ChangeWay way) {
        QStringList rows;
        dao::Transaction transaction;
        file->apply(changes, way, [&](const dao::ChangedRow& row) {
            const auto text = [](const std::optional<dao::Value>& value) { return value ? value->toText() : u"-"_s; };
            const QString field = row.table() == u"study" ? u"title"_s : u"name"_s;
            rows +=
                QString::number(static_cast<int>(row.kind())) + text(row.before(field)) + u'>' + text(row.after(field));
        });
        transaction.commit();
        rows.sort();
        return rows.join(u' ');
    }
    Stranger stranger() const { return Stranger(path(u"catalogue.mdb"_s)); }
};

TEST_F(Changes, AreTakenBackAndDoneAgainWholeAndSeenByWhatIsOpen) {
    const QString before = all();
    const auto studies = file->OpenRecordset(u"SELECT * FROM study ORDER BY no"_s, dao::dbOpenDynaset);
    studies->MoveLast();
    EXPECT_EQ(studies->AbsolutePosition(), 1); // its rows are in memory
    const dao::ChangeSet changes =
        recorded({u"UPDATE study SET title = 'ALTE WAHL', year = 3 WHERE no = 'ä1'"_s,
                  u"DELETE FROM study WHERE no = 'b2'"_s, u"INSERT INTO category (name) VALUES ('zwei')"_s});
    const QString after = all();
    ASSERT_NE(before, after);
    EXPECT_EQ(apply(changes, dao::ChangeWay::Back), u"0zwei>- 1ALTE WAHL>Alte Wahl 2->"_s);
    EXPECT_EQ(all(), before);
    studies->FindFirst(u"title = 'Alte Wahl'"_s);
    EXPECT_FALSE(studies->NoMatch());
    EXPECT_EQ(studies->value(u"year"_s), dao::Value(1919.5));
    EXPECT_EQ(apply(changes, dao::ChangeWay::Forth), u"0>- 1Alte Wahl>ALTE WAHL 2->zwei"_s);
    EXPECT_EQ(all(), after);
    EXPECT_EQ(recorded({u"UPDATE study SET title = title"_s}).size, 0);
    EXPECT_EQ(
        recorded({u"INSERT INTO category (name) VALUES ('x')"_s, u"DELETE FROM category WHERE name = 'x'"_s}).size, 0);
}

TEST_F(Changes, OfARowThatAnotherProgramHasTouchedAreRefusedWhole) {
    const dao::ChangeSet changes =
        recorded({u"INSERT INTO category (name) VALUES ('zwei')"_s, u"UPDATE study SET title = 'neu' WHERE no = 'ä1'"_s,
                  u"DELETE FROM study WHERE no = 'b2'"_s});
    const struct {
        const char* by;
        const char* back;
        int error;
    } strangers[] = {
        {"UPDATE category SET name = 'ZWEI' WHERE id = 2", "UPDATE category SET name = 'zwei' WHERE id = 2", 3197},
        {"UPDATE study SET title = 'Neu' WHERE no = 'Ä1'", "UPDATE study SET title = 'neu' WHERE no = 'Ä1'", 3197},
        {"UPDATE study SET no = 'ä1' WHERE no = 'Ä1'", "UPDATE study SET no = 'Ä1' WHERE no = 'ä1'", 3197},
        {"INSERT INTO study (no) VALUES ('B2')", "DELETE FROM study WHERE no = 'B2'", 3197},
        {"DELETE FROM category WHERE id = 2", "INSERT INTO category VALUES (2, 'zwei')", 3197},
        {"ALTER TABLE study ADD COLUMN more", "ALTER TABLE study DROP COLUMN more", 3197},
        {"ALTER TABLE category RENAME TO other", "ALTER TABLE other RENAME TO category", 3078},
    };
    const auto run = [&](const char* sql) {
        sqlite3* other = nullptr;
        sqlite3_open(path(u"catalogue.mdb"_s).toUtf8().constData(), &other);
        dao::registerFunctions(other);
        EXPECT_EQ(sqlite3_exec(other, sql, nullptr, nullptr, nullptr), SQLITE_OK) << sqlite3_errmsg(other);
        sqlite3_close(other);
    };
    const QString after = all();
    for (const auto& [by, back, error] : strangers) {
        run(by);
        EXPECT_EQ(errorOf([&] { apply(changes, dao::ChangeWay::Back); }), error) << by;
        run(back);
        EXPECT_EQ(all(), after) << by;
    }
    // What the edit did not touch may be another's.
    run("UPDATE study SET year = 5 WHERE no = 'Ä1'");
    EXPECT_EQ(apply(changes, dao::ChangeWay::Back), u"0zwei>- 1neu>Alte Wahl 2->"_s);
    EXPECT_EQ(rows(*file, u"SELECT no, title, year, picture FROM study ORDER BY no"_s),
              u"b2,,~,groß;Ä1,Alte Wahl,5,~"_s);
}

TEST_F(Changes, WaitForAnotherWriterOfTheFileButForNobodyElse) {
    createCases(u"cases.mdb"_s, u"cases"_s, 3);
    addLink(*file, u"cases"_s, path(u"cases.mdb"_s));
    EXPECT_EQ(rows(*file, u"SELECT Count(*) FROM cases"_s), u"3"_s);
    const Stranger writes(path(u"catalogue.mdb"_s)), readsCases(path(u"cases.mdb"_s));
    readsCases.run("BEGIN EXCLUSIVE");
    {
        dao::Transaction transaction;
        const auto recorder = file->record({u"cases"_s, u"category"_s});
        file->Execute(u"UPDATE category SET name = 'x'"_s);
        sqlite3* other = nullptr;
        sqlite3_open(path(u"catalogue.mdb"_s).toUtf8().constData(), &other);
        EXPECT_EQ(sqlite3_exec(other, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr), SQLITE_BUSY);
        sqlite3_close(other);
    }
    {
        dao::Transaction transaction;
        const auto recorder = file->record({u"category"_s});
        EXPECT_EQ(errorOf([&] { (void)file->record({u"category"_s}); }), 3219); // one at a time
        file->Execute(u"UPDATE study SET title = 'x'"_s);
        EXPECT_EQ(recorder->missed(), QStringList(u"\"main\".\"study\""_s));
    }
    EXPECT_EQ(rows(*file, u"SELECT title FROM study WHERE no = 'b2'"_s), QString());
    writes.run("BEGIN IMMEDIATE");
    EXPECT_EQ(errorOf([&] {
                  dao::Transaction transaction;
                  (void)file->record({u"category"_s});
              }),
              3260);
    EXPECT_EQ(errorOf([&] { (void)file->record({u"category"_s}); }), 3219); // outside of a transaction
}

TEST_F(Changes, OfTablesWithoutAKeyOfTheirOwnAreNamedBeforehand) {
    const Stranger other(path(u"catalogue.mdb"_s));
    other.run("CREATE TABLE bare (a)");
    other.run("CREATE TABLE nullable (a TEXT PRIMARY KEY, b); INSERT INTO nullable VALUES ('x', 1)");
    createCases(u"cases.mdb"_s, u"cases"_s, 1);
    addLink(*file, u"cases"_s, path(u"cases.mdb"_s));
    const QStringList tables{u"study"_s, u"bare"_s, u"nullable"_s, u"cases"_s, u"nowhere"_s};
    EXPECT_EQ(file->unrecordable(tables), QStringList({u"bare"_s, u"cases"_s}));
    other.run("INSERT INTO nullable VALUES (NULL, 2)");
    EXPECT_EQ(file->unrecordable(tables), QStringList({u"bare"_s, u"nullable"_s, u"cases"_s}));
}

TEST_F(Changes, BringBackWhatAnotherProgramHasPutAmongNumbers) {
    Stranger(path(u"catalogue.mdb"_s)).run("UPDATE study SET year = 'lange her' WHERE rowid = 2");
    const QString found = u"SELECT no FROM study WHERE year = 'lange her'"_s;
    const QString before = rows(*file, found);
    const dao::ChangeSet changes = recorded({u"DELETE FROM study WHERE no = 'b2'"_s});
    EXPECT_EQ(rows(*file, u"SELECT Count(*) FROM study WHERE year > 1000"_s), u"1"_s); // what is known of the field
    apply(changes, dao::ChangeWay::Back);
    EXPECT_EQ(rows(*file, u"SELECT Count(*) FROM study WHERE year > 1000"_s), u"1"_s);
    EXPECT_EQ(rows(*file, found), before);
}

} // namespace
