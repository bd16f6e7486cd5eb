#include "analysis/AnalysisModel.h"
#include "app/globals.h"
#include "support/PrintQt.h"
#include "support/ScriptedAsker.h"
#include "support/TestCatalogue.h"
#include "support/TestHome.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

constexpr QRgb red = 0xffff0000;

/// The chart of V5 of QX1919, which has 1, 1, 2, 2, 9 and Null; V7 has 1 and 2 in turn; 9 is missing by definition.
class ChartOfWindow : public testing::Test {
protected:
    ChartOfWindow() : catalogue_(home_.path(u"archive"_s)) {
        catalogue_.fill();
        catalogue_.open();
        model_.open();
        model_.edit().StudyClick(u"QX1919"_s);
        model_.edit().chooseVariable(u"V5"_s);
    }

    TestHome home_;
    ScriptedAsker asker_;
    TestCatalogue catalogue_;
    AnalysisModel model_;

    const ChartModel& chart() const { return model_.chart().model(); }
    /// Code, label, missing and colour of the items, as the options show them.
    QString items() const {
        QStringList all;
        for (const LabelItem& item : model_.chart().labelTable().items)
            all << item.code + u'=' + item.label + (item.missing ? u"X"_s : QString()) +
                       (item.style.color ? u'#' + QString::number(*item.style.color & RGB_MASK, 16) : QString()) +
                       (item.style.pattern ? u'/' + QString::number(item.style.number) : QString());
        return all.join(u' ');
    }
    template<class Change>
    void change(Change&& step) {
        LabelTable labels = model_.chart().labelTable();
        step(labels);
        model_.changeChart(labels);
    }
    int rowOf(const QString& value) const {
        const ResultTable& table = model_.result().marked();
        for (int row = table.shape.rows.first; row <= table.shape.rows.last; ++row)
            if (table.Cell(0, row) == value)
                return row;
        return -1;
    }
    /// In the table and in the one that its views are made of.
    bool isMarked(const QString& value) const { return isMarkedRow(model_.result().marked(), rowOf(value)); }
    void crossWithV7() {
        model_.edit().chooseMode(AnalysisMode::Crosstab);
        model_.edit().chooseVariable2(u"V7"_s);
        model_.changeTab(2);
    }
};

} // namespace

TEST_F(ChartOfWindow, WhatWasChangedOutlivesALookAtTheTableAndFollowsItsValuesThroughOtherMarks) {
    EXPECT_EQ(model_.changeTab(2), RunOutcome::Computed);
    EXPECT_EQ(items(), u"1=zufrieden 2=unzufrieden"_s);
    const QString automatic = chart().caption;
    EXPECT_TRUE(automatic.contains(u"(N=4)"_s)) << automatic.toStdString();
    change([](LabelTable& labels) {
        labels.Titel = u"Meins (N=4)"_s;
        labels.items[0].style.color = red;
        labels.items[1].label = u"die Zwei"_s;
        labels.scale = {false, 0, 8, 4};
    });
    for (const int tab : {1, 0, 2})
        model_.changeTab(tab);
    EXPECT_EQ(items(), u"1=zufrieden#ff0000 2=die Zwei"_s);
    EXPECT_EQ(chart().caption, u"Meins (N=4)"_s);
    EXPECT_EQ(chart().scale, (ValueScale{false, 0, 8, 4}));
    EXPECT_EQ(model_.result().lblLabel, automatic) << "the table's title is its own";

    // 1 leaves the chart as missing: computed at once, without a word, and nobody is sent to the table.
    change([](LabelTable& labels) { labels.items[0].missing = true; });
    EXPECT_EQ(model_.tab(), 2);
    EXPECT_EQ(model_.facts().outcome, RunOutcome::Computed);
    EXPECT_EQ(model_.tableState(), TableState::Current);
    EXPECT_TRUE(isMarked(u"1"_s));
    EXPECT_EQ(items(), u"2=die Zwei"_s);
    EXPECT_EQ(chart().caption, u"Meins (N=2)"_s) << "no number of before under the new chart";
    // Its colour comes back with it.
    model_.changeTab(1);
    model_.mfgGrid_Click({rowOf(u"1"_s), rowOf(u"1"_s), markColumn, markColumn});
    model_.changeTab(2);
    EXPECT_EQ(items(), u"1=zufrieden#ff0000 2=die Zwei"_s);

    // Back to what the chart has by itself.
    change([&](LabelTable& labels) {
        labels.Titel = model_.result().lblLabel;
        labels.items[0].style.color.reset();
        labels.items[1].label = u"unzufrieden"_s;
        labels.scale = {};
    });
    model_.edit().chooseVariable(u"V7"_s);
    model_.changeTab(2);
    EXPECT_EQ(items(), u"1=männlich 2=weiblich"_s);
    EXPECT_EQ(chart().caption, model_.result().lblLabel);
    EXPECT_TRUE(chart().scale.automatic);
    EXPECT_EQ(asker_.texts(), QStringList());
}

