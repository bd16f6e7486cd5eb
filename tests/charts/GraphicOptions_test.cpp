#include "charts/GraphicOptions.h"

#include "app/globals.h"
#include "platform/system/NumberFormat.h"
#include "support/KeptTexts.h"
#include "support/PrintQt.h"
#include "support/ScriptedAsker.h"
#include "support/TestHome.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

constexpr QRgb blue = 0xff0000ff;

/// Two studies over two values, as lines or bars; the second place of the series may be one that no column fills.
ChartModel comparisonChart(ChartType type, int series = 2) {
    ChartModel chart;
    chart.kind = TableKind::Comparison;
    chart.chartType = type;
    chart.caption = u"Titel"_s;
    chart.categories = {{u"ja"_s, u"1"_s, u"1"_s, 1}, {u"nein"_s, u"2"_s, u"2"_s, 2}};
    for (int i = 0; i < series; ++i)
        chart.series.push_back({u"S"_s + QString::number(i + 1), {}, u"S"_s + QString::number(i + 1), 3 + i});
    chart.values.resize(static_cast<size_t>(series), {{1.0, u"1"_s}, {2.0, u"2"_s}});
    chart.styles.resize(static_cast<size_t>(series));
    return chart;
}

const ValueScale shown{true, 0, 4.5, 3};

class ChartChoices : public testing::Test {
protected:
    ChartChoices() { NumberFormat::setDecimalSeparator(u','); }
    ~ChartChoices() override { NumberFormat::setDecimalSeparator(before_); }

    TestHome home_;
    ScriptedAsker asker_;

private:
    QChar before_ = NumberFormat::decimalSeparator();
};

} // namespace

TEST_F(ChartChoices, PatternsCountFromOneAndSymbolsFromZeroEachInItsOwnOrder) {
    GraphicOptions bars(comparisonChart(ChartType::Bars), shown, false);
    ASSERT_EQ(bars.styleNames().size(), 14);
    EXPECT_EQ(bars.styleNames()[0], u"94%-Musterfarbe"_s);
    EXPECT_EQ(bars.styleNames()[13], u"Invertiertes Spaliermuster"_s);
    EXPECT_EQ(bars.style(), -1) << "it has a colour";
    bars.chooseStyle(0);
    EXPECT_EQ(bars.current().style, (ItemStyle{true, 1}));
    bars.chooseStyle(13);
    EXPECT_EQ(bars.current().style, (ItemStyle{true, 14}));
    EXPECT_EQ(bars.style(), 13);
    bars.setColor(blue);
    EXPECT_EQ(bars.current().style, (ItemStyle{false, 14, blue}));
    bars.setPatternOrColor(true);
    EXPECT_EQ(bars.style(), 13) << "the pattern that it had";
    bars.choose(1);
    bars.setPatternOrColor(true);
    EXPECT_EQ(bars.style(), 1) << "the pattern of its place";

    bars.choose(0);
    bars.chkForAll = true;
    bars.setColor(blue);
    bars.setPatternOrColor(true);
    EXPECT_EQ(bars.labels().items[1].style, (ItemStyle{true, 2, blue})) << "each with its own pattern";
    LabelTable own = labelTableOf(comparisonChart(ChartType::Bars));
    bars.Titel = u"Anderes"_s;
    bars.chkFromToAuto = false;
    bars.reset(own);
    QString fault;
    EXPECT_EQ(bars.cmdOK(fault), own);

    GraphicOptions lines(comparisonChart(ChartType::Lines), shown, false);
    ASSERT_EQ(lines.styleNames().size(), 16);
    EXPECT_EQ(lines.styleNames()[0], u"Bindestrich"_s);
    EXPECT_EQ(lines.styleNames()[15], u"Kein"_s);
    lines.chooseStyle(15);
    lines.setColor(blue);
    lines.setPatternOrColor(true);
    EXPECT_EQ(lines.current().style, (ItemStyle{false, 15, blue})) << "a line has both";
    lines.setAutocolor(true, blue);
    EXPECT_EQ(lines.current().style.color, std::nullopt);
    lines.setAutocolor(false, blue);
    EXPECT_EQ(lines.current().style.color, blue);

    loadKeptTexts();
    gLanguage = 1;
    EXPECT_EQ(lines.styleNames().mid(13), QStringList({u"filled down triangle"_s, u"3D ball"_s, u"none"_s}));
    EXPECT_EQ(GraphicOptions::noPattern(), u"(no Pattern)"_s);
    gLanguage = 0;
    EXPECT_EQ(GraphicOptions::noPattern(), u"(kein Muster)"_s);
}

