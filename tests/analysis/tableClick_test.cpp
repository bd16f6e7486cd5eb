#include "analysis/result/tableClick.h"
#include "tables/Marks.h"
#include "tables/tableText.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

/// Three values, "Summe", a blank row on wish, "Gültige Fälle".
ResultTable clickedTable(bool separate) {
    ResultTable table;
    table.Tag = TableKind::Frequency;
    table.setRows(separate ? 7 : 6);
    table.setCols(6);
    table.FixedRows = table.FixedCols = 1;
    for (int row = 1; row <= 3; ++row)
        table.setCell(0, row, QString::number(row));
    table.setCell(1, 4, u"Summe"_s);
    table.setCell(1, separate ? 6 : 5, u"Gültige Fälle"_s);
    table.shape = {.rows = {1, 3}, .columns = {3, 5}, .sumRow = 4, .validRow = separate ? 6 : 5};
    return table;
}

QString marksText(const ResultTable& table) {
    QString text;
    for (int row = 0; row < table.Rows(); ++row)
        text += isMarkedRow(table, row) ? u'X' : u'.';
    return text;
}

} // namespace

TEST(TableClick, TogglesEachDataRowOfASelectionAndAsksAfterAClickOnTheHead) {
    const struct {
        GridSelection selection;
        bool separate;
        ClickEffect effect;
        const char16_t* marks;
    } cases[] = {
        {{1, 1, 2, 2}, false, ClickEffect::Marked, u".X...."},   {{2, 3, 2, 2}, false, ClickEffect::Marked, u"..XX.."},
        {{3, 1, 2, 2}, false, ClickEffect::Marked, u".XXX.."}, // it reaches row 1 but begins elsewhere
        {{2, 5, 2, 2}, false, ClickEffect::Marked, u"..XX.."}, // sums are no data
        {{3, 6, 2, 2}, true, ClickEffect::Marked, u"...X..."},   {{4, 4, 2, 2}, false, ClickEffect::None, u"......"},
        {{6, 6, 2, 2}, true, ClickEffect::None, u"......."},     {{1, 5, 2, 2}, false, ClickEffect::Ask, u"......"},
        {{1, 2, 2, 2}, false, ClickEffect::Marked, u".XX..."}, // no click on the head selects so
        {{2, 2, 3, 3}, false, ClickEffect::None, u"......"},     {{2, 2, 2, 3}, false, ClickEffect::None, u"......"},
        {{-1, -1, -1, -1}, false, ClickEffect::None, u"......"},
    };
    for (const auto& c : cases) {
        ResultTable table = clickedTable(c.separate);
        EXPECT_EQ(clickTable(table, c.selection), c.effect) << c.selection.Row << ' ' << c.selection.RowSel;
        EXPECT_EQ(marksText(table).toStdU16String(), c.marks) << c.selection.Row << ' ' << c.selection.RowSel;
    }
    ResultTable other = clickedTable(false);
    other.Tag = TableKind::Descriptives;
    EXPECT_EQ(clickTable(other, {1, 1, 2, 2}), ClickEffect::None);
}

TEST(TableClick, ATakenMarkLeavesABlank) {
    ResultTable table = clickedTable(false);
    clickTable(table, {2, 2, 2, 2});
    clickTable(table, {2, 2, 2, 2});
    EXPECT_EQ(table.Cell(2, 2), u" ");
}

TEST(TableText, HtmlKeepsMarkupOfLabelsAsText) {
    ResultTable table = clickedTable(false);
    table.setCell(1, 1, u"<b>&</b>"_s);
    EXPECT_TRUE(htmlTable(u"a<b"_s, table).contains(u"<td align=\"left\">&lt;b&gt;&amp;&lt;/b&gt;</td>"_s));
    EXPECT_TRUE(htmlTable(u"a<b"_s, table).contains(u"<caption>a&lt;b</caption>"_s));
}
