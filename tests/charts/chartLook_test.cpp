#include "ChartMaker.h"
#include "charts/chartType.h"
#include "charts/paintChart.h"
#include "charts/palette.h"
#include "charts/patterns.h"
#include "charts/symbols.h"

#include <QFontInfo>
#include <QPainter>
#include <array>
#include <cmath>

using namespace Qt::StringLiterals;
using namespace charts;

namespace {

QImage painted(const std::vector<ChartShape>& shapes, const QSizeF& millimetres, int dpi) {
    ChartLayout layout;
    layout.size = millimetres;
    layout.shapes = shapes;
    return chartImage(layout, dpi);
}

/// Part of the pixels that clearly differ.
double difference(const QImage& a, const QImage& b) {
    int differing = 0;
    for (int y = 0; y < a.height(); ++y)
        for (int x = 0; x < a.width(); ++x)
            differing += std::abs(qGray(a.pixel(x, y)) - qGray(b.pixel(x, y))) > 60;
    return static_cast<double>(differing) / (a.width() * a.height());
}

using Triple = std::array<double, 3>;
using Matrix = std::array<Triple, 3>;

/// Linear RGB as people see it who lack one kind of cone: Machado, Oliveira and Fernandes, A Physiologically-based
/// Model for Simulation of Color Vision Deficiency, IEEE TVCG 15 (2009), severity 1.0; and as everybody else does.
const std::array<Matrix, 4> sights{{
    {{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}},
    {{{0.152286, 1.052583, -0.204868}, {0.114503, 0.786281, 0.099216}, {-0.003882, -0.048116, 1.051998}}},
    {{{0.367322, 0.860646, -0.227968}, {0.280085, 0.672501, 0.047413}, {-0.011820, 0.042940, 0.968881}}},
    {{{1.255528, -0.076749, -0.178779}, {-0.078411, 0.930809, 0.147602}, {0.004733, 0.691367, 0.303900}}},
}};

Triple times(const Matrix& matrix, const Triple& v) {
    Triple result;
    for (size_t i = 0; i < 3; ++i)
        result[i] = matrix[i][0] * v[0] + matrix[i][1] * v[1] + matrix[i][2] * v[2];
    return result;
}

/// CIE L*a*b* of an sRGB colour (IEC 61966-2-1, white D65) as it is seen.
Triple lab(QRgb color, const Matrix& sight) {
    const auto linear = [](int channel) {
        const double c = channel / 255.0;
        return c <= 0.04045 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
    };
    Triple seen = times(sight, {linear(qRed(color)), linear(qGreen(color)), linear(qBlue(color))});
    for (double& channel : seen)
        channel = std::clamp(channel, 0.0, 1.0);
    const Triple xyz = times(
        {{{0.4124564, 0.3575761, 0.1804375}, {0.2126729, 0.7151522, 0.0721750}, {0.0193339, 0.1191920, 0.9503041}}},
        seen);
    const auto f = [](double t) { return t > 0.008856 ? std::cbrt(t) : 7.787 * t + 16.0 / 116; };
    const double x = f(xyz[0] / 0.95047), y = f(xyz[1]), z = f(xyz[2] / 1.08883);
    return {116 * y - 16, 500 * (x - y), 200 * (y - z)};
}

double distance(const Triple& a, const Triple& b) {
    return std::hypot(a[0] - b[0], a[1] - b[1], a[2] - b[2]);
}

} // namespace

TEST(ChartLook, EachTwoPatternsDifferOnAScreenAndInPrint) {
    for (const int dpi : {96, 600}) {
        std::vector<QImage> images;
        const QRectF area(0, 0, 6, 12);
        for (int pattern = 1; pattern <= patternCount; ++pattern) {
            PatternFill fill = patternFill(pattern, area);
            ASSERT_FALSE(fill.shapes.empty());
            for (const QPolygonF& shape : fill.shapes)
                EXPECT_TRUE(area.adjusted(-1e-9, -1e-9, 1e-9, 1e-9).contains(shape.boundingRect()))
                    << "cut to the area";
            images.push_back(painted({{{QPolygonF(area)}, fill.darkGround ? 0xff000000 : paperColor},
                                      {fill.shapes, fill.darkGround ? paperColor : 0xff000000}},
                                     area.size(), dpi));
        }
        for (size_t a = 0; a < images.size(); ++a)
            for (size_t b = a + 1; b < images.size(); ++b)
                EXPECT_GT(difference(images[a], images[b]), 0.05)
                    << a + 1 << " and " << b + 1 << " at " << dpi << " dpi";
    }
}

