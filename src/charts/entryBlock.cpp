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

/// Widths in heights of the type, so that they hold for every size.
struct Widths {
    double entry = 0, word = 0;

    Widths(Typesetter& type, const std::vector<BlockEntry>& entries) {
        for (const BlockEntry& each : entries) {
            entry = std::max(entry, type.width(each.text, 1));
            for (const QString& part : each.text.split(u' '))
                word = std::max(word, type.width(part, 1));
        }
    }
};

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
        double y = 0, before = 0;
        size_t texts = block_.texts.size(), places = block_.places.size(); // before the last entry
        const double line = lineHeight * size_;
        for (int i = first; i < end; ++i) {
            const BlockEntry& entry = entries_[static_cast<size_t>(i)];
            const std::vector<TextLine> lines = type_.wrapped(entry.text, size_, width_ - lead_);
            const double tall = line * static_cast<double>(lines.size());
            if (y + tall > height_ + 1e-6) {
                block_.cut = true;
                if (y + line > height_ + 1e-6) { // it takes the place of the last one, then
                    block_.texts.resize(texts);
                    block_.places.resize(places);
                    y = before;
                }
                add(i, {{u"…"_s, type_.width(u"…"_s, size_)}}, x, y);
                return;
            }
            texts = block_.texts.size();
            places = block_.places.size();
            before = y;
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
    Widths widths;
    PlacedBlock best{};
    double bestScore = -1;

    void consider(EntryBlock block, bool beside) {
        if (block.cut)
            return;
        const double width = page.width() - (beside ? block.size.width() : 0);
        const double height = page.height() - (beside ? 0 : block.size.height());
        // Smaller type and broken lines must be worth it.
        const double whole = block.texts.size() > entries.size() ? 1 : 1.03;
        const double legible = whole * std::pow(1.12, (block.type - room.type) / onePoint);
        const double score = width * height * (beside ? room.preferred : 1) * legible;
        if (score > bestScore) {
            bestScore = score;
            best = {std::move(block), beside};
        }
    }

    void tryAt(double size) {
        const double lead = leadOf(entries, size), natural = lead + widths.entry * size;
        const double least = std::min(lead + (widths.word + 0.05) * size, 0.6 * room.beside);
        if (room.beside > 0) {
            for (const double share : {0.2, 0.3, 0.4, 0.55, 0.7, 0.85, 1.0}) {
                const double width = std::min(natural, share * room.beside);
                if (width >= std::max(least, lead + 3 * size) || width == natural)
                    consider(Columns(type, entries, size, 1, width, page.height()).take(), true);
                if (width == natural)
                    break;
            }
        }
        const int most = room.below > 0 ? std::min<int>(12, static_cast<int>(entries.size())) : 0;
        for (int columns = 1; columns <= most; ++columns) {
            const double width = (page.width() - (columns - 1) * columnGap * size) / columns;
            if (columns > 1 && width < std::min(natural, lead + 12 * size))
                return;
            consider(Columns(type, entries, size, columns, std::min(width, natural), room.below).take(), false);
        }
    }
};

} // namespace

PlacedBlock placeBlock(Typesetter& type, const std::vector<BlockEntry>& entries, const QSizeF& page,
                       const BlockRoom& room) {
    Chooser chooser{type, entries, page, room, Widths(type, entries)};
    // Type below 7 points only where there is no other way.
    for (double size = room.type; size > smallestEntry - 1e-9; size -= onePoint) {
        if (chooser.bestScore < 0 || size > 6.9 * onePoint)
            chooser.tryAt(size);
    }
    if (chooser.bestScore >= 0)
        return chooser.best;
    const bool beside = room.beside > 0;
    const double width = beside ? room.beside : page.width(), height = beside ? page.height() : room.below;
    return {Columns(type, entries, smallestEntry, 1, width, height).take(), beside};
}
