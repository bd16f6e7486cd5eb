#include "analysis/AnalysisWindow.h"

#include "language/mdLanguage.h"

#include <QHeaderView>

/// The window and the language of its words.
class AnalysisLanguage : public AnalysisWindow {
protected:
    AnalysisModel& model() { return window->model(); }
    void mark(int tableRow, int tableColumn) {
        auto* grid = the<ResultTableView>(u"mfgGrid"_s);
        const ResultTable& table = grid->table();
        grid->setCurrentIndex(grid->model()->index(tableRow - table.FixedRows, tableColumn - table.FixedCols));
        QTest::keyClick(grid, Qt::Key_Space);
    }
    void switchTo(int language) {
        setLanguage(language);
        mdLanguage::RefreshForms({Form::open().begin(), Form::open().end()});
        settle();
    }
    QString cell(int column, int row) { return the<ResultTableView>(u"mfgGrid"_s)->table().Cell(column, row); }
};

TEST_F(AnalysisLanguage, TheTitleFollowsTheRequestAndTellsWindowsApart) {
    open();
    EXPECT_EQ(window->windowTitle(), u"Auswertung 1"_s);
    chooseStudy(u"SV2018"_s);
    EXPECT_EQ(window->windowTitle(), u"Auswertung 1"_s) << "no variable yet";
    type(u"dbcVariableUni"_s, u"LZUFR:"_s);
    EXPECT_EQ(window->windowTitle(), u"SV2018 LZUFR - Häufigkeiten"_s);
    const std::unique_ptr<frmAuswertung> second(frmAuswertung::openFrom(nullptr));
    second->setAttribute(Qt::WA_DeleteOnClose, false);
    second->model().edit().StudyClick(u"SV2018"_s);
    second->model().edit().chooseVariable(u"LZUFR"_s);
    second->optionsApplied();
    EXPECT_EQ(second->windowTitle(), u"SV2018 LZUFR - Häufigkeiten (2)"_s);
    EXPECT_EQ(window->windowTitle(), u"SV2018 LZUFR - Häufigkeiten"_s);
    switchTo(1);
    EXPECT_EQ(window->windowTitle(), u"SV2018 LZUFR - Frequencies"_s);
    the<QRadioButton>(u"Option2"_s)->click();
    EXPECT_EQ(window->windowTitle(), u"SV2018 LZUFR - Crosstab"_s);
}

TEST_F(AnalysisLanguage, MarksStayWithTheirValuesHoweverTheTableIsTranslated) {
    open();
    chooseStudy(u"SV2018"_s);
    type(u"dbcVariableUni"_s, u"LZUFR:"_s);
    window->comparison().addVariable(u"SV2018"_s, u"LZUFR"_s);
    struct Case {
        QString mode;
        int firstRow;                 ///< of the values
        int wordColumn, wordFromLast; ///< where a word stands
        QString word;                 ///< in German
    };
    const std::vector<Case> cases{{u"Option1"_s, 1, 1, 1, u"Gültige Fälle"_s},
                                  {u"Option2"_s, 3, 0, 1, u"Gült. Summe"_s},
                                  {u"Option5"_s, 1, 1, 2, u"Gültige Fälle"_s}};
    for (const Case& one : cases) {
        SCOPED_TRACE(one.mode.toStdString());
        goTo(0);
        press(one.mode);
        const bool crosstab = one.mode == u"Option2";
        if (crosstab)
            type(u"dbcVariable2Uni"_s, u"GESCHL"_s);
        goTo(1);
        ASSERT_EQ(model().tableState(), TableState::Current);
        mark(one.firstRow + 1, 2);
        if (crosstab)
            mark(2, 4);
        const QString value = cell(0, one.firstRow + 1);
        const auto expectMarked = [&](bool translated) {
            EXPECT_EQ(cell(0, one.firstRow + 1), value);
            EXPECT_EQ(cell(2, one.firstRow + 1), u"X");
            EXPECT_TRUE(!crosstab || cell(4, 2) == u"X");
            EXPECT_EQ(model().tableState(), TableState::Current);
            const QString word = cell(one.wordColumn, model().result().mfgGrid.Rows() - one.wordFromLast);
            EXPECT_EQ(word, TranslateText(one.word));
            EXPECT_EQ(word != one.word, translated);
        };
        switchTo(1);
        click(u"cmdComputeAnew"_s);
        expectMarked(true);
        const QString valid = cell(3, model().result().mfgGrid.Rows() - one.wordFromLast);
        switchTo(0);
        goTo(0);
        goTo(1);
        expectMarked(false);
        EXPECT_EQ(cell(3, model().result().mfgGrid.Rows() - one.wordFromLast), valid) << "counted by the marks";
        switchTo(1);
        click(u"cmdComputeAnew"_s);
        expectMarked(true);
        switchTo(0);
    }
}

TEST_F(AnalysisLanguage, LongHeadingsAndLabelsLeaveTheFiguresInView) {
    openTable();
    auto* grid = the<ResultTableView>(u"mfgGrid"_s);
    const QString heading = u"SV2018, LZUFR, 2018 (G. GEWREP) (F. GESCHL=1 AND ALTER>30)"_s, label = QString(200, u'W');
    ResultTable table;
    table.Tag = TableKind::Comparison;
    table.FixedRows = table.FixedCols = 2;
    table.setRows(4);
    table.setCols(6);
    for (int column = 0; column < 6; ++column) {
        table.setCell(column, 0, heading);
        table.setCell(column, 2, column < 3 ? label : u"12345"_s);
        table.setColWidth(column, 80 * 200);
    }
    grid->updateTable(table);
    settle();
    EXPECT_LE(grid->verticalHeader()->width(), grid->width() / 2);
    EXPECT_GT(grid->verticalHeader()->width(), grid->width() / 3);
    const int character = grid->fontMetrics().averageCharWidth();
    EXPECT_LE(grid->columnWidth(0), 45 * character) << "a label";
    for (int column = 1; column < 4; ++column) {
        EXPECT_LE(grid->columnWidth(column), 24 * character);
        EXPECT_GE(grid->columnWidth(column), grid->fontMetrics().horizontalAdvance(u"12345"_s));
        EXPECT_TRUE(
            grid->model()->headerData(column, Qt::Horizontal, Qt::ToolTipRole).toString().contains(u"ALTER&gt;30"_s));
    }
    EXPECT_TRUE(grid->model()->headerData(0, Qt::Vertical, Qt::ToolTipRole).toString().contains(label));
    // A figure is never cut short.
    const QString figure(60, u'8');
    table.setCell(5, 3, figure);
    table.setColWidth(5, 80 * 201);
    grid->updateTable(table);
    EXPECT_GE(grid->columnWidth(3), grid->fontMetrics().horizontalAdvance(figure));
    // The window may change its size; what is narrow anyway stays as the table has it.
    window->resize(window->width() / 2, window->height());
    settle();
    EXPECT_LE(grid->verticalHeader()->width(), grid->width() / 2);
}