TEST_F(ChartChoices, ALabelIsAskedForAndAnEmptyAnswerChangesNothing) {
    GraphicOptions options(comparisonChart(ChartType::Lines), shown, false);
    options.choose(1);
    for (const auto& [answer, label] : {std::pair(u""_s, u"S2"_s), {u"Welle <2>"_s, u"Welle <2>"_s}}) {
        asker_.input(answer);
        options.changeLabel();
        EXPECT_EQ(options.current().label, label);
    }
    options.setMissing(true);
    EXPECT_FALSE(options.current().missing) << "not offered here";
    options.Titel.clear();
    const ChartModel preview = options.preview();
    EXPECT_EQ(preview.series[1].level1, u"Welle <2>"_s);
    EXPECT_EQ(preview.series[0].level1, u"S1"_s);
    EXPECT_EQ(preview.caption, QString());
}

TEST_F(ChartChoices, OnlyFiftyOneItemsAreEditedAndPlacesWithoutAColumnAreNone) {
    ChartModel chart = comparisonChart(ChartType::Bars, 60);
    GraphicOptions options(chart, shown, false);
    EXPECT_EQ(options.labels().items.size(), 51u);
    options.choose(70);
    EXPECT_EQ(options.item(), 50);
    options.setColor(blue);
    EXPECT_EQ(options.preview().styles[50].color, blue);
    EXPECT_EQ(options.preview().styles[51], ItemStyle());
    EXPECT_EQ(options.preview().series[51].level1, u"S52"_s);
    for (ChartItem& series : chart.series)
        series.place = -1;
    EXPECT_EQ(GraphicOptions(chart, shown, true).item(), -1);
}

TEST_F(ChartChoices, AnAxisIsTakenOnlyIfItIsOne) {
    GraphicOptions options(comparisonChart(ChartType::Bars), shown, false);
    EXPECT_EQ(options.Maximum, u"4,5"_s) << "as it is drawn";
    const QString numbers = u"Bitte geben Sie als Minimum und Maximum der Achse je eine Zahl ein."_s,
                  order = u"Das Minimum der Achse muss kleiner sein als das Maximum."_s,
                  parts = u"Die Achse kann in 1 bis 50 Abschnitte geteilt werden."_s;
    const struct {
        QString minimum, maximum, division, words;
        ValueScale taken{};
    } cases[] = {
        {u"0"_s, u"10"_s, u"5"_s, {}, {false, 0, 10, 5}},
        {u"-2,5"_s, u" 2.5 "_s, u"50"_s, {}, {false, -2.5, 2.5, 50}},
        {u"0.125"_s, u"1234.567"_s, u"1"_s, {}, {false, 0.125, 1234.567, 1}}, // nobody groups digits so
        {u"1.000"_s, u"9000"_s, u"5"_s, numbers},                             // a thousand, or one
        {u"0"_s, u""_s, u"5"_s, numbers},
        {u"0"_s, u"zehn"_s, u"5"_s, numbers},
        {u"10"_s, u"10"_s, u"5"_s, order},
        {u"11"_s, u"10"_s, u"5"_s, order},
        {u"0"_s, u"10"_s, u"0"_s, parts},
        {u"0"_s, u"10"_s, u"51"_s, parts},
        {u"0"_s, u"10"_s, u"2,5"_s, parts},
        {u"0"_s, u"10"_s, u""_s, parts},
    };
    for (const auto& c : cases) {
        options.chkFromToAuto = false;
        options.Minimum = c.minimum;
        options.Maximum = c.maximum;
        options.Division = c.division;
        QString fault;
        const std::optional<LabelTable> taken = options.cmdOK(fault);
        EXPECT_EQ(fault, c.words) << c.minimum.toStdString() << ' ' << c.maximum.toStdString();
        EXPECT_EQ(taken.has_value(), c.words.isEmpty());
        EXPECT_EQ(taken ? taken->scale : ValueScale(), c.taken);
        EXPECT_EQ(options.preview().scale, c.taken) << "what is no axis is not drawn";
        options.chkFromToAuto = true;
        fault.clear();
        EXPECT_TRUE(options.cmdOK(fault)->scale.automatic) << "what is typed counts for nothing then";
    }
    const QString typed[][3] = {
        {u"100"_s, u"300"_s, u"4"_s}, {u"0.1"_s, u"0.4"_s, u"6"_s}, {u"60"_s, u"600"_s, u"6"_s}};
    GraphicOptions fresh(ChartModel(), {true, 0, 300, 6}, false);
    for (const auto& ends : typed) {
        fresh.Minimum = ends[0];
        fresh.Maximum = ends[1];
        fresh.divideAnew();
        EXPECT_EQ(fresh.Division, ends[2]) << ends[1].toStdString();
    }
    fresh.Maximum = u"10"_s;
    fresh.Division = u"7"_s;
    fresh.divideAnew();
    EXPECT_EQ(fresh.Division, u"7"_s) << "the user's own stays";
}
