#include "printing/storedBlocks.h"
#include "support/TestHome.h"
#include "tables/StoredTable.h"

#include <QBuffer>
#include <QImage>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

StoredTable storedTable(TableKind kind, int columns, int rows) {
    StoredTable stored{.title = u"V1: Titel"_s, .kind = kind, .values = 1, .nFlag = {}, .table = {}, .weight = u"w"_s};
    stored.table.setRows(rows);
    stored.table.setCols(columns);
    for (int row = 0; row < rows; ++row)
        for (int column = 0; column < columns; ++column)
            stored.table.setCell(column, row, u"%1\"/%2"_s.arg(column).arg(row));
    stored.table.setColWidth(1, 0);
    return stored;
}

} // namespace

TEST(StoredBlocks, FixTwoRowsAndColumnsOfACrosstabAndOneOfOthers) {
    const struct {
        TableKind kind;
        int columns, rows, fixedRows, fixedColumns;
        QStringList notes;
    } cases[] = {
        {TableKind::Frequency, 6, 9, 1, 1, {u"Gewicht: w"_s}},
        {TableKind::Descriptives, 3, 5, 1, 1, {u"Gewicht: w"_s}},
        {TableKind::Crosstab, 6, 9, 2, 2, {u"Spaltenprozente"_s, u"Gewicht: w"_s}},
        {TableKind::Crosstab, 2, 1, 1, 2, {u"Spaltenprozente"_s, u"Gewicht: w"_s}},
    };
    for (const auto& c : cases) {
        const StoredTable stored = storedTable(c.kind, c.columns, c.rows);
        const Block block = storedTableBlock(BuildTableString(stored), BuildTableLayoutString(stored.table), 1);
        ASSERT_TRUE(std::holds_alternative<TableBlock>(block));
        const TableBlock& table = std::get<TableBlock>(block);
        EXPECT_EQ(table.title, stored.title);
        EXPECT_EQ(table.table.FixedRows, c.fixedRows);
        EXPECT_EQ(table.table.FixedCols, c.fixedColumns);
        EXPECT_EQ(table.table.ColWidth(1), 0);
        EXPECT_EQ(table.notes, c.notes);
    }
}

TEST(StoredBlocks, ATableCutAnywhereSaysSoAndACutLayoutLeavesTheTable) {
    const StoredTable stored = storedTable(TableKind::Crosstab, 3, 4);
    const QString text = BuildTableString(stored), layout = BuildTableLayoutString(stored.table);
    for (qsizetype length = 0; length < text.size(); ++length) {
        const Block block = storedTableBlock(text.left(length), layout, 1);
        ASSERT_TRUE(std::holds_alternative<TextBlock>(block)) << length;
        EXPECT_EQ(std::get<TextBlock>(block).style, TextBlock::Style::Fault);
        EXPECT_FALSE(std::get<TextBlock>(block).runs.front().text.isEmpty());
    }
    for (qsizetype length = 0; length < layout.size(); ++length)
        EXPECT_TRUE(std::holds_alternative<TableBlock>(storedTableBlock(text, layout.left(length), 1))) << length;
}

TEST(StoredBlocks, AGraphKeepsWhatIsWholeOfIt) {
    const QString layout = u"\"Titel\";1000,5;500;\"1 eins\";"_s;
    const PictureBlock whole = storedGraphBlock(u"\u00FF\u00D8x"_s, layout, 1);
    EXPECT_EQ(whole.bytes, QByteArray("\xFF\xD8x"));
    EXPECT_EQ(whole.size, QSizeF(1000.5, 500));
    EXPECT_EQ(whole.explanation, u"1 eins"_s);
    EXPECT_EQ(whole.fault, QString());
    const PictureBlock noBytes = storedGraphBlock(u"\u0416"_s, layout, 1);
    EXPECT_EQ(noBytes.fault, u"Das Bild ist beschädigt."_s);
    EXPECT_EQ(noBytes.title, u"Titel"_s);
    for (qsizetype length = 0; length < layout.size(); ++length)
        EXPECT_EQ(storedGraphBlock(u"\u00FF\u00D8x"_s, layout.left(length), 1).bytes, whole.bytes) << length;
}
