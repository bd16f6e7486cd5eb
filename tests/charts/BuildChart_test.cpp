#include "ChartTables.h"

#include "support/KeptTexts.h"

using namespace Qt::StringLiterals;

namespace {

/// So many values from 1 on, each with as many cases.
TestRecordsets::Rows manyValues(int count) {
    TestRecordsets::Rows rows;
    for (int value = 1; value <= count; ++value)
        rows.push_back({value, value});
    return rows;
}

/// The options of a crosstab by the bits of a number.
void setOptions(Options& options, unsigned bits) {
    const std::array<bool Options::*, 10> all{&Options::IncludeMissingXTab, &Options::IncludeMissingInPercentXTab,
                                              &Options::IncludeNinXTab,     &Options::IncludeNinXTabPercent,
                                              &Options::NoColumnLabels,     &Options::IncludeNinXTabPercentNFirst,
                                              &Options::NoRowLabels,        &Options::ShowValidSums,
                                              &Options::ShowPercentSign,    &Options::CommaInPercent};
    for (size_t i = 0; i < all.size(); ++i)
        options.*all[i] = (bits >> i & 1) != 0;
}

} // namespace

TEST_F(ChartTables, AFrequencyHasItsValuesAsCountsOrAsPercentages) {
    buildFrequency({{null, 1}, {1, 3}, {2, 5}, {9, 1}}, u"9"_s, {{u"1"_s, u"ja"_s}, {u"9"_s, u"k.A."_s}});
    const struct {
        bool absolute, missing;
        QString items, points, yTitle;
    } cases[] = {{true, false, u"ja=1| =2"_s, u"3 5"_s, u"Anzahl"_s},
                 {true, true, u"SYSMIS=|ja=1| =2|k.A.=9"_s, u"1 3 5 1"_s, u"Anzahl"_s},
                 {false, false, u"ja=1| =2"_s, u"37,5 62,5"_s, u"Prozent"_s},
                 {false, true, u"SYSMIS=|ja=1| =2|k.A.=9"_s, u"10,0 30,0 50,0 10,0"_s, u"Prozent"_s}};
    for (const auto& c : cases) {
        options_.TakeAbsolutValues = c.absolute;
        options_.IncludeMissing = c.missing;
        const ChartModel chart = chartOf(table_);
        EXPECT_EQ(itemsOf(chart.categories), c.items);
        EXPECT_EQ(pointsOf(chart), QStringList(c.points));
        EXPECT_EQ(chart.yTitle, c.yTitle);
        EXPECT_EQ(chart.percent, !c.absolute);
        EXPECT_EQ(chart.xTitle, QString());
        EXPECT_EQ(itemsOf(chart.series), u"="_s);
        EXPECT_FALSE(chart.legend);
        EXPECT_EQ(chart.caption, u"Titel"_s);
        EXPECT_EQ(chart.chartType, ChartType::Bars);
    }
    options_.IncludeMissing = true;
    const ChartModel all = chartOf(table_);
    EXPECT_TRUE(all.categories[0].marked && all.categories[3].marked && !all.categories[1].marked);
    EXPECT_EQ(all.categories[3].place, 4);
    EXPECT_DOUBLE_EQ(*all.values[0][2].value, 50.0);
}

/// The same table without numbers of cases and percent signs says what must come out.
TEST_F(ChartTables, ACrosstabHasTheValuesOfItsCellsUnderAllOptionsInEveryView) {
    keepCrosstabRows({{1, 1, 3}, {1, 2, 1}, {1, 8, 1}, {2, 1, 2}, {2, 2, 2}, {9, 1, 1}, {null, 2, 1}},
                     {{u"A"_s, u"1"_s, u"ja"_s}, {u"A"_s, u"9"_s, u"k.A."_s}, {u"B"_s, u"2"_s, u"West"_s}});
    Options& o = origin_.options;
    for (unsigned bits = 0; bits < 1024; ++bits) {
        setOptions(o, bits);
        const Options ofRun = o;
        o.IncludeNinXTab = o.IncludeNinXTabPercent = o.ShowPercentSign = false;
        buildCrosstab(u"9"_s, u"8"_s);
        const std::array<ResultTable, 5> plain = views_;
        o = ofRun;
        buildCrosstab(u"9"_s, u"8"_s);
        for (const int view : {0, 1, 2, 3})
            for (const bool missing : {false, true}) {
                options_.IncludeMissing = missing;
                const ResultTable& table = plain[static_cast<size_t>(view)];
                QStringList series, codes;
                for (int row = table.shape.rows.first; row <= table.shape.rows.last; ++row) {
                    QStringList points;
                    for (int column = table.shape.columns.first; column <= table.shape.columns.last; ++column)
                        if (missing || table.Cell(column, 2).isEmpty())
                            points << (table.Cell(column, row).isEmpty() ? u"."_s : table.Cell(column, row));
                    if (missing || table.Cell(2, row).isEmpty()) {
                        series << points.join(u' ');
                        codes << table.Cell(0, row);
                    }
                }
                const ChartModel chart = chartOf(views_[static_cast<size_t>(view)], view);
                ASSERT_EQ(pointsOf(chart), series) << bits << " view " << view;
                for (int i = 0; i < chart.seriesCount(); ++i)
                    ASSERT_EQ(chart.series[static_cast<size_t>(i)].code, codes[i]) << bits << " view " << view;
            }
    }
    EXPECT_TRUE(questions_.isEmpty());
    EXPECT_DOUBLE_EQ(*chartOf(views_[1], 1).values[1][0].value, 50) << "3 (50,0%)";
    o.CommaInPercent = false;
    buildCrosstab(u"9"_s, u"8"_s);
    EXPECT_DOUBLE_EQ(*chartOf(views_[1], 1).values[2][0].value, 33.3) << "2 (33.3%)";
    o.IncludeMissingInPercentXTab = true;
    buildCrosstab(u"9"_s, u"8"_s);
    views_[1].setCell(3, 3, u"270"_s);
    EXPECT_FALSE(chartOf(views_[1], 1).values[0][0].value) << "cases whose percentage could not be computed";
}

