#pragma once

#include "charts/ChartLayout.h"
#include "charts/chartType.h"

/// The room below the plot that labels of the categories may take.
struct LabelRoom {
    double left = 0;     ///< from the page's margin to the plot
    double mostLeft = 0; ///< so far the plot may be moved to the right for labels that begin left of it
    double pitch = 1;    ///< from one category to the next
    double height = 0;   ///< below the axis
    double type = 10 * onePoint;
};

/// Labels of the categories, from the middle of each category on the axis.
struct CategoryLabels {
    struct Label {
        int category;
        ChartText text;
    };
    std::vector<Label> labels;
    double height = 0;      ///< taken below the axis
    double left = 0;        ///< needed from the page's margin to the plot
    bool shortened = false; ///< a text isn't there in full
};

/// The texts of the categories' two levels; the second may be empty.
struct LabelTexts {
    QStringList first, second;
};

/// Both levels, all in full: the second in a row on the axis, the first below it in one line, up to three, or slanted.
/// Nothing where they have no room.
std::optional<CategoryLabels> fullLabels(Typesetter& type, const LabelTexts& texts, const LabelRoom& room);
/// One level, as full as can be: in type that is still read, then shortened, and at worst at some of the categories.
CategoryLabels shortLabels(Typesetter& type, const QStringList& texts, const LabelRoom& room);
