#include "tables/Marks.h"

#include "platform/dao/TextOrder.h"
#include "platform/dao/Value.h"
#include "tables/ResultTable.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int cumulatedColumn = 6;

} // namespace

bool isMarkedRow(const ResultTable& table, int row) {
    return table.Tag != TableKind::Descriptives && table.shape.rows.contains(row) &&
           isMark(table.Cell(markColumn, row));
}

bool isMarkedColumn(const ResultTable& table, int column) {
    return table.Tag == TableKind::Crosstab && table.shape.columns.contains(column) &&
           isMark(table.Cell(column, markRow));
}

QString AxisMarks::keyOf(const std::optional<QString>& shown) {
    return shown ? dao::foldedText(*shown) : u"\u0000"_s;
}

void AxisMarks::add(Value value) {
    places_[keyOf(value.null ? std::nullopt : std::optional(value.value))].append(static_cast<int>(values_.size()));
    values_.push_back(std::move(value));
}

std::vector<AxisMarks::Value*> AxisMarks::having(const std::optional<QString>& shown) {
    std::vector<Value*> found;
    for (const int place : places_.value(keyOf(shown)))
        found.push_back(&values_[static_cast<size_t>(place)]);
    const dao::Value number(shown.value_or(QString()));
    if (found.empty() && shown && number.isNumeric())
        for (Value& value : values_)
            if (const dao::Value other(value.value); other.isNumeric() && other.toDouble() == number.toDouble())
                found.push_back(&value);
    return found;
}

const AxisMarks::Value* AxisMarks::find(const std::optional<QString>& shown, size_t nth) const {
    const auto places = places_.constFind(keyOf(shown));
    if (places == places_.constEnd() || static_cast<qsizetype>(nth) >= places->size())
        return nullptr;
    return &values_[static_cast<size_t>(places->at(static_cast<qsizetype>(nth)))];
}

size_t AxisMarks::count(const std::optional<QString>& shown) const {
    return static_cast<size_t>(places_.value(keyOf(shown)).size());
}

QStringList AxisMarks::missing() const {
    QStringList texts;
    for (const Value& value : values_)
        if (value.missing())
            texts << (value.value.isEmpty() ? value.label : value.value);
    return texts;
}

bool AxisMarks::operator==(const AxisMarks& other) const {
    return std::ranges::equal(values_, other.values_, [](const Value& a, const Value& b) {
        return a.value == b.value && a.null == b.null && a.missing() == b.missing();
    });
}

Marks Marks::of(const ResultTable& table) {
    Marks marks;
    const TableShape& shape = table.shape;
    if (table.Tag == TableKind::None || table.Tag == TableKind::Descriptives || table.Cols() <= markColumn)
        return marks;
    const bool cumulated = table.Tag == TableKind::Frequency && table.Cols() > cumulatedColumn;
    for (int row = shape.rows.first; row <= shape.rows.last; ++row) {
        AxisMarks::Value value{.value = table.Cell(0, row),
                               .label = table.Cell(1, row),
                               .null = row == shape.nullRow,
                               .mark = table.Cell(markColumn, row)};
        if (cumulated && !table.Cell(cumulatedColumn, row).isEmpty())
            value.cumulated = dao::leadingNumber(table.Cell(cumulatedColumn, row), true);
        marks.rows.add(std::move(value));
    }
    if (table.Tag != TableKind::Crosstab)
        return marks;
    for (int column = shape.columns.first; column <= shape.columns.last; ++column)
        marks.columns.add({.value = table.Cell(column, 0),
                           .label = table.Cell(column, 1),
                           .null = column == shape.nullColumn,
                           .mark = table.Cell(column, markRow)});
    return marks;
}

Marks Marks::exchanged() const {
    Marks other = *this;
    std::swap(other.rows, other.columns);
    return other;
}
