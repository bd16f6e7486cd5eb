#include "platform/system/NumberFormat.h"
#include "support/TableText.h"
#include "tables/StoredTable.h"

#include <gtest/gtest.h>
#include <random>

using namespace Qt::StringLiterals;

namespace {

const QChar wordJoiner(0x2060);

/// A table of the given cells, row by row.
ResultTable tableOf(const std::vector<QStringList>& rows) {
    ResultTable table;
    table.setRows(static_cast<int>(rows.size()));
    table.setCols(static_cast<int>(rows.front().size()));
    for (int row = 0; row < table.Rows(); ++row)
        for (int column = 0; column < table.Cols(); ++column)
            table.setCell(column, row, rows[static_cast<size_t>(row)][column]);
    return table;
}

const QString frequency = u"\"Wahl, N = 3\";Freq;;;2;3;\"Wert\";\"1\";\"\";\"Anzahl\";\"say \"hi\"\";\"3\";V3;"_s;
const QString layout = u"2;3;500;2000;240;240;720;0;1;6;0;7;4;0;6;"_s;

/// Whatever a text may be cut or changed into.
void expectNoHarm(const QString& text, const QString& with) {
    const std::optional<StoredTable> read = readStoredTable(text, with);
    EXPECT_LE(read ? qsizetype{read->table.Cols()} * read->table.Rows() : 0, text.size());
}

} // namespace

TEST(StoredTable, IsWrittenAndReadAsThePrescribedText) {
    StoredTable stored;
    stored.title = u"Wahl, N = 3"_s;
    stored.kind = TableKind::Comparison;
    stored.values = 1;
    stored.nFlag = u"N"_s;
    stored.weight = u"V3"_s;
    stored.table = tableOf({{u"Wert"_s, u"Anzahl"_s}, {u"1"_s, u"say \"hi\""_s}, {QString(), u"3"_s}});
    EXPECT_EQ(BuildTableString(stored), frequency) << "a comparison is a frequency, without view and N";
    stored.kind = TableKind::Crosstab;
    EXPECT_TRUE(BuildTableString(stored).startsWith(u"\"Wahl, N = 3\";Xtab;S;N;2;3;\"Wert\";"_s));
    stored.kind = TableKind::Descriptives;
    EXPECT_TRUE(BuildTableString(stored).startsWith(u"\"Wahl, N = 3\";Desc;;;2;3;"_s));
    EXPECT_EQ(BuildTableString({}), u"Fehler"_s);
    stored.weight = u"V;3"_s;
    EXPECT_EQ(BuildTableString(stored), u"Fehler"_s);

    const std::optional<StoredTable> read = readStoredTable(frequency, layout);
    ASSERT_TRUE(read);
    EXPECT_EQ(read->title, u"Wahl, N = 3"_s);
    EXPECT_EQ(read->kind, TableKind::Frequency);
    EXPECT_EQ(read->weight, u"V3"_s);
    EXPECT_EQ(linesOf(read->table), (QStringList{u"Wert|Anzahl"_s, u"1|say \"hi\""_s, u"|3"_s}));
    EXPECT_EQ(read->table.FixedRows, 1);
    EXPECT_EQ(BuildTableLayoutString(read->table), layout);
    EXPECT_EQ(BuildTableString(*read), frequency);
    EXPECT_EQ(readStoredTable(u"\"t\";Xtab;Z;NFirst;1;1;\"x\";;"_s, {})->values, 2);
    EXPECT_EQ(readStoredTable(u"\"t\";Xtab;Q;NFirst;1;1;\"x\";;"_s, {})->values, 0);
    EXPECT_EQ(readStoredTable(u"\"t\";Xtab;Z;NFirst;1;1;\"x\";;"_s, {})->nFlag, u"NFirst"_s);
    EXPECT_EQ(readStoredTable(frequency, {})->table.ColWidth(0), ResultTable(tableOf({{u"x"_s}})).ColWidth(0));
}

TEST(StoredTable, EveryCellReadsBackAsItWas) {
    // What ends a cell is a quote directly in front of ";": of a text that has both an invisible character parts them.
    std::vector<QStringList> rows = {
        {u"\""_s, u"\";"_s, u";\""_s, u"a\";b\";"_s},
        {u"\"\""_s, u"x;\r\ny\tz"_s, u"\";\";\""_s, u" "_s},
        {u"\""_s + wordJoiner + u';', u"\""_s + wordJoiner, wordJoiner + u"\";"_s, u";"_s}};
    StoredTable stored;
    stored.title = u"Frage \"A\"; zwei"_s;
    stored.table = tableOf(rows);
    EXPECT_EQ(linesOf(readStoredTable(BuildTableString(stored), {})->table), linesOf(stored.table));
    EXPECT_EQ(readStoredTable(BuildTableString(stored), {})->title, u"Frage "_s) << "a title ends at its first quote";

    std::mt19937 random(13);
    const QString characters = u"\"\";;ä1 \n"_s + wordJoiner;
    for (int times = 0; times < 300; ++times) {
        for (QStringList& row : rows)
            for (QString& cell : row) {
                cell.clear();
                for (auto left = random() % 7; left > 0; --left)
                    cell += characters[static_cast<qsizetype>(random() % static_cast<size_t>(characters.size()))];
            }
        stored.table = tableOf(rows);
        const QString text = BuildTableString(stored);
        const std::optional<StoredTable> read = readStoredTable(text, {});
        ASSERT_TRUE(read) << text.toStdString();
        EXPECT_EQ(linesOf(read->table), linesOf(stored.table)) << text.toStdString();
    }
}

