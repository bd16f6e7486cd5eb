#pragma once

#include "platform/dao/Types.h"
#include "platform/dao/Value.h"

#include <vector>

struct sqlite3_stmt;

namespace dao {

/// The rows of a recordset in memory: nine bytes a cell, texts beside them in one growing block, nothing of its own
/// for a row or a cell. Texts become QString only when they are read.
class Rows {
public:
    /// @param columns  of the result; the statement may give the row's key as one column more
    /// @param deferred  by column, those of which the statement only gives what type() reads; empty for none
    void begin(const std::vector<ColumnInfo>& columns, bool keyed, const std::vector<bool>& deferred = {});
    /// Adds the current row of a statement. @return its place
    size_t append(sqlite3_stmt* statement);
    void replace(size_t row, sqlite3_stmt* statement);

    size_t size() const { return rows_; }
    size_t bytes() const { return payloads_.size() * (sizeof(quint64) + sizeof(Tag)) + blocks_.size(); }
    /// Null for a cell that isn't here. @throws Error 6 for a number beyond all doubles
    Value value(size_t row, int column) const;
    /// True for a cell that has a value, which stayed in the file.
    bool isElsewhere(size_t row, int column) const {
        return tags_[row * columns_ + static_cast<size_t>(column)] == Tag::Elsewhere;
    }
    qint64 key(size_t row) const { return keys_[row]; }
    /// The row is gone from the file: its key may be another row's by now. It is there again when it is replaced.
    void setGone(size_t row);
    bool isGone(size_t row) const { return row < gone_.size() && gone_[row]; }
    /// The row of that key that isn't gone, the one that was added last if there are several, size() if there is none.
    size_t find(qint64 key) const;
    /// The first row whose key is greater; only for rows in the order of their keys.
    size_t behind(qint64 key) const;
    bool isInKeyOrder() const { return ascending_; }

private:
    enum class Tag : quint8 { Null, Integer, Double, Text, Bytes, Elsewhere };
    void setKey(size_t row, qint64 key);
    void store(size_t cell, sqlite3_stmt* statement, int column);
    quint64 storeBlock(size_t cell, const void* data, int bytes);

    size_t columns_ = 0;
    size_t rows_ = 0;
    bool keyed_ = false;
    bool ascending_ = true;
    std::vector<bool> isDouble_, isDeferred_;
    std::vector<quint64> payloads_;
    std::vector<Tag> tags_;
    std::vector<char> blocks_; ///< each a length of four bytes and the content
    std::vector<qint64> keys_;
    std::vector<bool> gone_; ///< up to the last that ever was
};

} // namespace dao
