#include "tables/lineOrder.h"

#include <QHash>
#include <algorithm>
#include <numeric>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

Span dataOf(const ResultTable& table, TableLines lines) {
    return lines == TableLines::Rows ? table.shape.rows : table.shape.columns;
}

QString joined(const QString& first, const QString& second) {
    return first.isEmpty() || second.isEmpty() ? first + second : first + u": "_s + second;
}

QString headOf(const ResultTable& table, TableLines lines, int line) {
    if (lines == TableLines::Columns)
        return table.Tag == TableKind::Crosstab ? joined(table.Cell(line, 0), table.Cell(line, 1))
                                                : table.Cell(line, 0);
    if (table.Tag != TableKind::Descriptives)
        return joined(table.Cell(0, line), table.Cell(1, line));
    // Without groups a row is a statistic, whose title stands before its value.
    return table.shownCell(std::max(0, table.shape.columns.first - 1), line);
}

/// Place that a line at `index` comes to. @param first line of the data
int moved(int index, int first, const std::vector<int>& order) {
    const auto place = std::ranges::find(order, index - first);
    return place == order.end() ? index : first + static_cast<int>(place - order.begin());
}

template<class Element>
void permute(std::vector<Element>& elements, size_t first, const std::vector<int>& order) {
    std::vector<Element> now;
    for (const int place : order)
        now.push_back(elements[first + static_cast<size_t>(place)]);
    std::ranges::move(now, elements.begin() + static_cast<std::ptrdiff_t>(first));
}

/// A line without cases has no base, and that of the whole table is the last.
void orderBases(ResultTable& table, const std::vector<std::pair<QString, QString>>& cellsOfLines,
                const std::vector<int>& order) {
    std::vector<std::optional<PercentBase>> ofLines;
    auto next = table.bases.begin();
    for (const auto& [value, label] : cellsOfLines) {
        const bool has = next != table.bases.end() && next->value == value && next->label == label;
        ofLines.push_back(has ? std::optional(*next++) : std::nullopt);
    }
    std::vector<PercentBase> now;
    for (const int place : order)
        if (const auto& base = ofLines[static_cast<size_t>(place)])
            now.push_back(*base);
    now.insert(now.end(), next, table.bases.end());
    table.bases = std::move(now);
}

void orderColumns(ResultTable& table, const std::vector<int>& order) {
    const int first = table.shape.columns.first;
    const bool comparison = table.Tag == TableKind::Comparison;
    if (table.percentOf == PercentOf::Columns) {
        std::vector<std::pair<QString, QString>> cells;
        for (int column = first; column <= table.shape.columns.last; ++column)
            cells.emplace_back(comparison ? QString() : table.Cell(column, 0), table.Cell(column, comparison ? 0 : 1));
        orderBases(table, cells, order);
    }
    if (comparison && table.shape.cases.size() == order.size())
        permute(table.shape.cases, 0, order);
    if (static_cast<int>(table.shortHeads.size()) > table.shape.columns.last)
        permute(table.shortHeads, static_cast<size_t>(first), order);
    table.shape.nullColumn = moved(table.shape.nullColumn, first, order);
    table.moveCols(first, order);
}

void orderRows(ResultTable& table, const std::vector<int>& order) {
    const int first = table.shape.rows.first;
    if (table.percentOf == PercentOf::Rows) {
        std::vector<std::pair<QString, QString>> cells;
        for (int row = first; row <= table.shape.rows.last; ++row)
            cells.emplace_back(table.Cell(0, row), table.Cell(1, row));
        orderBases(table, cells, order);
    }
    for (RowGroup& group : table.groups)
        group.row = moved(group.row, first, order);
    std::ranges::sort(table.groups, {}, &RowGroup::row);
    table.shape.nullRow = moved(table.shape.nullRow, first, order);
    table.moveRows(first, order);
}

/// Heads with a number that tells those that look alike apart.
std::vector<std::pair<QString, int>> numbered(const QStringList& heads) {
    QHash<QString, int> seen;
    std::vector<std::pair<QString, int>> all;
    for (const QString& head : heads)
        all.emplace_back(head, seen[head]++);
    return all;
}

} // namespace

QStringList headsOf(const ResultTable& table, TableLines lines) {
    QStringList heads;
    if (table.Tag == TableKind::None || (table.Tag == TableKind::Frequency && lines == TableLines::Columns))
        return heads;
    const Span data = dataOf(table, lines);
    for (int line = data.first; line <= data.last; ++line)
        heads << headOf(table, lines, line);
    return heads;
}

void orderLines(ResultTable& table, TableLines lines, const std::vector<int>& order) {
    if (isInOrder(order))
        return;
    if (lines == TableLines::Rows)
        orderRows(table, order);
    else
        orderColumns(table, order);
}

std::vector<int> orderLike(const QStringList& heads, const std::vector<int>& order, const QStringList& ofOther) {
    const auto shown = numbered(heads), other = numbered(ofOther);
    QHash<std::pair<QString, int>, int> ranks;
    for (size_t place = 0; place < order.size(); ++place)
        ranks.insert(shown[static_cast<size_t>(order[place])], static_cast<int>(place));
    std::vector<int> slots, result(other.size());
    std::iota(result.begin(), result.end(), 0);
    for (size_t place = 0; place < other.size(); ++place)
        if (ranks.contains(other[place]))
            slots.push_back(static_cast<int>(place));
    std::vector<int> sorted = slots;
    std::ranges::stable_sort(sorted, {}, [&](int place) { return ranks.value(other[static_cast<size_t>(place)]); });
    for (size_t i = 0; i < slots.size(); ++i)
        result[static_cast<size_t>(slots[i])] = sorted[i];
    return result;
}

bool isInOrder(const std::vector<int>& order) {
    return std::ranges::is_sorted(order);
}
