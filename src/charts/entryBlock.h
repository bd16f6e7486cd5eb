#pragma once

#include "charts/ChartLayout.h"
#include "charts/chartType.h"

/// A line of a legend, a key or an explanation.
struct BlockEntry {
    QString text;
    int item = -1; ///< it has a swatch of this item's style before it; -1: none
};

/// Entries laid out in columns, from the block's own upper left corner.
struct EntryBlock {
    QSizeF size;
    double type = 0; ///< size of its type
    std::vector<ChartText> texts;
    struct Place {
        int entry;
        QRectF area; ///< of the whole entry
        QRectF swatch;
    };
    std::vector<Place> places;
    bool cut = false; ///< something had to be left out, for want of room
};

/// Where a block may stand, and how much of the room it may take.
struct BlockRoom {
    double beside = 0;    ///< width at most beside the plot; 0: not there
    double below = 0;     ///< height at most below it; 0: not there
    double type = 0;      ///< size of the type at best
    double preferred = 1; ///< how much the plot's area counts with the block beside it
};

struct PlacedBlock {
    EntryBlock block;
    bool isBeside = false;
};

/// Lays entries out so that they leave the plot as much as they can: beside it in one column, or below it in several.
/// Type gets smaller before an entry is shortened, which only happens where a page has no room for them all.
PlacedBlock placeBlock(Typesetter& type, const std::vector<BlockEntry>& entries, const QSizeF& page,
                       const BlockRoom& room);
