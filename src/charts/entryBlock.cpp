#include "charts/entryBlock.h"

#include "charts/palette.h"

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace {

constexpr double smallestEntry = 5 * onePoint;
/// In heights of the type: a swatch, the gap behind it, between columns and between entries.
constexpr double swatchWidth = 1.6, swatchGap = 0.5, columnGap = 1.6, entryGap = 0.22;

double leadOf(const std::vector<BlockEntry>& entries, double size) {
    const bool swatches = std::any_of(entries.begin(), entries.end(), [](const BlockEntry& e) { return e.item >= 0; });
    return swatches ? (swatchWidth + swatchGap) * size : 0;
}

double widestOf(Typesetter& type, const std::vector<BlockEntry>& entries, double size) {
    double widest = 0;
    for (const BlockEntry& entry : entries)
        widest = std::max(widest, type.width(entry.text, size));
    return widest;
}

/// Entries in columns of one width, down the first, then down the next. Those that would reach below `height` are left
/// out, the last that is shown says so.
class Columns {
public:
    Columns(Typesetter& type, const std::vector<BlockEntry>& entries, double size, int columns, double columnWidth,
            double height)
        : type_(type), entries_(entries), size_(size), lead_(leadOf(entries, size)), width_(columnWidth),
          height_(height) {
        block_.type = size;
        const int count = static_cast<int>(entries.size());
        const int inColumn = (count + columns - 1) / columns;
        double x = 0;
        for (int first = 0; first < count; first += inColumn) {
            fill(first, std::min(first + inColumn, count), x);
            x += columnWidth + columnGap * size;
        }
    }
    EntryBlock take() { return std::move(block_); }

private:
    Typesetter& type_;
    const std::vector<BlockEntry>& entries_;
    double size_, lead_, width_, height_;
    EntryBlock block_;

    void fill(int first, int end, double x) {
        double y = 0;
        const double line = lineHeight * size_;
        for (int i = first; i < end; ++i) {
            const BlockEntry& entry = entries_[static_cast<size_t>(i)];
            const std::vector<TextLine> lines = type_.wrapped(entry.text, size_, width_ - lead_);
            const double tall = line * static_cast<double>(lines.size());
            if (y + tall > height_ + 1e-6) {
                block_.cut = true;
                if (y + line <= height_ + 1e-6)
                    add(i, {{u"…"_s, type_.width(u"…"_s, size_)}}, x, y);
                return;
            }
            add(i, lines, x, y);
            y += tall + entryGap * size_;
        }
    }

    void add(int entry, const std::vector<TextLine>& lines, double x, double y) {
        const bool rightToLeft = isRightToLeft(entries_[static_cast<size_t>(entry)].text);
        const double line = lineHeight * size_;
        double baseline = y + ascent * size_, widest = 0;
        for (const TextLine& part : lines) {
            block_.texts.push_back(
                {part.text, {x + lead_, baseline}, size_, part.width, 0, false, rightToLeft, inkColor});
            baseline += line;
            widest = std::max(widest, part.width);
        }
        const QRectF area(x, y, lead_ + widest, line * static_cast<double>(lines.size()));
        const double tall = 0.8 * size_;
        block_.places.push_back({entry, area, QRectF(x, y + (line - tall) / 2, swatchWidth * size_, tall)});
        block_.size = block_.size.expandedTo({area.right(), area.bottom()});
    }
};

struct Chooser {
    Typesetter& type;
    const std::vector<BlockEntry>& entries;
    QSizeF page;
    BlockRoom room;
    PlacedBlock best;
    double bestArea = -1;

    void consider(EntryBlock block, bool beside) {
        const double width = page.width() - (beside ? block.size.width() : 0);
        const double height = page.height() - (beside ? 0 : block.size.height());
        // A column beside the plot is read in the order of its bars and lines.
        const double area = width * height * (beside ? 1.06 : 1);
        if (area > bestArea) {
            bestArea = area;
            best = {std::move(block), beside};
        }
    }

    bool tryAt(double size) {
        const double lead = leadOf(entries, size), natural = lead + widestOf(type, entries, size);
        if (room.beside > 0) {
            for (const double share : {0.4, 0.6, 0.8, 1.0}) {
                const double width = std::min(natural, share * room.beside);
                EntryBlock block = Columns(type, entries, size, 1, width, page.height()).take();
                if (!block.cut && width > lead + 3 * size)
                    consider(std::move(block), true);
                if (width == natural)
                    break;
            }
        }
        if (room.below > 0)
            tryBelow(size, lead, natural);
        return bestArea >= 0;
    }

    void tryBelow(double size, double lead, double natural) {
        const int most = std::min<int>(12, static_cast<int>(entries.size()));
        for (int columns = 1; columns <= most; ++columns) {
            const double width = (page.width() - (columns - 1) * columnGap * size) / columns;
            if (columns > 1 && width < std::min(natural, lead + 12 * size))
                return;
            EntryBlock block = Columns(type, entries, size, columns, std::min(width, natural), room.below).take();
            if (!block.cut)
                consider(std::move(block), false);
        }
    }
};

} // namespace

PlacedBlock placeBlock(Typesetter& type, const std::vector<BlockEntry>& entries, const QSizeF& page,
                       const BlockRoom& room) {
    Chooser chooser{type, entries, page, room, {}};
    for (double size = room.type; size > smallestEntry; size -= onePoint) {
        if (chooser.tryAt(size))
            return chooser.best;
    }
    if (chooser.tryAt(smallestEntry))
        return chooser.best;
    const bool beside = room.beside > 0;
    const double width = beside ? room.beside : page.width(), height = beside ? page.height() : room.below;
    return {Columns(type, entries, smallestEntry, 1, width, height).take(), beside};
}
