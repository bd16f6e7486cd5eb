#include "widgets/FlowLayout.h"

#include <QStyle>
#include <QWidget>
#include <algorithm>

FlowLayout::FlowLayout(QWidget* parent) : QLayout(parent) {
    setContentsMargins(0, 0, 0, 0);
}

FlowLayout::~FlowLayout() {
    for (const Item& place : items_)
        delete place.item;
}

void FlowLayout::add(QWidget* widget, int stretch) {
    addWidget(widget);
    items_.back().stretch = stretch;
}

void FlowLayout::addStretch() {
    items_.push_back({new QSpacerItem(0, 0), 1});
    invalidate();
}

QLayoutItem* FlowLayout::itemAt(int index) const {
    return index >= 0 && index < count() ? items_[static_cast<size_t>(index)].item : nullptr;
}

QLayoutItem* FlowLayout::takeAt(int index) {
    QLayoutItem* item = itemAt(index);
    if (item)
        items_.erase(items_.begin() + index);
    return item;
}

Qt::Orientations FlowLayout::expandingDirections() const {
    Qt::Orientations directions;
    for (const Item& place : items_) {
        directions |= place.item->expandingDirections() & Qt::Vertical;
        if (place.stretch)
            directions |= Qt::Horizontal;
    }
    return directions;
}

int FlowLayout::Item::heightFor(int width) const {
    return item->hasHeightForWidth() ? item->heightForWidth(width) : item->sizeHint().height();
}

/// Gives the width that is left over to those that stretch.
void FlowLayout::shareOut(Line& line, int left) const {
    int shares = 0;
    for (const Item* place : line.items)
        shares += place->stretch;
    for (size_t i = 0; i < line.items.size(); ++i) {
        const int stretch = line.items[i]->stretch;
        if (stretch && left > 0) {
            const int share = left * stretch / shares;
            line.widths[i] += share;
            left -= share;
            shares -= stretch;
        }
        line.height = std::max(line.height, line.items[i]->heightFor(line.widths[i]));
    }
}

std::vector<FlowLayout::Line> FlowLayout::linesFor(int width) const {
    std::vector<Line> lines;
    int used = 0, room = width;
    for (const Item& place : items_) {
        // A widget that is hidden takes no room; a spacer takes none of its own.
        const bool isSpacer = place.item->spacerItem() != nullptr;
        if (place.item->isEmpty() && !isSpacer)
            continue;
        int least = std::min(place.least(), room);
        const int gap = lines.empty() || isSpacer ? 0 : spacing();
        if (!lines.empty() && used + gap + least <= room) {
            used += gap + least;
        } else {
            if (!lines.empty()) {
                shareOut(lines.back(), room - used);
                room = width - hanging;
                least = std::min(least, room);
            }
            lines.emplace_back();
            used = least;
        }
        lines.back().items.push_back(&place);
        lines.back().widths.push_back(least);
    }
    if (!lines.empty())
        shareOut(lines.back(), room - used);
    return lines;
}

int FlowLayout::heightForWidth(int width) const {
    const QMargins margins = contentsMargins();
    int height = margins.top() + margins.bottom();
    const std::vector<Line> lines = linesFor(width - margins.left() - margins.right());
    for (const Line& line : lines)
        height += line.height;
    return height + static_cast<int>(lines.size() > 1 ? lines.size() - 1 : 0) * betweenLines();
}

QSize FlowLayout::sizeHint() const {
    QSize size(0, 0);
    for (const Item& place : items_) {
        if (place.item->isEmpty())
            continue;
        const QSize hint = place.item->sizeHint();
        size = QSize(size.width() + (size.width() > 0 ? spacing() : 0) + hint.width(),
                     std::max(size.height(), hint.height()));
    }
    return size.grownBy(contentsMargins());
}

QSize FlowLayout::minimumSize() const {
    QSize size(0, 0);
    for (const Item& place : items_)
        if (!place.item->isEmpty())
            size = size.expandedTo({place.least() + hanging, place.item->minimumSize().height()});
    return size.grownBy(contentsMargins());
}

void FlowLayout::setGeometry(const QRect& rect) {
    QLayout::setGeometry(rect);
    const QRect room = rect.marginsRemoved(contentsMargins());
    std::vector<Line> lines = linesFor(room.width());
    const auto grows = [](const Line& line) {
        return std::ranges::any_of(line.items,
                                   [](const Item* place) { return place->item->expandingDirections() & Qt::Vertical; });
    };
    int growing = static_cast<int>(std::ranges::count_if(lines, grows));
    int left = rect.height() - heightForWidth(rect.width());
    const Qt::LayoutDirection direction = parentWidget() ? parentWidget()->layoutDirection() : Qt::LeftToRight;
    int top = room.top();
    for (Line& line : lines) {
        if (left > 0 && grows(line)) {
            line.height += left / growing;
            left -= left / growing--;
        }
        int start = room.left() + (&line == &lines.front() ? 0 : hanging);
        for (size_t i = 0; i < line.items.size(); ++i) {
            const bool isSpacer = line.items[i]->item->spacerItem() != nullptr;
            if (i > 0 && !isSpacer)
                start += spacing();
            line.items[i]->item->setGeometry(
                QStyle::visualRect(direction, room, {start, top, line.widths[i], line.height}));
            start += line.widths[i];
        }
        top += line.height + betweenLines();
    }
}
