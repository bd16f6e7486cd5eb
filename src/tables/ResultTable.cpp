#include "tables/ResultTable.h"

#include "app/globals.h"

#include <algorithm>
#include <stdexcept>

using namespace Qt::StringLiterals;

namespace {
constexpr int defaultColWidth = 960;
constexpr int defaultRowHeight = 240;
} // namespace

size_t ResultTable::index(int column, int row) const {
    if (column < 0 || column >= cols_ || row < 0 || row >= rows_)
        throw std::out_of_range("a cell outside its table");
    return static_cast<size_t>(row) * static_cast<size_t>(cols_) + static_cast<size_t>(column);
}

void ResultTable::setRows(int rows) {
    rows_ = std::max(rows, 0);
    cells_.resize(static_cast<size_t>(rows_) * static_cast<size_t>(cols_));
    heights_.resize(static_cast<size_t>(rows_), defaultRowHeight);
}

void ResultTable::setCols(int cols) {
    cols = std::max(cols, 0);
    if (cols == cols_)
        return;
    const int kept = std::min(cols, cols_);
    std::vector<CellContent> cells(static_cast<size_t>(rows_) * static_cast<size_t>(cols));
    for (int row = 0; row < rows_; ++row)
        for (int column = 0; column < kept; ++column)
            cells[static_cast<size_t>(row) * static_cast<size_t>(cols) + static_cast<size_t>(column)] =
                std::move(cells_[index(column, row)]);
    cells_ = std::move(cells);
    cols_ = cols;
    widths_.resize(static_cast<size_t>(cols), defaultColWidth);
    colAlignments_.resize(static_cast<size_t>(cols), 0);
    givenWidths_.resize(static_cast<size_t>(cols), false);
}

void ResultTable::Clear() {
    std::fill(cells_.begin(), cells_.end(), CellContent());
    shape = {};
    notes.clear();
    percentOf = PercentOf::None;
    bases.clear();
    groups.clear();
    shortHeads.clear();
    givenWidths_.assign(givenWidths_.size(), false);
    markedBy = Marks::By::Definition;
}

QString ResultTable::shownCell(int column, int row) const {
    const QString& text = Cell(column, row);
    if (column != 0)
        return text;
    const auto group = std::ranges::find(groups, row, &RowGroup::row);
    if (group == groups.end())
        return text;
    QStringList words{text, group->label, group->missing ? u'(' + TranslateText(u"Missing"_s) + u')' : QString()};
    words.removeAll(QString());
    return words.join(u' ');
}

void ResultTable::orderRows(int first, const std::vector<int>& order) {
    if (cols_ == 0 || std::is_sorted(order.begin(), order.end()))
        return;
    std::vector<CellContent> moved;
    moved.reserve(order.size() * static_cast<size_t>(cols_));
    for (const int row : order)
        for (int column = 0; column < cols_; ++column)
            moved.push_back(std::move(cells_[index(column, first + row)]));
    std::move(moved.begin(), moved.end(), cells_.begin() + static_cast<std::ptrdiff_t>(index(0, first)));
}

void ResultTable::moveRows(int first, const std::vector<int>& order) {
    orderRows(first, order);
    const std::vector<int> before = heights_;
    for (size_t i = 0; i < order.size(); ++i)
        heights_[static_cast<size_t>(first) + i] = before[static_cast<size_t>(first + order[i])];
}

void ResultTable::moveCols(int first, const std::vector<int>& order) {
    const ResultTable before = *this;
    for (size_t i = 0; i < order.size(); ++i) {
        const int from = first + order[i], to = first + static_cast<int>(i);
        for (int row = 0; row < rows_; ++row)
            cells_[index(to, row)] = before.cells_[index(from, row)];
        widths_[static_cast<size_t>(to)] = before.widths_[static_cast<size_t>(from)];
        colAlignments_[static_cast<size_t>(to)] = before.colAlignments_[static_cast<size_t>(from)];
        givenWidths_[static_cast<size_t>(to)] = before.givenWidths_[static_cast<size_t>(from)];
    }
}

void ResultTable::removeCol(int column) {
    for (int row = 0; row < rows_; ++row)
        for (int later = column + 1; later < cols_; ++later)
            cells_[index(later - 1, row)] = std::move(cells_[index(later, row)]);
    widths_.erase(widths_.begin() + column);
    colAlignments_.erase(colAlignments_.begin() + column);
    givenWidths_.erase(givenWidths_.begin() + column);
    setCols(cols_ - 1);
    shape.columnsRemoved({column});
}

void ResultTable::removeRow(int row) {
    if (cols_ > 0) {
        const auto first = cells_.begin() + static_cast<std::ptrdiff_t>(index(0, row));
        cells_.erase(first, first + cols_);
    }
    heights_.erase(heights_.begin() + row);
    setRows(rows_ - 1);
    shape.rowsRemoved({row});
}

void ResultTable::addNote(const TableNote& note) {
    if (std::ranges::find(notes, note) == notes.end())
        notes.push_back(note);
}

void ResultTable::noteOrder(bool byHand, const QString& first) {
    const QString ofLines = u"Die Reihenfolge der Zeilen oder Spalten wurde von Hand geändert."_s;
    const QString ofEntries = u"Die Reihenfolge der Einträge wurde von Hand geändert; der erste ist: %1"_s;
    std::erase_if(notes, [&](const TableNote& note) { return note.sentence == ofLines || note.sentence == ofEntries; });
    if (byHand)
        notes.push_back(first.isEmpty() ? TableNote{ofLines, {}} : TableNote{ofEntries, first});
}

TableNote TableNote::ofLookAlikes() {
    return {u"Mehrere Werte sehen in der Tabelle gleich aus, sind in den Daten aber verschieden."_s, {}};
}

QString TableNote::text() const {
    const QString translated = TranslateText(sentence);
    return about.isEmpty() ? translated : translated.arg(about);
}

void ResultTable::exchangeSeparators(int firstColumn, int firstRow) {
    for (int row = firstRow; row < rows_; ++row)
        for (int column = firstColumn; column < cols_; ++column)
            setCell(column, row, exchangedSeparators(Cell(column, row)));
}

void DeleteColumn(ResultTable& table, int column) {
    if (column < table.Cols())
        table.removeCol(column);
}

void DeleteRow(ResultTable& table, int row) {
    if (row < table.Rows())
        table.removeRow(row);
}

QString exchangedSeparators(QString text) {
    for (QChar& c : text) {
        if (c == u',')
            c = u'.';
        else if (c == u'.')
            c = u',';
    }
    return text;
}
