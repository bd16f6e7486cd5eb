#include "analysis/AnalysisModel.h"
#include "app/globals.h"
#include "catalogue/CDaoDatabase.h"
#include "config/Options.h"
#include "support/PrintQt.h"
#include "support/ScriptedAsker.h"
#include "support/TestCatalogue.h"
#include "support/TestHome.h"

#include <QMap>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

class TableOrder : public testing::Test {
protected:
    TestHome home;
    ScriptedAsker asker;
    TestCatalogue catalogue{home.path()};
    AnalysisModel model;

    void SetUp() override {
        catalogue.fill();
        ASSERT_EQ(catalogue.open(), 1);
        gOptions.AskMissing = false;
        gOptions.IncludeMissingXTab = true;
        model.open();
    }
    const TableResult& result() const { return model.result(); }
    const ResultTable& grid() const { return result().mfgGrid; }

    void table(AnalysisMode mode, const QString& variable, const QString& other = QString()) {
        ASSERT_TRUE(model.edit().StudyClick(u"QX1919"_s));
        model.edit().chooseMode(mode);
        ASSERT_TRUE(model.edit().chooseVariable(variable));
        if (!other.isEmpty())
            model.edit().chooseVariable2(other);
        model.changeTab(0);
        model.changeTab(1);
        ASSERT_TRUE(result().hasTable());
    }
    void compare() {
        model.edit().chooseMode(AnalysisMode::Comparison);
        for (const QString& study : {u"QX1919"_s, u"QX2020"_s}) {
            ASSERT_TRUE(model.edit().StudyClick(study));
            ASSERT_TRUE(model.edit().chooseVariable(u"V5"_s));
            model.comparison().cmd_AddTrend();
        }
        model.changeTab(1);
        ASSERT_TRUE(result().hasTable());
    }
    bool order(TableLines lines, std::vector<int> places) {
        asker.order(std::move(places));
        return model.order(lines);
    }
    void mark(int row) { model.mfgGrid_Click({.Row = row, .RowSel = row, .Col = markColumn, .ColSel = markColumn}); }

    static QString row(const ResultTable& table, int row) {
        QStringList cells;
        for (int column = 0; column < table.Cols(); ++column)
            cells << table.Cell(column, row).trimmed();
        return cells.join(u'|');
    }
    static QStringList rows(const ResultTable& table) {
        QStringList all;
        for (int i = 0; i < table.Rows(); ++i)
            all << row(table, i);
        return all;
    }
    /// Every cell by what stands at the heads of its row and column: an order must leave each where it belongs.
    static QMap<QString, QString> byHeads(const ResultTable& table) {
        QMap<QString, QString> cells;
        const bool crosstab = table.Tag == TableKind::Crosstab;
        for (int r = 0; r < table.Rows(); ++r)
            for (int c = 0; c < table.Cols(); ++c)
                cells[table.Cell(0, r) + u'/' + table.Cell(1, r) + u" x "_s + table.Cell(c, 0) + u'/' +
                      (crosstab ? table.Cell(c, 1) : QString())] += table.Cell(c, r) + u';';
        return cells;
    }
    static QStringList bases(const ResultTable& table) {
        QStringList all;
        for (const PercentBase& base : table.bases)
            all << base.value + base.label + u'=' + base.n;
        return all;
    }
};

