#include "charts/LabelTable.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/// Indices of the items that stand for a row or column of the table.
std::vector<size_t> itemsOf(const ChartModel& chart) {
    const std::vector<ChartItem>& items = itemsAreCategories(chart) ? chart.categories : chart.series;
    std::vector<size_t> places;
    for (size_t i = 0; i < items.size() && places.size() < LabelTable::most; ++i)
        if (items[i].place >= 0)
            places.push_back(i);
    return places;
}

/// The series of a crosstab have their code first.
bool codeStandsFirst(const ChartModel& chart) {
    return chart.kind == TableKind::Crosstab;
}

} // namespace

bool itemsAreCategories(const ChartModel& chart) {
    return chart.kind == TableKind::Frequency;
}

QString labelOf(const ChartModel& chart, const ChartItem& item) {
    const QString label = (codeStandsFirst(chart) ? item.level2 : item.level1).trimmed();
    // Without a label the value speaks for itself.
    return label.isEmpty() ? item.code : label;
}

void setLabel(const ChartModel& chart, ChartItem& item, const QString& label) {
    if (label != labelOf(chart, item))
        (codeStandsFirst(chart) ? item.level2 : item.level1) = label;
}

LabelTable labelTableOf(const ChartModel& chart) {
    LabelTable table{.Titel = chart.caption, .items = {}, .scale = chart.scale};
    const std::vector<ChartItem>& items = itemsAreCategories(chart) ? chart.categories : chart.series;
    for (const size_t i : itemsOf(chart))
        table.items.push_back({.code = items[i].code,
                               .label = labelOf(chart, items[i]),
                               .style = i < chart.styles.size() ? chart.styles[i] : ItemStyle(),
                               .missing = items[i].marked,
                               .place = items[i].place});
    return table;
}

void layOn(const LabelTable& table, ChartModel& chart) {
    std::vector<ChartItem>& items = itemsAreCategories(chart) ? chart.categories : chart.series;
    const std::vector<size_t> places = itemsOf(chart);
    chart.caption = table.Titel;
    chart.scale = table.scale;
    chart.styles.resize(items.size());
    for (size_t i = 0; i < std::min(places.size(), table.items.size()); ++i) {
        setLabel(chart, items[places[i]], table.items[i].label);
        chart.styles[places[i]] = table.items[i].style;
    }
}