TEST(ChartLook, ShadesHaveTheirShareOfBlack) {
    const double shares[] = {0.94, 0.88, 0.75, 0.5, 0.25};
    for (int pattern = 1; pattern <= 5; ++pattern) {
        const QRectF area(0, 0, 19, 19);
        const PatternFill fill = patternFill(pattern, area);
        double covered = 0;
        for (const QPolygonF& shape : fill.shapes)
            covered += shape.boundingRect().width() * shape.boundingRect().height();
        const double share = covered / (area.width() * area.height());
        EXPECT_NEAR(fill.darkGround ? 1 - share : share, shares[pattern - 1], 0.02) << pattern;
    }
}

TEST(ChartLook, EachTwoMarkersDiffer) {
    std::vector<QImage> images;
    for (int symbol = 0; symbol < noSymbol; ++symbol)
        images.push_back(painted(symbolShapes(symbol, {2, 2}, inkColor), {4, 4}, 192));
    EXPECT_TRUE(symbolShapes(noSymbol, {2, 2}, inkColor).empty());
    for (size_t a = 0; a < images.size(); ++a)
        for (size_t b = a + 1; b < images.size(); ++b)
            EXPECT_GT(difference(images[a], images[b]), 0.01) << a << " and " << b;
}

TEST(ChartLook, NeighbouringColoursDifferForEverybodyAndInGrey) {
    for (int i = 0; i < seriesColors; ++i) {
        const QRgb color = seriesColor(i), next = seriesColor(i + 1);
        for (const Matrix& sight : sights)
            EXPECT_GT(distance(lab(color, sight), lab(next, sight)), 20) << i;
        EXPECT_GT(std::abs(lab(color, sights[0])[0] - lab(next, sights[0])[0]), 10) << i;
        EXPECT_GT(distance(lab(color, sights[0]), lab(paperColor, sights[0])), 30) << i << " on paper";
        for (int other = 0; other < std::min(i, 6); ++other) // as many as a chart usually has
            for (const Matrix& sight : sights)
                EXPECT_TRUE(i >= 6 || distance(lab(color, sight), lab(seriesColor(other), sight)) > 15)
                    << i << " and " << other;
    }
}

TEST(ChartLook, BarsAreAsHighAsTheirValuesWithinAPixel) {
    const std::vector<std::optional<double>> values = {100, 50, 25, 1, 0, 73.3, std::nullopt, -40};
    for (const int dpi : {96, 192}) {
        const ChartModel model = frequency({}, values);
        const ChartLayout layout = layOut(model);
        const QImage image = chartImage(layout, dpi);
        const double unit = layout.plot.height() / (layout.axisMaximum - layout.axisMinimum) * dpi / 25.4;
        for (size_t i = 0; i < values.size(); ++i) {
            const double x = layout.plot.left() + layout.plot.width() * (static_cast<double>(i) + 0.5) / 8 + 2;
            int filled = 0;
            for (double y = 0; y < layout.size.height(); y += 25.4 / dpi)
                filled += at(image, dpi, x, y) == seriesColor(0);
            // The line of zero lies on the end of each bar.
            const double line = values[i].value_or(0) == 0 ? 0 : 0.25 / 2 * dpi / 25.4;
            EXPECT_NEAR(filled + line, std::abs(values[i].value_or(0)) * unit, 1.5) << "bar " << i << " at " << dpi;
        }
        EXPECT_FALSE(std::any_of(layout.hits.begin(), layout.hits.end(), [](const ChartHit& hit) {
            return hit.series >= 0 && hit.category == 6;
        })) << "an empty point is nowhere";
    }
}