TEST_F(TableOrder, CumulatesInTheNewOrderAndLeavesAllOtherNumbersWithTheirValues) {
    // SYSMIS 1, "1" twice, "2" twice, "3" once
    for (const bool comma : {true, false}) {
        gOptions.CommaInPercent = comma;
        table(AnalysisMode::Frequency, u"V6"_s);
        model.computeAnew();
        const QStringList before = rows(grid());
        const std::optional<QString> command = model.command();
        EXPECT_TRUE(result().orderable(TableLines::Columns).isEmpty());
        ASSERT_TRUE(order(TableLines::Rows, {3, 0, 1, 2}));
        EXPECT_EQ(asker.orders.back().lines, (QStringList{u"SYSMIS"_s, u"1"_s, u"2"_s, u"3"_s}));
        const auto number = [&](QString text) { return comma ? text : text.replace(u',', u'.'); };
        EXPECT_EQ(row(grid(), 1), number(u"3|||1|16,7|20,0|20,0"_s));
        EXPECT_EQ(row(grid(), 2), number(u"|SYSMIS|X|1|16,7||"_s));
        EXPECT_EQ(row(grid(), 3), number(u"1|||2|33,3|40,0|60,0"_s));
        EXPECT_EQ(row(grid(), 4), number(u"2|||2|33,3|40,0|100,0"_s));
        EXPECT_EQ(rows(grid()).mid(5), before.mid(5));
        EXPECT_EQ(grid().shape.nullRow, 2);
        EXPECT_EQ(model.tableState(), TableState::Current);
        EXPECT_EQ(result().notes().size(), 1);
        EXPECT_EQ(model.command(), command);
        model.changeTab(2);
        QStringList drawn;
        for (const auto& category : model.chart().model().categories)
            drawn << category.code;
        EXPECT_EQ(drawn, (QStringList{u"3"_s, u"1"_s, u"2"_s}));
        model.changeTab(1);
        ASSERT_TRUE(order(TableLines::Rows, {1, 2, 3, 0}));
        EXPECT_EQ(rows(grid()), before);
        EXPECT_TRUE(result().notes().isEmpty());
        EXPECT_FALSE(result().made);
    }
}

TEST_F(TableOrder, AMarkGoesToTheValueThatIsPointedAt) {
    QStringList without;
    for (const bool ordered : {false, true}) {
        table(AnalysisMode::Frequency, u"V6"_s);
        asker.answer(ui::Answer::Yes).answer(ui::Answer::Yes);
        model.cmdCalculate();
        ASSERT_TRUE(!ordered || order(TableLines::Rows, {3, 2, 1, 0}));
        mark(ordered ? 2 : 3); // value 2
        EXPECT_EQ(model.tableState(), TableState::OtherMarks);
        model.computeAnew();
        EXPECT_FALSE(result().made);
        without << rows(grid()).join(u'\n');
        EXPECT_EQ(grid().Cell(markColumn, 3), u"X"_s);
    }
    EXPECT_EQ(without.first(), without.last());
}

TEST_F(TableOrder, EveryViewOfACrosstabFollows) {
    for (int view = 0; view < 4; ++view) {
        for (const TableLines lines : {TableLines::Rows, TableLines::Columns}) {
            table(AnalysisMode::Crosstab, u"V5"_s, u"V7"_s);
            model.chooseValues(view);
            QList<QMap<QString, QString>> before;
            QList<QStringList> basesBefore;
            for (int shown = 0; shown < 4; ++shown) {
                model.chooseValues(shown);
                before << byHeads(grid());
                basesBefore << bases(grid());
            }
            model.chooseValues(view);
            const QStringList heads = result().orderable(lines);
            ASSERT_GE(heads.size(), 2);
            std::vector<int> reversed;
            for (int i = static_cast<int>(heads.size()) - 1; i >= 0; --i)
                reversed.push_back(i);
            ASSERT_TRUE(order(lines, reversed));
            for (int shown = 0; shown < 4; ++shown) {
                model.chooseValues(shown);
                EXPECT_EQ(byHeads(grid()), before[shown]) << view << shown;
                QStringList expected = basesBefore[shown];
                const bool ofLines = shown == (lines == TableLines::Columns ? 1 : 2);
                if (ofLines)
                    std::reverse(expected.begin(), expected.end() - 1);
                EXPECT_EQ(bases(grid()), expected) << view << shown;
            }
            model.chooseValues(view);
            QStringList backwards = result().orderable(lines);
            std::reverse(backwards.begin(), backwards.end());
            EXPECT_EQ(backwards, heads);
            EXPECT_EQ(model.tableState(), TableState::Current);
            model.changeTab(0);
            model.edit().chooseMode(AnalysisMode::Frequency);
        }
    }
}

