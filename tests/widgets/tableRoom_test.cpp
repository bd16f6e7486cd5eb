#include "widgets/ResultTableModel.h"
#include "widgets/ResultTableView.h"
#include "widgets/tableRoom.h"

#include <QFontMetrics>
#include <QGuiApplication>
#include <QHeaderView>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

TEST(TableRoom, isSharedOutFairlyAndToTheLastPixelAskedFor) {
    struct Case {
        int room;
        std::vector<int> wants, shares;
    };
    for (const Case& c : {Case{100, {10, 20}, {10, 20}},
                          {30, {100, 5, 100}, {12, 5, 13}},
                          {30, {0, -5, 40}, {0, 0, 30}},
                          {0, {7, 7}, {0, 0}},
                          {-20, {7}, {0}},
                          {50, {}, {}}})
        EXPECT_EQ(shareOut(c.room, c.wants), c.shares);
}

TEST(TableRoom, aHeadTakesUpToThreeLinesAndIsCutOnlyBeyondThem) {
    const QFont font = QGuiApplication::font();
    const QFontMetrics metrics(font);
    for (const QString& text : {u"SV2018, LZUFR, 2018 (G. GEWREP) (F. GESCHL=1 AND ALTER>30)"_s, u"zufriedenstellend"_s,
                                u"만족도 매우 만족 보통"_s, u"a b"_s}) {
        const int least = widthOfHead(text, font);
        EXPECT_LE(least, metrics.horizontalAdvance(text) + 1);
        const QStringList lines = headLines(text, font, least);
        EXPECT_LE(lines.size(), mostHeadLines);
        EXPECT_EQ(lines.join(u' ').remove(u' '), QString(text).remove(u' ')) << text.toStdString();
        for (const QString& line : lines)
            EXPECT_LE(metrics.horizontalAdvance(line), least + 1);
    }
    const QStringList cut = headLines(QString(60, u'W') + u" ende"_s, font, 5 * metrics.horizontalAdvance(u'W'));
    ASSERT_EQ(cut.size(), mostHeadLines);
    EXPECT_TRUE(cut.last().endsWith(u'…'));
    EXPECT_EQ(headLines(u"a b c d"_s, font, metrics.horizontalAdvance(u"a b"_s) + 1, 1).size(), 1);
}

TEST(TableRoom, EveryAlignmentIsDrawnAndOneLineStandsInTheMiddle) {
    ResultTable table;
    table.setRows(2);
    table.setCols(2);
    table.setRowHeight(1, 900);
    table.setCell(1, 0, u"12,5%"_s);
    const Qt::Alignment drawn[] = {Qt::AlignLeft | Qt::AlignVCenter,   Qt::AlignLeft | Qt::AlignBottom,
                                   Qt::AlignHCenter | Qt::AlignTop,    Qt::AlignHCenter | Qt::AlignVCenter,
                                   Qt::AlignHCenter | Qt::AlignBottom, Qt::AlignRight | Qt::AlignTop,
                                   Qt::AlignRight | Qt::AlignVCenter,  Qt::AlignRight | Qt::AlignBottom};
    for (int number = 1; number <= 8; ++number) {
        table.setCellAlignment(0, 1, number);
        table.setCellAlignment(0, 0, number);
        EXPECT_EQ(alignmentOf(table, 0, 1), drawn[number - 1]) << number;
        EXPECT_EQ(alignmentOf(table, 0, 0), (drawn[number - 1] & Qt::AlignHorizontal_Mask) | Qt::AlignVCenter);
    }
    for (const int number : {0, 9}) {
        table.setColAlignment(1, number);
        EXPECT_EQ(alignmentOf(table, 1, 0), Qt::AlignRight | Qt::AlignVCenter) << "a figure";
        EXPECT_EQ(alignmentOf(table, 1, 1), Qt::AlignLeft | Qt::AlignVCenter);
    }
    table.setColAlignment(1, 4);
    EXPECT_EQ(alignmentOf(table, 1, 0), Qt::AlignHCenter | Qt::AlignVCenter) << "that of the column";
}

TEST(TableRoom, AKeptColumnHasRoomForTheWidestOfItsTextsNotForTheOneOfMostLetters) {
    ResultTable table;
    table.setRows(3);
    table.setCols(2);
    table.FixedRows = table.FixedCols = 1;
    const QString wide(12, u'm');
    table.setCell(1, 1, QString(13, u'i'));
    table.setCell(1, 2, wide);
    table.giveColWidth(1, 13 * 80);
    ResultTableView view(u"mfgGrid"_s, nullptr);
    view.updateTable(table);
    EXPECT_GE(view.horizontalHeader()->sectionSize(0), view.fontMetrics().horizontalAdvance(wide));
}