TEST_F(ChartTables, ACrosstabHasItsRowsAsSeriesAndItsColumnsAsCategories) {
    keepCrosstabRows({{1, 1, 3}, {1, 2, 1}, {2, 1, 2}, {2, 2, 2}},
                     {{u"A"_s, u"1"_s, u"ja"_s}, {u"B"_s, u"2"_s, u"West"_s}});
    buildCrosstab();
    const ChartModel chart = chartOf(views_[0]);
    EXPECT_EQ(itemsOf(chart.series), u"1=ja|2= "_s);
    EXPECT_EQ(itemsOf(chart.categories), u" =1|West=2"_s);
    EXPECT_EQ(pointsOf(chart), (QStringList{u"3 1"_s, u"2 2"_s}));
    EXPECT_EQ(chart.yTitle, u"Fälle"_s);
    EXPECT_TRUE(chart.legend);
    EXPECT_EQ(chartOf(views_[1], 1).yTitle, u"Prozent"_s);
    EXPECT_EQ(chartOf(views_[0]).percentOf, QString());
    EXPECT_EQ(chartOf(views_[2], 2).percentOf, u"Zeilenprozente"_s);

    keepCrosstabRows({{1, 1, 3}, {1, 2, 1}}, {});
    origin_.options.ShowValidSums = false;
    buildCrosstab();
    for (const int view : {0, 1, 2, 3})
        EXPECT_EQ(chartOf(views_[static_cast<size_t>(view)], view).seriesCount(), 1) << "one row is drawn";
    keepCrosstabRows({{1, 1, 0}}, {});
    buildCrosstab();
    const ChartModel empty = chartOf(views_[0]);
    EXPECT_TRUE(empty.isEmpty());
    EXPECT_EQ(empty.caption, QString());
    EXPECT_EQ(tabChartOf(views_[0]).caption, u"Titel"_s) << "who turns to it keeps the title";
}

TEST_F(ChartTables, TwoPlacesMoreAreEmptyForWhoTurnsToAChartOfPercentagesWithNumbersOfCases) {
    keepCrosstabRows({{1, 1, 3}, {1, 2, 1}, {2, 1, 2}, {2, 2, 2}}, {});
    for (const bool n : {false, true}) {
        origin_.options.IncludeNinXTab = n;
        buildCrosstab();
        for (const int view : {0, 1, 2, 3}) {
            const ResultTable& table = views_[static_cast<size_t>(view)];
            const ChartModel after = chartOf(table, view), tab = tabChartOf(table, view);
            const int more = n && view > 0 ? 2 : 0;
            ASSERT_EQ(tab.seriesCount(), after.seriesCount() + more);
            ASSERT_EQ(tab.categoryCount(), after.categoryCount() + more);
            EXPECT_EQ(after.seriesCount(), 2);
            for (int series = 0; series < tab.seriesCount(); ++series)
                for (int category = 0; category < tab.categoryCount(); ++category)
                    EXPECT_EQ(tab.values[series][category],
                              series < 2 && category < 2 ? after.values[series][category] : ChartPoint());
            if (more > 0) {
                EXPECT_EQ(tab.series.back().place, -1);
                EXPECT_EQ(itemsOf({tab.categories.back()}), u" = "_s);
            }
        }
    }
    options_.MaxItems = 3;
    answers_ = {u"2"_s};
    const ChartModel chart = tabChartOf(views_[1], 1);
    EXPECT_EQ(questions_.size(), 2) << "they count when it is asked where to begin";
    EXPECT_TRUE(questions_[0].endsWith(u"(1-4)"_s));
    EXPECT_EQ(chart.rowsShown.of, 2) << "and are nothing that a chart leaves out";
    EXPECT_EQ(chart.rowsShown.shown, 1);
    EXPECT_EQ(chart.columnsShown.shown, 2);
}

