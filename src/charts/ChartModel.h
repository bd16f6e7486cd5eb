#pragma once

#include "tables/TableShape.h"

#include <QRgb>
#include <QString>
#include <QStringList>
#include <optional>
#include <vector>

/// The types of chart, by the numbers that the chart's users know them by.
enum class ChartType { Bars = 1, Lines = 3 };

/// What stands at a category or beside a series. Of its two levels the first is the text, the second the code; a
/// series of a crosstab and a comparison has them as their tables do.
struct ChartItem {
    QString level1, level2;
    QString code;        ///< the value or study that it stands for, as its cell has it
    int place = -1;      ///< row or column of the table; -1 for a place that no row or column fills
    bool marked = false; ///< the table marks it as missing
};

/// The value of one series in one category; an empty one draws nothing.
struct ChartPoint {
    std::optional<double> value;
    QString text; ///< the value as the table shows it, without "%"

    bool operator==(const ChartPoint&) const = default;
};

/// How an item is drawn: a frequency has a style for each category, everything else one for each series.
struct ItemStyle {
    bool pattern = false;           ///< of a bar: filled with a pattern, black on white
    int number = 0;                 ///< number of the pattern (1 to 14), or of a line's symbol (0 to 15)
    std::optional<QRgb> color = {}; ///< nothing: what the chart gives the item by itself
    bool operator==(const ItemStyle&) const = default;
};

/// The axis of the values.
struct ValueScale {
    bool automatic = true;
    double minimum = 0, maximum = 0;
    int division = 5; ///< number of parts, 1 to 50

    bool operator==(const ValueScale&) const = default;
};

/// Items of an axis that a chart shows, of those that there are.
struct ItemsShown {
    int first = 1; ///< counted from 1 over the items that count
    int shown = 0, of = 0;
};

/// A chart as data: what it shows, and how each item is drawn; sizes and places are the layout's.
struct ChartModel {
    TableKind kind = TableKind::None;
    ChartType chartType = ChartType::Bars;
    std::vector<ChartItem> categories, series;
    std::vector<std::vector<ChartPoint>> values; ///< by series, then by category
    std::vector<ItemStyle> styles;               ///< see ItemStyle
    QString caption;                             ///< title above the plot; not a part of it
    QString xTitle, yTitle;
    bool percent = false; ///< the values are percentages
    QString percentOf;    ///< what they are of, in words; empty where their table has one kind only
    bool legend = false;
    bool color = true;                  ///< false: nothing that black and white cannot tell apart
    ItemsShown rowsShown, columnsShown; ///< of the table's rows and columns
    ValueScale scale;

    /// The start items that were chosen.
    int firstRow() const { return rowsShown.first; }
    int firstColumn() const { return columnsShown.first; }
    int seriesCount() const { return static_cast<int>(series.size()); }
    int categoryCount() const { return static_cast<int>(categories.size()); }
    bool isEmpty() const;
};
