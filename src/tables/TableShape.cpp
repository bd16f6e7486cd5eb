#include "tables/TableShape.h"

#include <algorithm>

namespace {

int removedBefore(int index, const std::vector<int>& removed) {
    return static_cast<int>(std::ranges::lower_bound(removed, index) - removed.begin());
}

void shift(int& index, const std::vector<int>& removed) {
    if (index < 0)
        return;
    index = std::ranges::binary_search(removed, index) ? -1 : index - removedBefore(index, removed);
}

void shift(Span& span, const std::vector<int>& removed) {
    span.last -= removedBefore(span.last + 1, removed);
    span.first -= removedBefore(span.first, removed);
}

} // namespace

StatedCases TableShape::casesOf(int column) const {
    const int place = cases.size() < 2 ? 0 : column - columns.first;
    return place >= 0 && place < static_cast<int>(cases.size()) ? cases[static_cast<size_t>(place)] : StatedCases();
}

void TableShape::rowsRemoved(const std::vector<int>& removed) {
    shift(rows, removed);
    for (int* index : {&sumRow, &validRow, &nullRow})
        shift(*index, removed);
}

void TableShape::columnsRemoved(const std::vector<int>& removed) {
    shift(columns, removed);
    for (int* index : {&sumColumn, &validColumn, &nullColumn})
        shift(*index, removed);
}