TEST(StoredTable, DamageIsFoundBeforeMemoryIsTaken) {
    const QStringList damaged = {u"Fehler"_s,
                                 u"t;Freq;;;1;1;\"x\";;"_s,
                                 u"\"t;Freq;;;1;1"_s,
                                 u"\"t\";Freq;;;999999999;999999999;\"x\";;"_s,
                                 u"\"t\";Freq;;;0;999999999;;"_s,
                                 u"\"t\";Freq;;;999999999;0;;"_s,
                                 u"\"t\";Freq;;;-1;-1;\"x\";;"_s,
                                 u"\"t\";Freq;;;+1;1;\"x\";;"_s,
                                 u"\"t\";Freq;;;1.0;1;\"x\";;"_s,
                                 u"\"t\";Freq;;; 1;1;\"x\";;"_s,
                                 u"\"t\";Freq;;;1e1;1;\"x\";;"_s,
                                 u"\"t\";Freq;;;4294967297;1;\"x\";;"_s,
                                 u"\"t\";Freq;;;1;1;\"x\";\"y\";;"_s,
                                 u"\"t\";Freq;;;1;2;\"x\";;"_s,
                                 u"\"t\";Freq;;;1;1;\"x\";;more"_s,
                                 u"\"t\";Chart;;;1;1;\"x\";;"_s};
    for (const QString& text : damaged)
        EXPECT_FALSE(readStoredTable(text, {})) << text.toStdString();
    for (qsizetype size = 0; size < frequency.size(); ++size)
        EXPECT_FALSE(readStoredTable(frequency.first(size), layout)) << size;
    std::mt19937 random(7);
    for (int times = 0; times < 20'000; ++times) {
        QString text = frequency, with = layout;
        for (QString* changed : {&text, &with})
            for (auto changes = random() % 3; changes > 0; --changes)
                (*changed)[static_cast<qsizetype>(random() % static_cast<size_t>(changed->size()))] =
                    u"\";019-x"[random() % 7];
        expectNoHarm(text, with);
    }
}

TEST(StoredTable, ALayoutIsLaidAsFarAsItGoes) {
    const auto laid = [](const QString& text, ResultTable table, bool whole) {
        EXPECT_EQ(layLayoutOn(table, text), whole) << text.toStdString();
        return BuildTableLayoutString(table);
    };
    const ResultTable small = tableOf({{u"x"_s, u"y"_s}});
    EXPECT_EQ(laid(u"2;1;500;700;300;1;6;2;9;"_s, small, true), u"2;1;500;700;300;1;6;2;9;"_s);
    EXPECT_EQ(laid(u"3;2;500;700;800;300;400;1;2;6;3;8;8;2;9;7;"_s, small, false), u"2;1;500;700;300;1;6;2;9;"_s)
        << "of a larger table what there is a place for";
    EXPECT_EQ(laid(u"1;1;500;300;1;2;"_s, small, false), u"2;1;500;960;300;1;0;2;0;"_s) << "of a smaller one all of it";
    EXPECT_EQ(laid(u"2;1;-1;700000000;300;12;-3;99;9;"_s, small, true), u"2;1;960;100000;300;0;0;0;9;"_s);
    for (const QString& damaged : {u"999999999;999999999;1;"_s, u"-1;-1;"_s, u"Fehler"_s, u"2;"_s, u"0;999999999;"_s})
        EXPECT_EQ(laid(damaged, small, false), u"2;1;960;960;240;0;0;0;0;"_s);
    ResultTable aligned = small;
    aligned.setCellAlignment(0, 0, 6);
    EXPECT_EQ(laid(u"2;1;500;700;300;0;1;0;0;"_s, aligned, true), u"2;1;500;700;300;6;1;0;0;"_s)
        << "0 leaves a cell what it has";
    for (qsizetype size = 0; size < layout.size(); ++size) {
        const std::optional<StoredTable> read = readStoredTable(frequency, layout.first(size));
        ASSERT_TRUE(read);
        EXPECT_EQ(BuildTableString(*read), frequency) << "the cells are as they were";
    }
}
