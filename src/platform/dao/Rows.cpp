#include "platform/dao/Rows.h"

#include "platform/dao/Error.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>
#include <sqlite3.h>

namespace dao {

namespace {

constexpr int numberOverflow = 6;

/// Grows by half, so that no more than a third of the memory is ever unused.
template<typename Vector>
void makeRoom(Vector& vector, size_t more) {
    if (vector.size() + more > vector.capacity()) {
        vector.reserve(std::max(vector.size() + more, vector.capacity() + vector.capacity() / 2));
    }
}

} // namespace

void Rows::begin(const std::vector<ColumnInfo>& columns, bool keyed, const std::vector<bool>& deferred) {
    *this = Rows();
    columns_ = columns.size();
    keyed_ = keyed;
    isDeferred_ = deferred;
    isDeferred_.resize(columns_);
    for (const ColumnInfo& column : columns) {
        // Whole numbers of such a column are stored as integers, and are doubles all the same.
        isDouble_.push_back(column.type >= dbCurrency && column.type <= dbDouble);
    }
}

size_t Rows::append(sqlite3_stmt* statement) {
    makeRoom(payloads_, columns_);
    makeRoom(tags_, columns_);
    payloads_.resize(payloads_.size() + columns_);
    tags_.resize(tags_.size() + columns_);
    if (keyed_) {
        makeRoom(keys_, 1);
        keys_.push_back(0);
    }
    const size_t row = rows_++;
    replace(row, statement);
    return row;
}

void Rows::replace(size_t row, sqlite3_stmt* statement) {
    for (size_t column = 0; column < columns_; ++column) {
        store(row * columns_ + column, statement, static_cast<int>(column));
    }
    if (keyed_) {
        setKey(row, sqlite3_column_int64(statement, static_cast<int>(columns_)));
        if (isGone(row)) {
            gone_[row] = false;
        }
    }
}

void Rows::setKey(size_t row, qint64 key) {
    keys_[row] = key;
    if ((row > 0 && key <= keys_[row - 1]) || (row + 1 < rows_ && key >= keys_[row + 1])) {
        ascending_ = false;
    }
}

void Rows::setGone(size_t row) {
    if (gone_.size() <= row) {
        gone_.resize(row + 1);
    }
    gone_[row] = true;
}

void Rows::store(size_t cell, sqlite3_stmt* statement, int column) {
    if (isDeferred_[static_cast<size_t>(column)]) {
        const auto* type = reinterpret_cast<const char*>(sqlite3_column_text(statement, column));
        tags_[cell] = type != nullptr && std::strcmp(type, "null") != 0 ? Tag::Elsewhere : Tag::Null;
        return;
    }
    switch (sqlite3_column_type(statement, column)) {
    case SQLITE_INTEGER:
        if (!isDouble_[static_cast<size_t>(column)]) {
            tags_[cell] = Tag::Integer;
            payloads_[cell] = static_cast<quint64>(sqlite3_column_int64(statement, column));
            break;
        }
        [[fallthrough]];
    case SQLITE_FLOAT:
        tags_[cell] = Tag::Double;
        payloads_[cell] = std::bit_cast<quint64>(sqlite3_column_double(statement, column));
        break;
    case SQLITE_TEXT: {
        const void* text = sqlite3_column_text(statement, column);
        payloads_[cell] = storeBlock(cell, text, sqlite3_column_bytes(statement, column));
        tags_[cell] = Tag::Text;
        break;
    }
    case SQLITE_BLOB: {
        const void* bytes = sqlite3_column_blob(statement, column);
        payloads_[cell] = storeBlock(cell, bytes, sqlite3_column_bytes(statement, column));
        tags_[cell] = Tag::Bytes;
        break;
    }
    default:
        tags_[cell] = Tag::Null;
        payloads_[cell] = 0;
    }
}

/// A content that is no longer than the cell's last one takes its place.
quint64 Rows::storeBlock(size_t cell, const void* data, int bytes) {
    if (tags_[cell] == Tag::Text || tags_[cell] == Tag::Bytes) {
        char* const last = blocks_.data() + payloads_[cell];
        int size = 0;
        std::memcpy(&size, last, sizeof size);
        if (bytes <= size) {
            std::memcpy(last, &bytes, sizeof bytes);
            if (bytes > 0) {
                std::memcpy(last + sizeof bytes, data, static_cast<size_t>(bytes));
            }
            return payloads_[cell];
        }
    }
    const size_t offset = blocks_.size();
    const auto* const length = reinterpret_cast<const char*>(&bytes);
    const auto* const content = static_cast<const char*>(data);
    makeRoom(blocks_, sizeof bytes + static_cast<size_t>(bytes));
    blocks_.insert(blocks_.end(), length, length + sizeof bytes);
    if (bytes > 0) {
        blocks_.insert(blocks_.end(), content, content + bytes);
    }
    return offset;
}

Value Rows::value(size_t row, int column) const {
    const size_t cell = row * columns_ + static_cast<size_t>(column);
    const quint64 payload = payloads_[cell];
    switch (tags_[cell]) {
    case Tag::Null:
    case Tag::Elsewhere:
        return {};
    case Tag::Integer:
        return Value(static_cast<qint64>(payload));
    case Tag::Double: {
        const auto number = std::bit_cast<double>(payload);
        if (!std::isfinite(number)) {
            raiseRuntimeError(numberOverflow); // another program has left it in the file
        }
        return Value(number);
    }
    case Tag::Text:
    case Tag::Bytes:
        break;
    }
    int bytes = 0;
    std::memcpy(&bytes, blocks_.data() + payload, sizeof bytes);
    const char* const content = blocks_.data() + payload + sizeof bytes;
    return tags_[cell] == Tag::Text ? Value(QString::fromUtf8(content, bytes)) : Value(QByteArray(content, bytes));
}

size_t Rows::find(qint64 key) const {
    if (!ascending_) {
        for (size_t row = rows_; row-- > 0;) {
            if (keys_[row] == key && !isGone(row)) {
                return row;
            }
        }
        return rows_;
    }
    const auto found = std::lower_bound(keys_.begin(), keys_.end(), key);
    const auto row = static_cast<size_t>(found - keys_.begin());
    return row < rows_ && *found == key && !isGone(row) ? row : rows_;
}

size_t Rows::behind(qint64 key) const {
    return static_cast<size_t>(std::upper_bound(keys_.begin(), keys_.end(), key) - keys_.begin());
}

} // namespace dao
