// Charts as a screen of 200 % shows them: laying out and painting against painting the finished texts and shapes with
// nothing around it, and how long a chart of 20 values and one of 20 by 20 take.

#include "Frame.h"
#include "Ratios.h"

#include "charts/chartType.h"
#include "charts/paintChart.h"

#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <algorithm>
#include <benchmark/benchmark.h>
#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

constexpr double pixelsPerMillimetre = 192 / 25.4;
constexpr int rounds = 31;

/// Labels as surveys have them: most short, some that need lines of their own.
QString labelOf(int item) {
    static const QString labels[] = {u"ja"_s, u"stimme eher zu"_s, u"weiß nicht"_s,
                                     u"Sehr zufrieden mit der wirtschaftlichen Lage"_s, u"keine Angabe"_s};
    return labels[item % 5] + u' ' + QString::number(item + 1);
}

ChartModel chartOf(TableKind kind, int series, int categories, bool color) {
    ChartModel chart;
    chart.kind = kind;
    chart.chartType = kind == TableKind::Comparison ? ChartType::Lines : ChartType::Bars;
    chart.caption = u"SV2022, LZUFR: Zufriedenheit mit dem Leben im Allgemeinen (N=3 000)"_s;
    chart.yTitle = u"Fälle"_s;
    chart.color = color;
    chart.legend = kind != TableKind::Frequency;
    for (int c = 0; c < categories; ++c)
        chart.categories.push_back({labelOf(c), QString::number(c + 1), QString::number(c + 1), c + 3});
    for (int s = 0; s < series; ++s) {
        if (kind == TableKind::Frequency)
            chart.series.emplace_back();
        else
            chart.series.push_back({QString::number(s + 1), labelOf(s), QString::number(s + 1), s + 3});
        std::vector<ChartPoint>& points = chart.values.emplace_back();
        for (int c = 0; c < categories; ++c) {
            const int value = 1 + (s * 31 + c * 17) % 97;
            points.push_back({value, QString::number(value)});
        }
    }
    for (int item = 0; item < (kind == TableKind::Frequency ? categories : series); ++item)
        chart.styles.push_back({.pattern = !color, .number = color ? 0 : item % 14 + 1});
    return chart;
}

QImage page() {
    const QSize pixels = (defaultChartSize * pixelsPerMillimetre).toSize();
    return QImage(pixels, QImage::Format_RGB32);
}

void paintWhole(QImage& image, const ChartModel& chart) {
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.scale(pixelsPerMillimetre, pixelsPerMillimetre);
    paintChart(painter, layOut(chart));
}

/// What any program has to do that has these texts and shapes.
void paintBare(QImage& image, const ChartLayout& layout) {
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(pixelsPerMillimetre, pixelsPerMillimetre);
    for (const ChartShape& shape : layout.shapes) {
        if (shape.pen > 0) {
            painter.setPen(QPen(QColor::fromRgb(shape.color), shape.pen));
            for (const QPolygonF& line : shape.lines)
                painter.drawPolyline(line);
        } else {
            painter.setPen(Qt::NoPen);
            painter.setBrush(QColor::fromRgb(shape.color));
            for (const QPolygonF& polygon : shape.lines)
                painter.drawPolygon(polygon);
        }
    }
    for (const ChartText& text : layout.texts) {
        painter.save();
        painter.setFont(chartFont(text.bold));
        painter.setPen(QColor::fromRgb(text.color));
        painter.translate(text.at);
        painter.rotate(-text.angle);
        painter.scale(text.size / referencePixels, text.size / referencePixels);
        painter.drawText(QPointF(), text.text);
        painter.restore();
    }
}

const struct {
    const char* name;
    ChartModel chart;
    double milliseconds; ///< that it may take; 0: no limit
} charts[] = {{"chart of 20 values", chartOf(TableKind::Frequency, 1, 20, true), 10},
              {"chart of 20 values, patterns", chartOf(TableKind::Frequency, 1, 20, false), 10},
              {"chart of 60 values", chartOf(TableKind::Frequency, 1, 60, true), 0},
              {"chart of 8 x 5", chartOf(TableKind::Crosstab, 8, 5, true), 0},
              {"chart of 20 x 20", chartOf(TableKind::Crosstab, 20, 20, true), 30},
              {"chart of 20 x 20, patterns", chartOf(TableKind::Crosstab, 20, 20, false), 30},
              {"chart of 8 studies by 20 values", chartOf(TableKind::Comparison, 8, 20, true), 0}};

void benchChart(size_t index) {
    const QString name = QString::fromLatin1(charts[index].name);
    const ChartModel& chart = charts[index].chart;
    const ChartLayout layout = layOut(chart);
    QImage image = page();
    double best = 1e9;
    const auto whole = [&] {
        const double time = seconds([&] { paintWhole(image, chart); });
        best = std::min(best, time);
        return time;
    };
    Ratios::measure(name + u", and its painting alone"_s, rounds, 3, whole,
                    [&] { return seconds([&] { paintBare(image, layout); }); });
    std::printf("%s: %zu shapes, %zu texts, best %.1f ms\n", charts[index].name, layout.shapes.size(),
                layout.texts.size(), best * 1000);
    if (charts[index].milliseconds > 0)
        Ratios::note(name + u": ms over %1"_s.arg(charts[index].milliseconds), best * 1000 / charts[index].milliseconds,
                     1);
}

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    return runBenchmarks(argc, argv, [](const QString&) {
        for (size_t i = 0; i < std::size(charts); ++i)
            benchmark::RegisterBenchmark(charts[i].name,
                                         [i](benchmark::State& state) {
                                             for (auto _ : state)
                                                 benchChart(i);
                                         })
                ->Iterations(1)
                ->Unit(benchmark::kMillisecond);
    });
}
