#include "ChartMaker.h"
#include "charts/palette.h"
#include "charts/valueAxis.h"

#include <QElapsedTimer>
#include <random>

using namespace Qt::StringLiterals;
using namespace charts;

namespace {

/// Whether two convex polygons share more than their edges: no line along a side of either parts them.
bool overlap(const QPolygonF& a, const QPolygonF& b) {
    for (const QPolygonF* polygon : {&a, &b}) {
        for (int i = 0; i < 4; ++i) {
            const QPointF side = (*polygon)[(i + 1) % 4] - (*polygon)[i], normal(-side.y(), side.x());
            const double length = std::hypot(normal.x(), normal.y());
            if (length == 0)
                return false;
            double low[2] = {1e9, 1e9}, high[2] = {-1e9, -1e9};
            for (int p = 0; p < 2; ++p) {
                for (const QPointF& corner : p == 0 ? a : b) {
                    const double place = QPointF::dotProduct(corner, normal) / length;
                    low[p] = std::min(low[p], place);
                    high[p] = std::max(high[p], place);
                }
            }
            if (high[0] < low[1] + 0.01 || high[1] < low[0] + 0.01)
                return false;
        }
    }
    return true;
}

void expectLegible(const ChartLayout& layout, const std::string& about) {
    const QRectF page = QRectF(QPointF(), layout.size).adjusted(-0.01, -0.01, 0.01, 0.01);
    for (size_t i = 0; i < layout.texts.size(); ++i) {
        const QPolygonF bounds = layout.texts[i].bounds();
        EXPECT_TRUE(std::all_of(bounds.begin(), bounds.end(), [&](const QPointF& p) { return page.contains(p); }))
            << about << ": " << qPrintable(layout.texts[i].text);
        for (size_t k = i + 1; k < layout.texts.size(); ++k)
            EXPECT_FALSE(overlap(bounds, layout.texts[k].bounds()))
                << about << ": " << qPrintable(layout.texts[i].text) << " on " << qPrintable(layout.texts[k].text);
    }
}

class RandomCharts {
public:
    explicit RandomCharts(unsigned seed) : random_(seed) {}

    ChartModel next() {
        const int kind = number(0, 3);
        const int most = number(0, 4) == 0 ? 30 : 9;
        const QStringList categories = labels(number(1, most)), series = labels(number(1, kind == 0 ? 1 : most));
        ChartModel model =
            kind == 0
                ? frequency(categories, std::vector<std::optional<double>>(static_cast<size_t>(categories.size()), 1))
            : kind == 1 ? crosstab(categories, series)
                        : comparison(categories, series, kind == 2 ? ChartType::Bars : ChartType::Lines);
        const bool negative = number(0, 5) == 0;
        for (std::vector<ChartPoint>& row : model.values)
            for (ChartPoint& point : row)
                point = number(0, 9) == 0 ? ChartPoint() : valueOf(number(negative ? -999 : 0, 999) / 10.0);
        for (int i = 0; i < std::max(model.seriesCount(), model.categoryCount()); ++i)
            model.styles.push_back({number(0, 1) == 1, number(0, 15), {}});
        model.caption = label(200);
        model.yTitle = u"Prozent"_s;
        model.rowsShown = {1, 5, number(5, 6)};
        if (number(0, 3) == 0)
            model.scale = {false, number(-50, 20) * 1.0, number(30, 100) * 1.0, number(1, 50)};
        return model;
    }
    QSizeF size() { return {number(40, 260) * 1.0, number(40, 180) * 1.0}; }

private:
    std::mt19937 random_;

    int number(int from, int to) { return std::uniform_int_distribution<int>(from, to)(random_); }

    QString label(int longest) {
        static const QStringList scripts = {u"abc deißgmW Tabelle/Zeile, "_s,
                                            u"非常满意、問題はない"_s,
                                            u"راضٍ جدًا عن الوضع (12) "_s,
                                            u"Очень доволен "_s,
                                            u"שביעות רצון "_s,
                                            u"n̈ğ e\u0301 Ωμέγα 😀 "_s};
        const QString& script = scripts[number(0, static_cast<int>(scripts.size()) - 1)];
        QString text;
        for (int left = number(0, 3) == 0 ? number(0, longest) : number(0, 15); left > 0; --left)
            text += script[number(0, static_cast<int>(script.size()) - 1)];
        return text;
    }
    QStringList labels(int count) {
        QStringList all;
        for (int i = 0; i < count; ++i)
            all << label(60);
        return all;
    }
};

/// The texts of a row below the plot, or of all rows.
QStringList belowPlot(const ChartLayout& layout) {
    QStringList texts;
    for (const ChartText& text : layout.texts)
        if (text.at.y() > layout.plot.bottom() + 2 && text.at.x() > layout.plot.left() - 25)
            texts << text.text;
    return texts;
}

} // namespace

