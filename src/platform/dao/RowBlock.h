#pragma once

#include "platform/dao/SqliteValue.h"

#include <cmath>
#include <string>
#include <vector>

namespace dao {

/// Rows on their way into a table, filled one value after the other and then appended all at once. A block knows
/// nothing of its file, so that one can be filled while another is being appended.
class RowBlock {
public:
    /// What a column takes.
    enum class Column : char { Number, YesNo, Text };

    explicit RowBlock(std::vector<Column> columns);

    /// Of the row that is being filled. @throws Error 3265 no such column, 3421 the column holds text, 6 no finite
    /// number
    void setNumber(int column, double number) {
        Cell& cell = cellOf(column);
        if (columns_[static_cast<size_t>(column)] != Column::Number) {
            number = otherNumber(column, number);
        }
        if (isWhole(number)) {
            cell.kind = Cell::Integer;
            cell.integer = static_cast<qint64>(number);
        } else {
            setFraction(cell, number);
        }
    }
    /// @throws Error 3265, 3421 the column holds numbers
    void setUtf8(int column, const char* text, int bytes);
    void setText(int column, const QString& text);
    /// Begins the next row; columns that were not set are Null.
    void endRow();

    /// True when a block is large enough to be appended. Room for further rows is made all the same.
    bool isFull() const { return rows_ >= rowsWanted_ || texts_.size() >= textBytesWanted; }
    void clear();
    /// An empty one for the same fields.
    RowBlock another() const { return RowBlock(columns_); }
    int rows() const { return rows_; }

private:
    friend class RowSource;
    struct Cell {
        enum Kind : char { Null, Integer, Fraction, Text } kind = Null;
        int bytes = 0;
        union {
            qint64 integer = 0;
            double fraction;
            size_t text; ///< where in texts_ it begins
        };
    };
    static constexpr size_t textBytesWanted = 256 * 1024;

    Cell& cellOf(int column) {
        if (static_cast<size_t>(column) >= columns_.size()) {
            refuseColumn(column);
        }
        return cells_[row_ + static_cast<size_t>(column)];
    }
    static void setFraction(Cell& cell, double number) {
        if (!std::isfinite(number)) {
            refuseInfinite();
        }
        cell.kind = Cell::Fraction;
        cell.fraction = number;
    }
    double otherNumber(int column, double number) const;
    [[noreturn]] static void refuseColumn(int column);
    [[noreturn]] static void refuseInfinite();

    std::vector<Column> columns_;
    std::vector<Cell> cells_; ///< row by row, the one that is being filled at the end
    std::string texts_;
    size_t row_ = 0; ///< first cell of the row that is being filled
    int rows_ = 0;
    int rowsWanted_;
};

} // namespace dao
