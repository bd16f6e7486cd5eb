#include "diagnostics/GestureScope.h"

#include <algorithm>
#include <map>
#include <tuple>
#include <vector>

namespace {

int depth = 0;
/// What has been reported of failed files, and whether the user goes on without them.
std::map<QString, bool> files;
std::vector<std::tuple<int, QString, QString>> told;

/// A catalogue that has lost its own tables fails with each of them, and the texts don't name the file.
const QString catalogueTables = QStringLiteral("tkey_");

/// What a failure's text names in quotes; where it names nothing, the text itself.
QString fileIn(const QString& text) {
    const qsizetype first = text.indexOf(u'\''), last = text.lastIndexOf(u'\'');
    const QString name = first + 1 < last ? text.mid(first + 1, last - first - 1) : text;
    return name.startsWith(catalogueTables) ? catalogueTables : name;
}

/// Failures that come from a file which cannot be read or is not what it was, whatever is asked of it. That a table is
/// missing says so only of the catalogue's own: which table else, or which field, is a fault of what was asked.
bool isOfFile(const dao::Error& error) {
    constexpr int numbers[] = {52, 3011, 3024, 3026, 3043, 3044, 3049, 3050, 3051, 3343};
    return std::ranges::find(numbers, error.number()) != std::end(numbers) ||
           (error.number() == 3078 && fileIn(error.description()) == catalogueTables);
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
    files.clear();
    told.clear();
}

bool GestureScope::hasTold(const dao::Error& error) {
    return depth > 0 && isOfFile(error) && files.contains(fileIn(error.description()));
}

bool GestureScope::tells(const dao::Error& error, const QString& procedure) {
    if (depth == 0)
        return true;
    const std::tuple failure(error.number(), error.description(), procedure);
    if (hasTold(error) || std::ranges::find(told, failure) != told.end())
        return false;
    if (isOfFile(error))
        files.emplace(fileIn(error.description()), false);
    told.push_back(failure);
    return true;
}

void GestureScope::goOnWithout(const dao::Error& error) {
    if (hasTold(error))
        files[fileIn(error.description())] = true;
}

bool GestureScope::goesOnWithout(const dao::Error& error) {
    return hasTold(error) && files[fileIn(error.description())];
}