TEST(ChartLayout, NoTextMeetsAnotherOrLeavesThePageAndTheAxisIsTheSame) {
    RandomCharts charts(13);
    for (int i = 0; i < 250; ++i) {
        const ChartModel model = charts.next();
        const QSizeF size = charts.size();
        const ChartLayout plot = layOut(model, size, ChartParts::Plot), whole = layOut(model, size, ChartParts::Whole);
        expectLegible(plot, "plot " + std::to_string(i));
        expectLegible(whole, "chart " + std::to_string(i));
        EXPECT_EQ(std::tuple(plot.axisMinimum, plot.axisMaximum, plot.axisDivision),
                  std::tuple(whole.axisMinimum, whole.axisMaximum, whole.axisDivision))
            << "a file has the axis that the screen has: chart " << i;
        if (HasFailure())
            return;
    }
}

TEST(ChartLayout, WhatIsShortenedStandsInFullInTheSamePicture) {
    const QStringList labels = numbered(u"Trifft auf mich persönlich in besonderem Maße zu "_s, 12);
    for (const ChartModel& model :
         {frequency(labels, std::vector<std::optional<double>>(12, 7)), crosstab(labels, {u"a"_s, u"b"_s}),
          comparison(labels, {u"a"_s, u"b"_s}, ChartType::Lines)}) {
        const ChartLayout layout = layOut(model);
        QString all = textsOf(layout).join(u' ').replace(QChar(QChar::Nbsp), u' ');
        for (const QString& label : labels)
            EXPECT_TRUE(all.contains(label)) << qPrintable(label) << " not in " << qPrintable(all);
        EXPECT_EQ(layout.secondLevelHidden, model.kind != TableKind::Frequency);
    }
}

TEST(ChartLayout, LabelsStandInOneLineThenInThreeThenSlantedThenGiveWayToABox) {
    const struct {
        QString word;
        int count;
        double lines, angle;
        bool hidden;
    } cases[] = {{u"gut"_s, 4, 1, 0, false},
                 {u"weder noch unentschieden"_s, 6, 2, 0, false},
                 {u"unentschieden"_s, 12, 1, 45, false},
                 {u"Weder zufrieden noch unzufrieden mit der Lage des Landes"_s, 12, 1, 0, true}};
    for (const auto& [word, count, lines, angle, hidden] : cases) {
        const ChartLayout layout = layOut(crosstab(QStringList(count, word), {u"a"_s, u"b"_s}));
        EXPECT_EQ(layout.secondLevelHidden, hidden) << qPrintable(word);
        const QString start = word.left(5);
        double angles = -1, rows = 0;
        for (const ChartText& text : layout.texts) {
            if (text.at.y() > layout.plot.bottom() && text.text.startsWith(start)) {
                angles = text.angle;
                EXPECT_EQ(text.text == word, lines == 1 && !hidden) << qPrintable(text.text);
            }
            if (word.contains(text.text) && text.at.y() > layout.plot.bottom())
                ++rows;
        }
        EXPECT_EQ(angles, angle) << qPrintable(word);
        if (!hidden) {
            EXPECT_EQ(rows, lines * count) << qPrintable(word);
            EXPECT_TRUE(belowPlot(layout).contains(QString::number(count))) << "the second level";
        }
        EXPECT_LE(layout.size.height() - layout.plot.bottom(), layout.size.height() / 3 + 12);
    }
}

TEST(ChartLayout, TheBoxHasThePairsOfBothLevels) {
    const QString word = u"Weder zufrieden noch unzufrieden mit der Lage "_s;
    const ChartLayout layout = layOut(crosstab(numbered(word, 9), {u"a"_s}), {120, 80}, ChartParts::Plot);
    EXPECT_TRUE(layout.explanation.startsWith(word + u"1 = 1\r\n"_s + word + u"2 = 2\r\n"_s));
    EXPECT_TRUE(layout.explanation.endsWith(word + u"9 = 9\r\n"_s));
    EXPECT_FALSE(belowPlot(layout).contains(u"9"_s));
    // On a page too low for the box its end says that there is more.
    for (int height = 40; height < 60; ++height)
        EXPECT_TRUE(textsOf(layOut(crosstab(numbered(word, 60), {u"a"_s}), {60.0, height * 1.0})).contains(u"…"_s))
            << height;
    EXPECT_EQ(layOut(crosstab({u"a"_s, u"b"_s}, {u"c"_s})).explanation, QString());
}

