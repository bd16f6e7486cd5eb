#include "explorer/ListStanding.h"

#include <QHash>
#include <algorithm>

namespace {

constexpr int nowhere = -1;

} // namespace

ListStanding::ListStanding(const VariableList& list, std::vector<int> selected, int current, int top)
    : rows_(keysOf(list)), selected_(std::move(selected)), current_(current), top_(top) {
    std::ranges::sort(selected_);
}

std::vector<ListStanding::RowKey> ListStanding::keysOf(const VariableList& list) {
    std::vector<RowKey> keys;
    keys.reserve(list.shown.size());
    for (const int row : list.shown)
        keys.emplace_back(list.rows[static_cast<size_t>(row)].cell(1), list.rows[static_cast<size_t>(row)].Text);
    return keys;
}

ListStanding::Places ListStanding::in(const VariableList& list) const {
    const std::vector<RowKey> now = keysOf(list);
    const int count = static_cast<int>(rows_.size());
    // Mostly nothing has gone and nothing has come.
    const bool same = now == rows_;
    QHash<RowKey, int> places;
    if (!same)
        for (size_t i = now.size(); i-- > 0;)
            places.insert(now[i], static_cast<int>(i));
    const auto placeOf = [&](int before) {
        if (before < 0 || before >= count)
            return nowhere;
        return same ? before : places.value(rows_[static_cast<size_t>(before)], nowhere);
    };
    const auto nearest = [&](int before) {
        for (int i = before; i >= 0 && i < count; ++i)
            if (const int place = placeOf(i); place >= 0)
                return place;
        for (int i = std::min(before, count) - 1; i >= 0; --i)
            if (const int place = placeOf(i); place >= 0)
                return place;
        return nowhere;
    };
    Places found;
    for (const int before : selected_)
        if (const int place = placeOf(before); place >= 0)
            found.selected.push_back(place);
    if (found.selected.empty() && !selected_.empty())
        if (const int place = nearest(selected_.front()); place >= 0)
            found.selected.push_back(place);
    std::ranges::sort(found.selected);
    found.current = placeOf(current_);
    if (found.current < 0 && current_ >= 0)
        found.current = found.selected.empty() ? nearest(current_) : found.selected.front();
    found.top = nearest(top_);
    return found;
}