TEST_F(ChartOfWindow, AnotherRequestHasNothingOfWhatWasChanged) {
    model_.changeTab(2);
    change([](LabelTable& labels) {
        labels.Titel = u"Meins"_s;
        labels.items[0].label = u"mein Wert"_s;
    });
    model_.edit().chooseVariable(u"V7"_s);
    model_.changeTab(1);
    model_.edit().chooseVariable(u"V5"_s);
    model_.changeTab(2);
    EXPECT_EQ(items(), u"1=mein Wert 2=unzufrieden"_s) << "no other chart was looked at";
    model_.edit().chooseVariable(u"V7"_s);
    model_.changeTab(2);
    EXPECT_EQ(items(), u"1=männlich 2=weiblich"_s);
    EXPECT_EQ(chart().caption, model_.result().lblLabel);
}

TEST_F(ChartOfWindow, EachViewHasItsOwnAndMarksAreOfferedForCountsOnly) {
    crossWithV7();
    EXPECT_EQ(items(), u"1=zufrieden 2=unzufrieden"_s) << "the rows are the series";
    EXPECT_TRUE(model_.chartMarksOffered());
    change([](LabelTable& labels) {
        labels.Titel = u"Anzahlen"_s;
        labels.items[1].label = u"die Zwei"_s;
        labels.scale = {false, 0, 10, 5};
    });
    EXPECT_EQ(chart().series[1].level1, u"2"_s);
    EXPECT_EQ(chart().series[1].level2, u"die Zwei"_s);
    model_.chooseValues(1);
    EXPECT_EQ(items(), u"1=zufrieden 2=unzufrieden"_s);
    EXPECT_TRUE(chart().percent && chart().scale.automatic);
    EXPECT_FALSE(model_.chartMarksOffered());
    change([](LabelTable& labels) {
        labels.items[0].style.pattern = true;
        labels.items[0].style.number = 3;
        labels.items[0].missing = true;
    });
    EXPECT_EQ(items(), u"1=zufrieden/3 2=unzufrieden"_s);
    EXPECT_FALSE(isMarked(u"1"_s)) << "in a view of percentages nothing is marked";
    model_.chooseValues(0);
    EXPECT_EQ(items(), u"1=zufrieden 2=die Zwei"_s);
    EXPECT_EQ(chart().caption, u"Anzahlen"_s);
    change([](LabelTable& labels) { labels.items[0].missing = true; });
    EXPECT_TRUE(isMarked(u"1"_s));
    EXPECT_EQ(items(), u"2=die Zwei"_s);
    model_.chooseValues(1);
    EXPECT_EQ(items(), u"2=unzufrieden"_s);
    EXPECT_EQ(model_.tab(), 2);
}

TEST_F(ChartOfWindow, AnAxisThatWasSetForCountsIsNoneForPercentages) {
    model_.changeTab(2);
    change([](LabelTable& labels) { labels.scale = {false, 0, 3, 3}; });
    gOptions.TakeAbsolutValues = false;
    model_.optionsApplied();
    EXPECT_TRUE(chart().percent && chart().scale.automatic);
    gOptions.TakeAbsolutValues = true;
    model_.optionsApplied();
    EXPECT_EQ(chart().scale, (ValueScale{false, 0, 3, 3}));
}