TEST_F(TableOrder, TheEntriesOfAComparisonTakeTheirNumbersAlong) {
    compare();
    QList<QMap<QString, QString>> before;
    for (int view = 0; view < 2; ++view) {
        model.chooseValues(view);
        before << byHeads(grid());
    }
    const QStringList basesBefore = bases(grid());
    const std::optional<QString> command = model.command();
    const std::vector<StatedCases> cases = grid().shape.cases;
    ASSERT_TRUE(order(TableLines::Columns, {1, 0}));
    EXPECT_TRUE(asker.orders.back().lines[0].contains(u"1919"_s));
    EXPECT_EQ(bases(grid()), QStringList(basesBefore.rbegin(), basesBefore.rend()));
    EXPECT_EQ(grid().shape.cases, std::vector<StatedCases>(cases.rbegin(), cases.rend()));
    EXPECT_EQ(result().facts->origin.cases, grid().shape.cases);
    ASSERT_TRUE(order(TableLines::Rows, {2, 1, 0, 3}));
    for (const int view : {1, 0, 1}) {
        model.chooseValues(view);
        EXPECT_EQ(byHeads(grid()), before[view]) << view;
    }
    EXPECT_TRUE(grid().Cell(3, 0).contains(u"2020"_s));
    EXPECT_EQ(grid().Cell(0, 1) + grid().Cell(0, 3), u"2"_s); // system-missing has no text
    EXPECT_EQ(model.command(), command);
    model.changeTab(2);
    EXPECT_TRUE(model.chart().model().series.at(0).code.contains(u"2020"_s));
    EXPECT_EQ(model.tableState(), TableState::Current);
}

/// Two entries of one head are told apart by what the user calls them in the chart.
TEST_F(TableOrder, WhatTheChartCallsAnEntryGoesWithItsNumbers) {
    gOptions.HeaderAddFilter = false;
    model.edit().chooseMode(AnalysisMode::Comparison);
    for (const QString& filter : {QString(), u"V7=1"_s}) {
        ASSERT_TRUE(model.edit().StudyClick(u"QX1919"_s));
        ASSERT_TRUE(model.edit().chooseVariable(u"V5"_s));
        if (!filter.isEmpty())
            model.edit().chooseFilterText(filter);
        model.comparison().cmd_AddTrend();
    }
    model.changeTab(1);
    ASSERT_EQ(grid().Cell(3, 0), grid().Cell(4, 0));
    const QString all = grid().Cell(3, grid().shape.sumRow);
    ASSERT_NE(grid().Cell(4, grid().shape.sumRow), all);
    model.changeTab(2);
    LabelTable labels = model.chart().labelTable();
    labels.items.at(0).label = u"Alle"_s;
    model.changeChart(labels);
    model.changeTab(1);
    ASSERT_TRUE(order(TableLines::Columns, {1, 0}));
    EXPECT_EQ(result().notes().last(),
              u"Die Reihenfolge der Einträge wurde von Hand geändert; der erste ist: "_s + grid().Cell(3, 0));
    model.changeTab(2);
    labels = model.chart().labelTable();
    EXPECT_EQ(grid().Cell(labels.items.at(1).place, grid().shape.sumRow), all);
    EXPECT_EQ(labels.items.at(1).label, u"Alle"_s);
    EXPECT_NE(labels.items.at(0).label, u"Alle"_s);
}

TEST_F(TableOrder, IsOfferedWhereThereIsSomethingToOrder) {
    EXPECT_FALSE(model.canOrder());
    table(AnalysisMode::Frequency, u"V6"_s);
    EXPECT_TRUE(model.canOrder());
    const QStringList before = rows(grid());
    asker.order(std::nullopt).order(std::vector{0, 1, 2, 3});
    EXPECT_FALSE(model.showPosition());
    EXPECT_FALSE(model.showPosition());
    EXPECT_EQ(rows(grid()), before);
    EXPECT_TRUE(result().notes().isEmpty());
    table(AnalysisMode::Crosstab, u"V5"_s, u"V7"_s);
    asker.answer(ui::Answer::Cancel).answer(ui::Answer::No).order(std::vector{1, 0});
    EXPECT_FALSE(model.showPosition());
    EXPECT_TRUE(model.showPosition());
    EXPECT_EQ(grid().Cell(grid().shape.columns.first, 0) + grid().Cell(grid().shape.columns.first, 1), u"2weiblich"_s);
    table(AnalysisMode::Descriptives, u"V9"_s);
    const QStringList statistics = rows(grid());
    std::vector<int> turned;
    for (int i = static_cast<int>(result().orderable(TableLines::Rows).size()) - 1; i >= 0; --i)
        turned.push_back(i);
    ASSERT_TRUE(order(TableLines::Rows, turned));
    EXPECT_TRUE(asker.orders.back().lines.contains(u"ArithmeticMean"_s));
    EXPECT_EQ(rows(grid()).at(1), statistics.at(static_cast<qsizetype>(turned.size())));
    EXPECT_EQ(model.tableState(), TableState::Current);
}

} // namespace
