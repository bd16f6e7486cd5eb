#include "platform/dao/RowBlock.h"

#include "platform/dao/Error.h"

#include <algorithm>

namespace dao {

namespace {

constexpr size_t cellsWanted = 8192; // they stay within the processor's memory
constexpr int numberBeyondAll = 6;
constexpr int wrongType = 3421;

} // namespace

RowBlock::RowBlock(std::vector<Column> columns)
    : columns_(std::move(columns)),
      rowsWanted_(static_cast<int>(std::max<size_t>(cellsWanted / std::max<size_t>(columns_.size(), 1), 1))) {
    clear();
}

void RowBlock::setUtf8(int column, const char* text, int bytes) {
    Cell& cell = cellOf(column);
    if (columns_[static_cast<size_t>(column)] != Column::Text) {
        raiseEngineError(wrongType, QString::fromUtf8(text, bytes));
    }
    cell.kind = Cell::Text;
    cell.bytes = bytes;
    cell.text = texts_.size();
    texts_.append(text, static_cast<size_t>(bytes));
}

void RowBlock::setText(int column, const QString& text) {
    const QByteArray utf8 = text.toUtf8();
    setUtf8(column, utf8.constData(), static_cast<int>(utf8.size()));
}

void RowBlock::endRow() {
    ++rows_;
    row_ += columns_.size();
    if (row_ == cells_.size()) {
        cells_.resize(row_ + columns_.size());
    }
}

void RowBlock::clear() {
    cells_.assign((static_cast<size_t>(rowsWanted_) + 1) * columns_.size(), Cell());
    texts_.clear();
    row_ = 0;
    rows_ = 0;
}

double RowBlock::otherNumber(int column, double number) const {
    if (columns_[static_cast<size_t>(column)] == Column::Text) {
        raiseEngineError(wrongType, QString::number(number));
    }
    return number != 0 ? -1 : 0;
}

void RowBlock::refuseColumn(int column) {
    raiseEngineError(3265, QString::number(column));
}

void RowBlock::refuseInfinite() {
    raiseRuntimeError(numberBeyondAll);
}

} // namespace dao
