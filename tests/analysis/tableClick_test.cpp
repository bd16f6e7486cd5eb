#include "analysis/result/tableClick.h"
#include "tables/tableText.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

/// Three values, "Summe", a blank row on wish, "Gültige Fälle".
ResultTable clickedTable(bool separate) {
    ResultTable table;
    table.Tag = u"Frequency"_s;
    table.setRows(separate ? 7 : 6);
    table.setCols(6);
    table.FixedRows = table.FixedCols = 1;
    for (int row = 1; row <= 3; ++row)
        table.setCell(0, row, QString::number(row));
    table.setCell(1, 4, u"Summe"_s);
    table.setCell(1, separate ? 6 : 5, u"Gültige Fälle"_s);
    return table;
}

QString marksText(const ResultTable& table) {
    QString text;
    for (const bool mark : marksOf(table))
        text += mark ? u'X' : u'.';
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
        EXPECT_EQ(clickTable(table, c.selection, markArea(table, c.separate)), c.effect)
            << c.selection.Row << ' ' << c.selection.RowSel;
        EXPECT_EQ(marksText(table).toStdU16String(), c.marks) << c.selection.Row << ' ' << c.selection.RowSel;
    }
    ResultTable other = clickedTable(false);
    other.Tag = u"Descriptives"_s;
    EXPECT_EQ(clickTable(other, {1, 1, 2, 2}, markArea(other, false)), ClickEffect::None);
}

TEST(TableClick, ATakenMarkLeavesABlankAndTheBlankRowComesAndGoes) {
    ResultTable table = clickedTable(false);
    clickTable(table, {2, 2, 2, 2}, markArea(table, false));
    clickTable(table, {2, 2, 2, 2}, markArea(table, false));
    EXPECT_EQ(table.Cell(2, 2), u" ");
    separateValidRow(table, true);
    EXPECT_EQ(clipText(table), clipText([] {
                  ResultTable expected = clickedTable(true);
                  expected.setCell(2, 2, u" "_s);
                  return expected;
              }()));
    separateValidRow(table, false);
    EXPECT_EQ(table.Rows(), 6);
    EXPECT_EQ(table.Cell(1, 5), u"Gültige Fälle");
}

TEST(TableText, HtmlKeepsMarkupOfLabelsAsText) {
    ResultTable table = clickedTable(false);
    table.setCell(1, 1, u"<b>&</b>"_s);
    EXPECT_TRUE(htmlTable(u"a<b"_s, table).contains(u"<td align=\"left\">&lt;b&gt;&amp;&lt;/b&gt;</td>"_s));
    EXPECT_TRUE(htmlTable(u"a<b"_s, table).contains(u"<caption>a&lt;b</caption>"_s));
}