TEST_F(ChartTables, AComparisonHasGapsWhereAStudyLacksAValue) {
    setUpComparison(2);
    addEntry(1, u"QX1, V5"_s, {{1, 10}, {2, 30}, {4, 60}, {9, 6}}, u"9"_s);
    addEntry(2, u"QX2, V5"_s, {{1, 5}, {3, 15}}, u"9"_s);
    const ChartModel chart = chartOf(views_[0]);
    EXPECT_EQ(itemsOf(chart.series), u"QX1, V5=|QX2, V5="_s);
    EXPECT_EQ(itemsOf(chart.categories), u" =1| =2| =3| =4"_s);
    EXPECT_EQ(pointsOf(chart), (QStringList{u"10 30 . 60"_s, u"5 . 15 ."_s}));
    EXPECT_EQ(chart.chartType, ChartType::Lines);
    EXPECT_EQ(chart.yTitle, u"Fälle"_s);
    EXPECT_TRUE(chart.legend);
    options_.TrendGraphLine = false;
    // Options about crosstabs are none about a comparison.
    origin_.options.IncludeNinXTab = origin_.options.IncludeNinXTabPercent = true;
    origin_.options.IncludeNinXTabPercentNFirst = true;
    const ChartModel percent = tabChartOf(views_[1], 1);
    EXPECT_EQ(pointsOf(percent), (QStringList{u"10,0 30,0 . 60,0"_s, u"25,0 . 75,0 ."_s}));
    EXPECT_EQ(percent.chartType, ChartType::Bars);
    EXPECT_EQ(percent.yTitle, u"Prozent"_s);
    options_.IncludeMissing = true;
    EXPECT_EQ(pointsOf(chartOf(views_[0])), (QStringList{u"10 30 . 60 6"_s, u"5 . 15 . ."_s}));
}

TEST_F(ChartTables, AnAxisWithTooManyItemsAsksWordForWord) {
    buildFrequency(manyValues(70), u"61 thru 70"_s);
    options_.MaxItems = 50;
    answers_ = {u"55"_s};
    const ChartModel last = chartOf(table_);
    EXPECT_EQ(questions_, QStringList(u"Es sind mehr als 50 Ausprägungen vorhanden.  Die Grafik wird maximal 50 Werte "
                                      "darstellen. Bitte geben Sie den ersten Wert ein: (1-60)"_s));
    EXPECT_EQ(pointsOf(last), QStringList(u"55 56 57 58 59 60"_s));
    EXPECT_EQ(last.firstRow(), 55);
    EXPECT_EQ(last.rowsShown.first, 55);
    EXPECT_EQ(last.rowsShown.shown, 6);
    EXPECT_EQ(last.rowsShown.of, 60);
    loadKeptTexts();
    gLanguage = 1;
    questions_.clear();
    chartOf(table_);
    EXPECT_EQ(questions_,
              QStringList(u"There are more than 50 values.  This graphic will show 50 items maximum. Please "
                          "enter the start value: (1-60)"_s));
    gLanguage = 0;

    questions_.clear();
    options_.MaxItems = 1;
    keepCrosstabRows({{1, 1, 1}, {2, 2, 2}, {3, 1, 4}}, {});
    buildCrosstab();
    answers_ = {u"3"_s, u"1"_s};
    EXPECT_EQ(pointsOf(chartOf(views_[0])), QStringList(u"4"_s));
    setUpComparison(2);
    addEntry(1, u"QX1"_s, {{1, 10}, {2, 30}});
    addEntry(2, u"QX2"_s, {{1, 5}});
    answers_ = {u"2"_s, u"2"_s};
    EXPECT_EQ(pointsOf(chartOf(views_[0])), QStringList(u"."_s));
    const QString rest =
        u" vorhanden.  Die Grafik wird maximal 1 Werte darstellen. Bitte geben Sie den ersten Wert ein: "_s;
    EXPECT_EQ(questions_, (QStringList{u"Es sind mehr als 1 Zeilen"_s + rest + u"(1-3)"_s,
                                       u"Es sind mehr als 1  Spalten"_s + rest + u"(1-2)"_s,
                                       u"Es sind mehr als 1  Zeilen"_s + rest + u"(1-2)"_s,
                                       u"Es sind mehr als 1  Spalten"_s + rest + u"(1-2)"_s}));
    asker_.input(u"2"_s);
    EXPECT_EQ(askForStart(u"Frage"_s), u"2"_s);
}