TEST(ChartLayout, LabelsOfAComparisonLoseTheirEntryBeforeTheyAreCut) {
    const QString entry = u" (SV2014, VPARL, 2014, Vertrauen in den Landtag und die Gemeinden der Region)"_s;
    const QStringList labels = {u"gar keines"_s + entry, entry, u"großes"_s + entry};
    ChartModel model = comparison(
        labels + labels + labels,
        {u"SV2014, VPARL, 2014, Vertrauen in den Landtag und die Gemeinden der Region (G. W1)"_s, u"SV2018"_s},
        ChartType::Lines);
    const ChartLayout layout = layOut(model, {120, 80}, ChartParts::Plot);
    ASSERT_TRUE(layout.secondLevelHidden);
    const QString texts = u' ' + textsOf(layout).join(u' ') + u' ';
    for (const QString& expected : {u" gar keines… 2 großes… "_s, u" gar keines… 5 großes… "_s})
        EXPECT_TRUE(texts.contains(expected)) << qPrintable(texts);
    EXPECT_TRUE(layout.explanation.startsWith(labels[0] + u" = 1\r\n"_s));
}

TEST(ChartLayout, LabelsThatBeginAlikeAreCutWhereTheyDoNotDiffer) {
    const QStringList labels = {u"Stimme der folgenden Aussage voll und ganz zu"_s,
                                u"Stimme der folgenden Aussage überhaupt nicht zu"_s,
                                u"Habe darüber noch niemals nachgedacht und werde es nicht tun"_s};
    const ChartLayout layout = layOut(crosstab(labels + numbered(u"a"_s, 7), {u"x"_s}), {150, 90}, ChartParts::Plot);
    QStringList shown;
    for (const ChartText& text : layout.texts)
        if (text.at.y() > layout.plot.bottom())
            shown << text.text;
    const QString all = shown.join(u' ');
    EXPECT_TRUE(all.contains(u"…voll und"_s) && all.contains(u"…überhaupt"_s) && all.contains(u"Habe dar"_s))
        << qPrintable(all);
}

TEST(ChartLayout, ValuesStandAtEveryBarOrPointOrAtNone) {
    const struct {
        ChartModel model;
        bool shown;
    } cases[] = {{frequency(numbered(u"v"_s, 7), std::vector<std::optional<double>>(7, 123)), true},
                 {crosstab(numbered(u"v"_s, 8), numbered(u"s"_s, 5)), true},
                 {crosstab(numbered(u"v"_s, 20), numbered(u"s"_s, 20)), false},
                 {comparison(numbered(u"v"_s, 5), {u"s"_s}, ChartType::Lines), true}};
    for (const auto& [model, shown] : cases) {
        ChartModel marked = model;
        for (std::vector<ChartPoint>& row : marked.values)
            for (ChartPoint& point : row)
                point.text = u"7,25"_s;
        const ChartLayout layout = layOut(marked);
        EXPECT_EQ(layout.valuesShown, shown);
        EXPECT_EQ(textsOf(layout).count(u"7,25"_s), shown ? model.categoryCount() * model.seriesCount() : 0);
        for (const ChartText& text : layout.texts) {
            for (const ChartHit& hit : layout.hits) {
                const bool ofBar = hit.category >= 0 && hit.series >= 0 && model.chartType == ChartType::Bars;
                EXPECT_FALSE(text.text == u"7,25"_s && ofBar && overlap(text.bounds(), hit.area))
                    << "a value lies on a bar";
            }
        }
    }
}

TEST(ChartLayout, AValueIsReadAsThatOfItsOwnPoint) {
    ChartModel model = comparison({u"a"_s, u"b"_s}, {u"x"_s, u"y"_s, u"z"_s}, ChartType::Lines);
    const auto shownWith = [&](double x, double y, double z) {
        model.values = {{valueOf(x), valueOf(10)}, {valueOf(y), valueOf(50)}, {valueOf(z), valueOf(90)}};
        return layOut(model).valuesShown;
    };
    EXPECT_TRUE(shownWith(20, 45, 80));
    EXPECT_FALSE(shownWith(44, 45, 46)) << "three numbers in a heap";
    EXPECT_FALSE(shownWith(45, 45, 80)) << "two on one point";
}

