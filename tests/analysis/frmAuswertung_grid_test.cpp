#include "analysis/AnalysisWindow.h"

#include "widgets/tableRoom.h"

#include <QHeaderView>

namespace {

/// How the grid deals with its room: what says nothing takes none, and nothing is cut while there is some.
class AnalysisGrid : public AnalysisWindow {
protected:
    ResultTableView* grid() { return the<ResultTableView>(u"mfgGrid"_s); }
    const ResultTable& table() { return grid()->table(); }
    int width(int column) { return grid()->columnWidth(column - table().FixedCols); }
    int height(int row) { return grid()->rowHeight(row - table().FixedRows); }
    void show(int view) {
        auto* values = the<QComboBox>(u"cbValues"_s);
        values->setFocus();
        QTest::keyClick(values, Qt::Key_Home);
        for (int i = 0; i < view; ++i)
            QTest::keyClick(values, Qt::Key_Down);
        settle();
    }
    QString head(int column, int role = Qt::DisplayRole) {
        const QString text = grid()->model()->headerData(column - table().FixedCols, Qt::Horizontal, role).toString();
        return QString(text).replace(QChar::Nbsp, u' ');
    }
    void clickCell(int column, int row) {
        const QModelIndex index = grid()->model()->index(row - table().FixedRows, column - table().FixedCols);
        QTest::mouseClick(grid()->viewport(), Qt::LeftButton, {}, grid()->visualRect(index).center());
        settle();
    }
    /// What is cut of the cells and heads in view.
    QStringList cut() {
        QStringList texts;
        for (int column = table().FixedCols; column < table().Cols(); ++column) {
            const int room = width(column) - 2 * (grid()->style()->pixelMetric(QStyle::PM_FocusFrameHMargin) + 3);
            if (room <= 0)
                continue;
            const QStringList lines = headLines(head(column).section(u'\n', -1), grid()->font(), room);
            if (lines.join(u' ').contains(u'…') && head(column) != u"Missing")
                texts << head(column);
            for (int row = table().FixedRows; row < table().Rows(); ++row)
                if (height(row) > 0 && grid()->fontMetrics().horizontalAdvance(table().Cell(column, row)) > room &&
                    table().Cell(column, row) != u"Missing")
                    texts << table().Cell(column, row);
        }
        return texts;
    }
    void openComparison() {
        open();
        window->model().edit().chooseMode(AnalysisMode::Comparison);
        for (const QString& study : {u"SV2014"_s, u"SV2018"_s, u"SV2022"_s})
            ASSERT_TRUE(window->comparison().addVariable(study, u"LZUFR"_s));
        window->model().edit().chooseFilterText(u"GESCHL=1 AND ALTERJ>29 AND ALTERJ<61"_s);
        ASSERT_TRUE(window->comparison().cmd_AddTrend());
        goTo(1);
    }
};

} // namespace

TEST_F(AnalysisGrid, WhatIsEmptyByItsMakingTakesNoRoomAndMarksCanStillBeSet) {
    open();
    chooseStudy(u"SV2018"_s);
    type(u"dbcVariableUni"_s, u"GESCHL"_s);
    press(u"Option2"_s);
    type(u"dbcVariable2Uni"_s, u"LZUFR:"_s);
    goTo(1);
    const int character = grid()->fontMetrics().averageCharWidth();
    EXPECT_GT(width(markColumn), 0);
    EXPECT_LT(width(markColumn), 5 * character) << "a place to click at, not a column";
    EXPECT_LT(height(markRow), height(markRow + 1));
    EXPECT_TRUE(head(markColumn, Qt::ToolTipRole).contains(u"als fehlend markieren"_s));
    const QStringList cells = clipText(table()).split(u'\r');

    show(1);
    const int sum = table().shape.sumColumn;
    EXPECT_EQ(width(markColumn) + height(markRow) + width(sum), 0);
    EXPECT_GT(width(sum + 1), 0);
    EXPECT_EQ(table().Cell(sum, 0), u"Summe") << "the cells stay";
    the<QComboBox>(u"cbValues"_s)->setFocus();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    ASSERT_TRUE(grid()->hasFocus());
    EXPECT_TRUE(grid()->visualRect(grid()->currentIndex()).isValid()) << "the keyboard starts at what is seen";

    show(0);
    EXPECT_EQ(clipText(table()).split(u'\r'), cells);
    clickCell(markColumn, 3);
    clickCell(4, markRow);
    EXPECT_EQ(table().Cell(markColumn, 3) + u'|' + table().Cell(4, markRow), u"X|X");
    click(u"cmdComputeAnew"_s);
    EXPECT_GT(width(markColumn), 5 * character) << "now it says something";
    show(2);
    EXPECT_GT(width(markColumn), 0);
    EXPECT_GT(height(markRow), 0);
}