TEST_F(ChartTables, AnAnswerThatIsNoNumberOfAnItemCountsAsTheFirst) {
    buildFrequency(manyValues(70), u"61 thru 70"_s);
    options_.MaxItems = 50;
    for (const QString& answer :
         {u""_s, u"61"_s, u"abc"_s, u"0"_s, u"-3"_s, u"5 x"_s, u"1e300"_s, u"99999999999999999999"_s}) {
        answers_ = {answer};
        const ChartModel chart = chartOf(table_);
        EXPECT_EQ(chart.firstRow(), 1) << answer.toStdString();
        EXPECT_EQ(chart.categoryCount(), 50) << answer.toStdString();
    }
    answers_ = {u" 60 "_s};
    EXPECT_EQ(chartOf(table_).categoryCount(), 1);
    const ChartModel unasked =
        BuildChartForTab({.table = table_, .caption = {}, .origin = origin_, .options = options_}, StartPrompt());
    EXPECT_EQ(unasked.firstRow(), 1) << "nobody is there to be asked";
}

TEST_F(ChartTables, ItemsBeginWhereTheOptionsSayUnlessSomebodyTurnsToTheChart) {
    buildFrequency(manyValues(8));
    options_.MaxItems = 4;
    options_.StartItem = 3;
    EXPECT_EQ(pointsOf(chartOf(table_)), QStringList(u"3 4 5 6"_s));
    options_.StartItem = 9;
    EXPECT_EQ(pointsOf(chartOf(table_)), QStringList(u"1 2 3 4"_s))
        << "one that there is not is no reason for an empty chart";
    options_.StartItem = 3;
    EXPECT_TRUE(questions_.isEmpty());
    EXPECT_EQ(pointsOf(tabChartOf(table_)), QStringList(u"1 2 3 4"_s));
    EXPECT_EQ(questions_.size(), 1);
    options_.MaxItems = 8;
    EXPECT_EQ(chartOf(table_).categoryCount(), 8) << "what fits is shown whole";
    options_.StartItem = 0;
    for (const int few : {0, -5}) {
        options_.MaxItems = few;
        answers_ = {u"7"_s};
        EXPECT_EQ(pointsOf(chartOf(table_)), QStringList(u"7"_s));
        EXPECT_TRUE(questions_.last().startsWith(u"Es sind mehr als 1 Auspr"_s));
    }
}

TEST_F(ChartTables, SeriesAreDrawnByTheirNumber) {
    setUpComparison(18);
    for (int entry = 1; entry <= 18; ++entry)
        addEntry(entry, u"QX%1"_s.arg(entry), {{1, entry}});
    const auto numbers = [&] {
        QStringList list;
        for (const ItemStyle& style : chartOf(views_[0]).styles)
            list << QString::number(style.number) + (style.pattern ? u"p"_s : QString());
        return list.join(u' ');
    };
    EXPECT_EQ(numbers(), u"15 15 15 15 15 15 15 15 15 15 15 15 15 15 15 15 15 15"_s)
        << "lines in colour have no symbols";
    options_.GraphColor = false;
    EXPECT_EQ(numbers(), u"1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 0 1 2"_s);
    EXPECT_FALSE(chartOf(views_[0]).color);
    options_.TrendGraphLine = false;
    EXPECT_EQ(numbers(), u"1p 2p 3p 4p 5p 6p 7p 8p 9p 10p 11p 12p 13p 14p 1p 2p 3p 4p"_s);
    buildFrequency(manyValues(3));
    const ChartModel bars = chartOf(table_);
    ASSERT_EQ(bars.styles.size(), 3u) << "a style for each value";
    EXPECT_EQ(bars.styles[2], (ItemStyle{.pattern = true, .number = 1})) << "all of one series";
    options_.GraphColor = true;
    EXPECT_EQ(chartOf(table_).styles[2], ItemStyle());
}

TEST_F(ChartTables, ACellThatIsNoNumberIsReportedUnlessSomebodyTurnsToTheChart) {
    buildFrequency(manyValues(3));
    table_.setCell(3, 2, u"viel"_s);
    asker_.answer(ui::Answer::Ignore);
    EXPECT_EQ(pointsOf(chartOf(table_)), QStringList(u"1 . 3"_s));
    asker_.answer(ui::Answer::Abort);
    EXPECT_EQ(pointsOf(chartOf(table_)), QStringList(u"1 . ."_s));
    EXPECT_EQ(asker_.boxes.size(), 2u);
    EXPECT_EQ(pointsOf(tabChartOf(table_)), QStringList(u"1 . 3"_s));
    EXPECT_EQ(asker_.boxes.size(), 2u);
    table_.Tag = TableKind::Descriptives;
    EXPECT_TRUE(chartOf(table_).isEmpty()) << "statistics have no chart";
}
