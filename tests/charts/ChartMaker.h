#pragma once

#include "charts/ChartLayout.h"
#include "charts/chartFile.h"
#include "support/PrintQt.h"

#include <QImage>
#include <gtest/gtest.h>

/// Models of charts, made by hand.
namespace charts {

inline ChartPoint valueOf(double value) {
    return {value, QString::number(value, 'f', value == static_cast<int>(value) ? 0 : 1)};
}

/// Values 1, 2, 3 ... with their labels; one series.
inline ChartModel frequency(const QStringList& labels, const std::vector<std::optional<double>>& values) {
    ChartModel model;
    model.kind = TableKind::Frequency;
    model.series.resize(1);
    model.values.resize(1);
    for (size_t i = 0; i < values.size(); ++i) {
        const QString label = labels.isEmpty() ? QString() : labels[static_cast<qsizetype>(i) % labels.size()];
        model.categories.push_back({label, QString::number(i + 1), {}, static_cast<int>(i)});
        model.values[0].push_back(values[i] ? valueOf(*values[i]) : ChartPoint());
    }
    model.rowsShown = {1, model.categoryCount(), model.categoryCount()};
    return model;
}

/// Series s has the values s + 1, s + 2 ... in turn.
inline ChartModel crosstab(const QStringList& categories, const QStringList& series) {
    ChartModel model;
    model.kind = TableKind::Crosstab;
    model.legend = true;
    for (const QString& label : categories)
        model.categories.push_back({label, QString::number(model.categories.size() + 1), {}, 0});
    for (const QString& label : series) {
        model.series.push_back({QString::number(model.series.size() + 1), label, {}, 0});
        model.values.emplace_back();
        for (int c = 0; c < model.categoryCount(); ++c)
            model.values.back().push_back(valueOf((model.seriesCount() + c) % 9 + 1));
    }
    return model;
}

inline ChartModel comparison(const QStringList& categories, const QStringList& series, ChartType type) {
    ChartModel model = crosstab(categories, series);
    model.kind = TableKind::Comparison;
    model.chartType = type;
    for (ChartItem& item : model.series)
        item = {item.level2, {}, {}, 0};
    return model;
}

inline QStringList numbered(const QString& word, int count) {
    QStringList words;
    for (int i = 1; i <= count; ++i)
        words << word + QString::number(i);
    return words;
}

inline QStringList textsOf(const ChartLayout& layout) {
    QStringList texts;
    for (const ChartText& text : layout.texts)
        texts << text.text;
    return texts;
}

/// A pixel at a place of the page.
inline QRgb at(const QImage& image, int dpi, double x, double y) {
    return image.pixel(static_cast<int>(x * dpi / 25.4), static_cast<int>(y * dpi / 25.4)) | 0xff000000;
}

} // namespace charts