TEST(ChartLayout, TheAxisGoesInStepsOfOneTwoOrFiveFromZero) {
    const struct {
        std::vector<std::optional<double>> values;
        bool percent;
        double low, high;
        int parts;
    } cases[] = {{{97.0, 12.5}, true, 0, 100, 5},
                 {{99.96, 0.04}, true, 0, 100, 5},
                 {{592, 109}, false, 0, 600, 6},
                 {{1, 2, 3}, false, 0, 3, 3},
                 {{0, 0}, false, 0, 1, 1},
                 {{0.4, 1}, false, 0, 1, 5},
                 {{-30, 20}, false, -30, 20, 5},
                 {{-7}, false, -8, 0, 4},
                 {{0.3}, true, 0, 0.3, 6},
                 {{120.0, 3.0}, true, 0, 120, 6},
                 {{}, false, 0, 1, 1},
                 {{1e15}, false, 0, 1e15, 5},
                 {{std::nan(""), INFINITY, 5}, false, 0, 5, 5}};
    for (const auto& [values, percent, low, high, parts] : cases) {
        ChartModel model = frequency({}, values);
        model.percent = percent;
        ValueAxis axis = valueAxis(model, 6);
        EXPECT_DOUBLE_EQ(axis.low, low);
        EXPECT_DOUBLE_EQ(axis.high, high);
        if (values.size() && values[0] != 0) {
            EXPECT_EQ(static_cast<int>(axis.ticks.size()) - 1, parts) << low << " to " << high;
        }
        EXPECT_FALSE(axis.broken);
        EXPECT_EQ(axis.base, 0);
        EXPECT_EQ(axis.labels.removeDuplicates(), 0) << "two marks say the same";
    }
}

TEST(ChartLayout, TheUsersScaleIsKept) {
    ChartModel model = frequency({}, {15, 26, 8});
    model.scale = {false, 10, 30, 4};
    const ChartLayout layout = layOut(model);
    EXPECT_EQ(layout.axisMinimum, 10);
    EXPECT_EQ(layout.axisMaximum, 30);
    EXPECT_EQ(layout.axisDivision, 4);
    EXPECT_TRUE(valueAxis(model, 5).broken);
    model.scale = {false, 0, 1, 3};
    model.values[0][0].text = u"15,0"_s;
    EXPECT_EQ(valueAxis(model, 5).labels, QStringList({u"0,00"_s, u"0,33"_s, u"0,67"_s, u"1,00"_s}));
    for (const ValueScale& wrong : {ValueScale{false, 5, 5, 4}, ValueScale{false, 9, 1, 4},
                                    ValueScale{false, -INFINITY, 5, 4}, ValueScale{false, 0, std::nan(""), 4}}) {
        model.scale = wrong;
        EXPECT_EQ(valueAxis(model, 5).high, 30) << "by itself";
    }
    model.scale = {false, -1e300, 1e300, 5000};
    EXPECT_EQ(valueAxis(model, 5).ticks.size(), 51u);
}

TEST(ChartLayout, ALineSaysWhatIsLeftOut) {
    ChartModel model = frequency({}, {1, 2});
    model.rowsShown = {1, 20, 60};
    EXPECT_TRUE(textsOf(layOut(model)).contains(u"20 von 60, ab 1"_s));
    ChartModel cross = crosstab({u"a"_s}, {u"b"_s});
    cross.rowsShown = {3, 20, 60};
    cross.columnsShown = {2, 5, 9};
    EXPECT_TRUE(textsOf(layOut(cross, {180, 110}, ChartParts::Plot))
                    .contains(u"Zeilen: 20 von 60, ab 3; Spalten: 5 von 9, ab 2"_s));
    EXPECT_TRUE(textsOf(layOut(cross, {40, 40})).join(u' ').contains(u"ab 3; Spalten: 5 von 9"_s)) << "also in little";
}

