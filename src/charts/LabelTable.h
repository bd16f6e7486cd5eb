#pragma once

#include "charts/ChartModel.h"

/// One item of a chart as its options show it: a value of a frequency, else a series.
struct LabelItem {
    QString code;  ///< value or study
    QString label; ///< what the chart writes for it
    ItemStyle style;
    bool missing = false;
    int place = -1; ///< row of the table, in a comparison column
    bool operator==(const LabelItem&) const = default;
};

/// What of a chart can be changed once it is built.
struct LabelTable {
    /// Items beyond this one are drawn, and not kept here.
    static constexpr int most = 51;

    QString Titel;
    std::vector<LabelItem> items;
    ValueScale scale;
    bool operator==(const LabelTable&) const = default;
};

/// True if the items are the categories: of a frequency.
bool itemsAreCategories(const ChartModel& chart);
/// What a chart has. Places that no row or column fills are no items.
LabelTable labelTableOf(const ChartModel& chart);
/// Lays it on the chart that it was made of.
void layOn(const LabelTable& table, ChartModel& chart);
/// The text of an item that its label stands for, and back.
QString labelOf(const ChartModel& chart, const ChartItem& item);
void setLabel(const ChartModel& chart, ChartItem& item, const QString& label);
