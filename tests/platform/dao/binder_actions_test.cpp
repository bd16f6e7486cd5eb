#include "binder_support.h"

using namespace Qt::StringLiterals;

namespace {

class ActionStatements : public BinderTest {
protected:
    ActionStatements() {
        createTable(u"sys"_s, u"id counter, key text, wert text, n double, w long, b yesno"_s);
        insert(u"sys"_s, u"(1, 'Language', '0', 1.5, 1, 0), (2, 'ShowForm', '1', NULL, 2, -1)"_s);
        createTable(u"fixed"_s, u"id counter, a text"_s, true);
        query(u"q"_s, u"SELECT * FROM sys"_s);
    }
};

TEST_F(ActionStatements, ConvertValuesToTheirFields) {
    const struct {
        QString statement, row;
    } cases[] = {
        {u"update sys set wert = 1 where key  = 'language'"_s, u"1|Language|1|1.5|1|0"_s},
        {u"UPDATE sys SET wert = 2.5, n = '3,25', w = 2.5, b = id = 1 WHERE sys.id = 1"_s,
         u"1|Language|2,5|3.25|2|-1"_s},
        {u"UPDATE sys SET wert = wert & '!', n = n * 2, w = '7', b = 5 WHERE id = 1"_s, u"1|Language|0!|3.0|7|-1"_s},
        {u"UPDATE sys SET wert = n, n = wert WHERE id = 1"_s, u"1|Language|1,5|0.0|1|0"_s},
        {u"UPDATE sys SET wert = Null, n = Null WHERE key LIKE 'L*'"_s, u"1|Language|~|~|1|0"_s},
        {u"DELETE FROM sys WHERE id = 1"_s, QString()},
        {u"DELETE * FROM sys WHERE n Is Null;"_s, u"1|Language|0|1.5|1|0"_s},
        {u"INSERT INTO sys (key, wert, n, b) VALUES ('New', 12, '1,5', True)"_s, u"3|New|12|1.5|~|-1"_s},
        {u"INSERT INTO sys (key, wert, n) SELECT wert, n, wert FROM sys WHERE id = 1"_s, u"3|0|1,5|0.0|~|0"_s},
    };
    for (const auto& test : cases) {
        sqliteRows(u"SAVEPOINT before"_s);
        rows(test.statement);
        const bool inserts = test.statement.startsWith(u"INSERT"_s);
        EXPECT_EQ(sqliteRows(u"SELECT * FROM sys WHERE id = "_s + (inserts ? u"3"_s : u"1"_s)), test.row)
            << test.statement.toStdString();
        sqliteRows(u"ROLLBACK TO before"_s);
    }
}

TEST_F(ActionStatements, ThatCanNotBeDoneAreRefused) {
    const struct {
        QString statement;
        int number;
    } cases[] = {
        {u"UPDATE fixed SET a = 'x'"_s, 3027},
        {u"DELETE FROM q"_s, 3027},
        {u"DELETE FROM nowhere"_s, 3078},
        {u"UPDATE sys SET lost = 1"_s, 3061},
        {u"UPDATE sys SET n = lost"_s, 3061},
        {u"UPDATE sys SET n = 'many'"_s, 3464},
        {u"UPDATE sys SET n = key"_s, 13},
        {u"UPDATE sys SET n = Sum(w)"_s, 3096},
        {u"UPDATE sys SET n = 1, N = 2"_s, 3063},
        {u"INSERT INTO sys (key, wert) VALUES ('a')"_s, 3346},
        {u"INSERT INTO sys (key) VALUES (key)"_s, 3061},
    };
    for (const auto& test : cases)
        EXPECT_EQ(errorOf(test.statement), test.number) << test.statement.toStdString();
}

} // namespace