TEST_F(ChartOfWindow, ATableWhoseRunWasStoppedIsDrawnWithTheValuesThatItShows) {
    crossWithV7();
    RunHooks hooks = model_.hooks();
    hooks.begins = [this] { model_.stop(); };
    model_.setHooks(std::move(hooks));
    model_.computeAnew();
    ASSERT_EQ(model_.tableState(), TableState::Stopped);
    model_.chooseValues(1);
    EXPECT_TRUE(chart().percent);
    const int column = chart().categories[0].place, row = chart().series[0].place;
    EXPECT_EQ(chart().values[0][0].text + u'%', model_.result().mfgGrid.Cell(column, row));
}

TEST_F(ChartOfWindow, AColourWaitsWhileTheChartIsInBlackAndWhiteAndAPatternOutlivesAnOkThere) {
    crossWithV7();
    change([](LabelTable& labels) {
        labels.items[0].style = {true, 3, {}};
        labels.items[1].style.color = red;
    });
    gOptions.GraphColor = false;
    model_.optionsApplied();
    EXPECT_EQ(items(), u"1=zufrieden/3 2=unzufrieden#ff0000/2"_s) << "drawn with its pattern";
    change([](LabelTable& labels) { labels.items[1].label = u"die Zwei"_s; });
    gOptions.GraphColor = true;
    model_.optionsApplied();
    EXPECT_EQ(items(), u"1=zufrieden/3 2=die Zwei#ff0000"_s);
}

TEST_F(ChartOfWindow, TheFirstOfTooManyValuesIsAskedForOnceAndWhenItIsWanted) {
    gOptions.MaxItems = 1;
    asker_.input(u"2"_s);
    model_.changeTab(2);
    EXPECT_EQ(items(), u"2=unzufrieden"_s);
    EXPECT_EQ(chart().firstRow(), 2);
    EXPECT_TRUE(model_.chart().isPart());
    for (const int tab : {1, 2})
        model_.changeTab(tab);
    EXPECT_EQ(items(), u"2=unzufrieden"_s);
    change([](LabelTable& labels) { labels.items[0].label = u"die Zwei"_s; });
    asker_.input(QString());
    model_.chooseFirstValue();
    EXPECT_EQ(items(), u"2=die Zwei"_s) << "no answer";
    asker_.input(u"1"_s);
    model_.chooseFirstValue();
    EXPECT_EQ(items(), u"1=zufrieden"_s);
    // Options that are applied begin where the option says.
    gOptions.StartItem = 2;
    model_.optionsApplied();
    EXPECT_EQ(items(), u"2=die Zwei"_s);
    gOptions.MaxItems = 20;
    model_.optionsApplied();
    EXPECT_EQ(items(), u"1=zufrieden 2=die Zwei"_s);
    EXPECT_FALSE(model_.chart().isPart());
}

TEST_F(ChartOfWindow, WithoutNumbersToDrawItSaysWhy) {
    EXPECT_EQ(model_.chart().state(), WindowChart::State::NoTable);
    gOptions.AskMissing = false;
    model_.edit().chooseMode(AnalysisMode::Descriptives);
    model_.changeTab(2);
    EXPECT_EQ(model_.chart().reason(), u"Für deskriptive Statistiken gibt es keine Grafik."_s);
    model_.edit().chooseMode(AnalysisMode::Frequency);
    asker_.onEventTurn = [this] { model_.stop(); };
    model_.changeTab(2);
    EXPECT_EQ(model_.facts().outcome, RunOutcome::Cancelled);
    EXPECT_NE(model_.chart().state(), WindowChart::State::Drawn);
    EXPECT_TRUE(model_.chart().model().isEmpty());
    asker_.onEventTurn = {};
    model_.computeAnew();
    EXPECT_EQ(model_.tab(), 2);
    EXPECT_EQ(items(), u"1=zufrieden 2=unzufrieden"_s);
    EXPECT_EQ(model_.chart().reason(), QString());
}