TEST_F(AnalysisGrid, HeadsOfAComparisonSayWhatTellsTheEntriesApartAndTheTooltipAll) {
    openComparison();
    EXPECT_EQ(head(3), u"SV2014, 2014");
    EXPECT_EQ(head(6), u"SV2022, 2022 (F. GESCHL=1 AND ALTERJ>29 AND ALTERJ<61)");
    EXPECT_EQ(table().Cell(3, 0), u"SV2014, LZUFR, 2014, Lebenslage");
    EXPECT_TRUE(head(3, Qt::ToolTipRole).contains(u"SV2014, LZUFR, 2014, Lebenslage"_s));
    EXPECT_GT(grid()->horizontalHeader()->height(), 2 * grid()->fontMetrics().height()) << "in more than one line";
    for (const int part : {1, 2, 3}) {
        window->resize(1500 / part, 700);
        settle();
        const int used = grid()->horizontalHeader()->length() + grid()->verticalHeader()->width();
        EXPECT_TRUE(cut().isEmpty() || used >= grid()->viewport()->width())
            << part << " " << cut().join(u" / "_s).toStdString();
    }
    const int sum = table().shape.sumRow, spare = table().Rows() - 1;
    EXPECT_GT(height(sum), 0);
    show(1);
    EXPECT_EQ(height(sum) + height(spare), 0);
    EXPECT_GT(height(sum + 1), 0);
}

TEST_F(AnalysisGrid, GroupsOfStatisticsStandThereWithTheirLabels) {
    open();
    chooseStudy(u"SV2018"_s);
    type(u"dbcVariableUni"_s, u"LZUFR"_s);
    gOptions.AskMissing = false;
    press(u"Option4(3)"_s);
    press(u"chkDescGroup"_s);
    type(u"dbcVariable2Uni"_s, u"GESUND"_s);
    goTo(1);
    const auto group = [&](int row) {
        return grid()->model()->headerData(row - 1, Qt::Vertical, Qt::DisplayRole).toString();
    };
    EXPECT_EQ(table().Cell(0, 1), u"1");
    EXPECT_EQ(group(1), u"1 sehr gut");
    EXPECT_EQ(group(table().Rows() - 1), u"9 keine Angabe (Missing)");
    window->copy();
    EXPECT_TRUE(asker.clipboardHtml.contains(u">1 sehr gut</th>"_s));
}

TEST_F(AnalysisGrid, ShowsTheOrderThatTheUserGivesAndSaysSo) {
    open();
    EXPECT_FALSE(window->canOrder());
    chooseStudy(u"SV2018"_s);
    type(u"dbcVariableUni"_s, u"GESCHL"_s);
    goTo(1);
    ASSERT_TRUE(window->canOrder());
    const QString first = table().Cell(1, 1), second = table().Cell(1, 2);
    std::vector<int> order{1, 0};
    for (int i = 2; i < table().shape.rows.count(); ++i)
        order.push_back(i);
    asker.order(order);
    window->showPosition();
    settle();
    EXPECT_EQ(table().Cell(1, 1), second);
    EXPECT_EQ(table().Cell(1, 2), first);
    const QString note = u"Die Reihenfolge der Zeilen oder Spalten wurde von Hand geändert."_s;
    EXPECT_TRUE(the<QLabel>(u"lblFacts"_s)->text().contains(note));
    gOptions.TellOfCopies = false;
    window->copy();
    EXPECT_LT(asker.clipboardText.indexOf(second), asker.clipboardText.indexOf(first));
    EXPECT_TRUE(asker.clipboardHtml.contains(note));
    goTo(0);
    EXPECT_FALSE(window->canOrder());
    goTo(1);
    EXPECT_EQ(table().Cell(1, 1), second) << "the same request keeps its table";
}