TEST(ChartLayout, PercentagesSayWhatTheyAreOfOnce) {
    ChartModel model = crosstab({u"a"_s}, {u"b"_s});
    model.percentOf = u"Spaltenprozente"_s;
    model.caption = u"A nach B"_s;
    EXPECT_TRUE(textsOf(layOut(model)).contains(model.percentOf));
    model.caption += u", spaltenprozente"_s;
    EXPECT_FALSE(textsOf(layOut(model)).contains(model.percentOf));
    EXPECT_TRUE(textsOf(layOut(model, {180, 110}, ChartParts::Plot)).contains(model.percentOf));
}

TEST(ChartLayout, APlaceNamesItemSeriesAndValue) {
    ChartModel model = crosstab({u"Männer"_s, u"<b>Frauen</b>"_s}, {u"ja"_s, u"nein"_s});
    model.percent = true;
    model.values[1][1] = {12.5, u"12,5"_s};
    const ChartLayout layout = layOut(model);
    const auto bar = std::find_if(layout.hits.begin(), layout.hits.end(),
                                  [](const ChartHit& hit) { return hit.series == 1 && hit.category == 1; });
    ASSERT_NE(bar, layout.hits.end());
    const ChartHit* hit = layout.hitAt(bar->area.boundingRect().center());
    ASSERT_NE(hit, nullptr);
    EXPECT_EQ(chartTip(model, *hit), u"<b>Frauen</b> (2)\nnein (2)\n12,5 %"_s);
    EXPECT_EQ(layout.hitAt({-1, -1}), nullptr);
    for (int s : {0, 1}) // each has a place in the legend, too
        EXPECT_TRUE(std::any_of(layout.hits.begin(), layout.hits.end(),
                                [&](const ChartHit& h) { return h.series == s && h.category < 0; }));
}

TEST(ChartLayout, AnItemWithoutCodeAndLabelIsNamedWhereverItIsDrawn) {
    ChartModel cross = crosstab({u"a"_s, u" "_s}, {u"b"_s, u" "_s});
    cross.categories[1].level2 = cross.series[1].level1 = u" "_s;
    EXPECT_EQ(textsOf(layOut(cross)).count(u"(leer)"_s), 2) << "on the axis and in the legend";
    EXPECT_EQ(chartTip(cross, {{}, 1, 1}), u"(leer)\n(leer)\n"_s + cross.values[1][1].text);
    cross.categories[1].place = cross.series[1].place = -1;
    EXPECT_FALSE(textsOf(layOut(cross)).contains(u"(leer)"_s)) << "a place that nothing fills";
}

TEST(ChartLayout, SeriesOfOneLabelHaveTheirCodesInTheLegend) {
    const QStringList texts = textsOf(layOut(crosstab({u"a"_s}, {u"weiß nicht"_s, u"ja"_s, u"weiß nicht"_s})));
    EXPECT_TRUE(texts.contains(u"weiß nicht (1)"_s) && texts.contains(u"weiß nicht (3)"_s));
    EXPECT_TRUE(texts.contains(u"ja"_s));
}

TEST(ChartLayout, SignsThatNobodySeesAndTextsThatNobodyReadsDoNoHarm) {
    ChartModel model = crosstab({u"a\nb\tc\u0001"_s + QChar(0) + QChar(0xd800) + u"d"_s, QString(1000000, u'w')},
                                numbered(u"s"_s, 300));
    model.caption = QString(100000, u'W');
    QElapsedTimer time;
    time.start();
    const ChartLayout layout = layOut(model);
    EXPECT_LT(time.elapsed(), 20000) << "it ends";
    expectLegible(layout, "long");
    for (const QString& text : textsOf(layout))
        EXPECT_TRUE(std::none_of(text.begin(), text.end(), [](QChar sign) { return sign.unicode() < ' '; }))
            << qPrintable(text);
    EXPECT_TRUE(textsOf(layout).join(u' ').contains(u"a b c\uFFFDd"_s)) << "the rest is there";
}

TEST(ChartLayout, ThousandsOfItemsStayInBounds) {
    for (const ChartType type : {ChartType::Bars, ChartType::Lines}) {
        const ChartModel model = comparison(numbered(u"Ausprägung "_s, 3000), numbered(u"Studie "_s, 3), type);
        expectLegible(layOut(model), "many");
        EXPECT_LT(layOut(model).texts.size(), 1500u);
    }
    expectLegible(layOut(frequency(numbered(u"v"_s, 5000), std::vector<std::optional<double>>(5000, 1))), "frequency");
    expectLegible(layOut(frequency(numbered(u"Wert "_s, 20), std::vector<std::optional<double>>(20, 1)), {20, 20}),
                  "tiny");
}
