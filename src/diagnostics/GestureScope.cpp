#include "diagnostics/GestureScope.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace {

int depth = 0;
bool toldOfFile = false;
std::vector<std::pair<int, QString>> told;

/// Failures that come from a file which cannot be read or is not what it was, whatever is asked of it.
bool isOfFile(int number) {
    constexpr int numbers[] = {52, 3011, 3024, 3026, 3043, 3044, 3049, 3050, 3051, 3061, 3078, 3265, 3343};
    return std::ranges::find(numbers, number) != std::end(numbers);
}

} // namespace

GestureScope::GestureScope() {
    if (depth++ == 0)
        startAnew();
}

GestureScope::~GestureScope() {
    --depth;
}

void GestureScope::startAnew() {
    toldOfFile = false;
    told.clear();
}

bool GestureScope::hasTold(int number) {
    return depth > 0 && toldOfFile && isOfFile(number);
}

bool GestureScope::tells(int number, const QString& procedure) {
    if (depth == 0)
        return true;
    const std::pair<int, QString> failure(number, procedure);
    if (hasTold(number) || std::ranges::find(told, failure) != told.end())
        return false;
    toldOfFile = toldOfFile || isOfFile(number);
    told.push_back(failure);
    return true;
}