TEST(ChartLook, BarsThatDoNotBeginAtZeroOrGoBeyondTheScaleAreBroken) {
    ChartModel model = frequency({}, {25, 28});
    const auto broken = [&] {
        const ChartLayout layout = layOut(model);
        const QImage image = chartImage(layout, 192);
        const double x = layout.plot.left() + layout.plot.width() / 4;
        int gaps = 0;
        bool inBar = true;
        for (double y = layout.plot.bottom() - 1; y > layout.plot.top() + 0.5; y -= 25.4 / 192) {
            const bool filled = at(image, 192, x, y) == seriesColor(0);
            gaps += !inBar && filled;
            inBar = filled;
        }
        return gaps;
    };
    EXPECT_EQ(broken(), 0);
    model.scale = {false, 10, 30, 4};
    EXPECT_EQ(broken(), 1);
    model.scale = {false, 0, 30, 4};
    EXPECT_EQ(broken(), 0);
    model.scale = {false, 0, 20, 4};
    EXPECT_EQ(broken(), 1) << "it ends at 25";
    model.scale = {false, 10, 20, 4};
    EXPECT_EQ(broken(), 2);
}

TEST(ChartLook, LinesAreBrokenAtGapsAndAPointAloneIsSeen) {
    ChartModel model = comparison(numbered(u"v"_s, 7), {u"s"_s}, ChartType::Lines);
    model.values[0] = {valueOf(5), valueOf(5), {}, valueOf(5), {}, valueOf(5), valueOf(5)};
    model.styles = {{false, noSymbol, {}}};
    const ChartLayout layout = layOut(model);
    const QImage image = chartImage(layout, 192);
    const double y = layout.plot.bottom() - layout.plot.height() * 5 / (layout.axisMaximum - layout.axisMinimum);
    const auto drawn = [&](double category) {
        const double x = layout.plot.left() + layout.plot.width() * (category + 0.5) / 7;
        for (double above = -0.3; above <= 0.3; above += 0.05)
            if (at(image, 192, x, y + above) == seriesColor(0))
                return true;
        return false;
    };
    for (const double there : {0.0, 0.5, 1.0, 3.0, 5.0, 5.5})
        EXPECT_TRUE(drawn(there)) << there;
    for (const double gap : {1.5, 2.0, 2.5, 3.5, 4.5})
        EXPECT_FALSE(drawn(gap)) << gap;
}

TEST(ChartLook, LinesEndWhereTheUsersScaleEnds) {
    ChartModel model = comparison(numbered(u"v"_s, 4), {u"s"_s}, ChartType::Lines);
    model.values[0] = {valueOf(5), valueOf(500), valueOf(-500), valueOf(5)};
    model.scale = {false, 0, 10, 5};
    const ChartLayout layout = layOut(model);
    const QImage image = chartImage(layout, 96);
    for (int x = 0; x < image.width(); ++x)
        for (int y = static_cast<int>((layout.plot.bottom() + 0.6) * 96 / 25.4);
             y < static_cast<int>((layout.plot.bottom() + 8) * 96 / 25.4); ++y)
            ASSERT_NE(image.pixel(x, y) | 0xff000000, seriesColor(0));
}

TEST(ChartLook, TypeIsAsWideAtEveryResolution) {
    // "Arial" itself comes from the one of these that is there; any other would be of other widths.
    EXPECT_TRUE(QStringList({u"Arial"_s, u"Liberation Sans"_s, u"Arimo"_s}).contains(QFontInfo(chartFont()).family()))
        << qPrintable(QFontInfo(chartFont()).family());
    ChartModel model = frequency({}, {1});
    model.caption = u"Zufriedenheit mit der Demokratie in Deutschland, 2018"_s;
    const ChartLayout layout = layOut(model);
    const ChartText& title = layout.texts.front();
    ASSERT_EQ(title.text, model.caption);
    for (const int dpi : {96, 192, 600}) {
        const QImage image = chartImage(layout, dpi);
        const int top = static_cast<int>((title.at.y() - title.size) * dpi / 25.4),
                  bottom = static_cast<int>(title.at.y() * dpi / 25.4);
        int last = 0;
        for (int y = std::max(top, 0); y < bottom; ++y)
            for (int x = 0; x < image.width(); ++x)
                if (qGray(image.pixel(x, y)) < 128)
                    last = std::max(last, x);
        // The last letter has a little white behind it.
        EXPECT_NEAR((last + 1) * 25.4 / dpi, title.at.x() + title.width, 0.3 + 25.4 / dpi) << dpi;
    }
}
