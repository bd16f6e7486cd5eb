#include "platform/dao/RowCursor.h"

#include "platform/dao/Error.h"
#include "platform/dao/Parser.h"
#include "platform/dao/SqlText.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace dao {

namespace {

constexpr int noCurrentRecord = 3021;

}

RowCursor::RowCursor(Source source) : source_(std::move(source)) {
    open();
}

/// Finds the current row again among the rows that were read.
void RowCursor::arriveAt(Place place, qint64 key) {
    place_ = rowCount() > 0 && place != Place::Before ? Place::At : Place::Before;
    position_ = 0;
    if (place == Place::Last && rowCount() > 0) {
        position_ = rowCount() - 1;
    } else if (place == Place::Fetched || place == Place::Deleted) {
        position_ = rows_.find(key);
        if (position_ == rows_.size()) {
            place_ = Place::Deleted;
            position_ = rows_.isInKeyOrder() ? rows_.behind(key) : rows_.size();
        }
    }
}

void RowCursor::sortRows() {
    if (source_.sort.isEmpty()) {
        return;
    }
    const tree::Statement order = parseStatement(u"SELECT * FROM rows ORDER BY "_s + source_.sort);
    struct Term {
        std::vector<Value> values; ///< by row, each read once
        bool descending;
    };
    std::vector<Term> terms;
    for (const tree::OrderTerm& term : order.select->orderBy) {
        const QString name = term.expression->name;
        const auto column = std::find_if(bound_.columns.begin(), bound_.columns.end(),
                                         [&](const ColumnInfo& one) { return sameName(one.name, name); });
        if (term.expression->kind != tree::Expression::Kind::Column || column == bound_.columns.end()) {
            raiseEngineError(3070, name);
        }
        terms.push_back({{}, term.descending});
        for (size_t row = 0; row < rows_.size(); ++row)
            terms.back().values.push_back(contentOf(row, static_cast<int>(column - bound_.columns.begin())));
    }
    writeOrder();
    std::stable_sort(order_.begin(), order_.end(), [&](quint32 a, quint32 b) {
        for (const Term& term : terms) {
            if (const int difference = compareValues(term.values[a], term.values[b])) {
                return term.descending ? difference > 0 : difference < 0;
            }
        }
        return false;
    });
}

void RowCursor::writeOrder() {
    if (hasOrder_) {
        return;
    }
    order_.resize(rows_.size());
    for (size_t i = 0; i < order_.size(); ++i) {
        order_[i] = static_cast<quint32>(i);
    }
    hasOrder_ = true;
}

size_t RowCursor::positionOf(size_t row) const {
    if (!hasOrder_) {
        return row;
    }
    return static_cast<size_t>(std::find(order_.begin(), order_.end(), row) - order_.begin());
}

bool RowCursor::isEmpty() {
    return loaded_ ? rowCount() == 0 : *empty_;
}

int RowCursor::count() {
    if (loaded_) {
        return static_cast<int>(rowCount());
    }
    if (!count_) {
        const DatabaseFile::Operation operation(*source_.file);
        Attachments::Use use;
        const QString sql = u"SELECT count(*) FROM "_s + reachTable(use).sqlName;
        source_.file->trace(source_.text, sql);
        Statement statement(source_.file->connection(), sql);
        statement.step();
        count_ = static_cast<int>(statement.number(0));
    }
    return *count_;
}

int RowCursor::position() {
    if (place_ == Place::Before || place_ == Place::After || place_ == Place::Deleted) {
        return -1;
    }
    load();
    return place_ == Place::At ? static_cast<int>(position_) : -1;
}

void RowCursor::moveFirst() {
    if (isEmpty()) {
        raiseEngineError(noCurrentRecord);
    }
    place_ = loaded_ ? Place::At : Place::First;
    position_ = 0;
}

void RowCursor::moveLast() {
    if (isEmpty()) {
        raiseEngineError(noCurrentRecord);
    }
    place_ = loaded_ ? Place::At : Place::Last;
    position_ = loaded_ ? rowCount() - 1 : 0;
}

void RowCursor::move(int rows) {
    if (rows > 0 ? isBehind() : rows < 0 && isBefore()) {
        raiseEngineError(noCurrentRecord);
    }
    load();
    const auto count = static_cast<qint64>(rowCount());
    auto target = static_cast<qint64>(position_);
    if (place_ == Place::Before) {
        target = -1;
    } else if (place_ == Place::After) {
        target = count;
    } else if (place_ == Place::Deleted && rows > 0) {
        target -= 1; // the row behind the deleted one is the next
    }
    target += rows;
    place_ = target < 0 ? Place::Before : target >= count ? Place::After : Place::At;
    position_ = place_ == Place::At ? static_cast<size_t>(target) : 0;
}

void RowCursor::requireCurrent() {
    if (place_ == Place::Deleted) {
        raiseEngineError(recordDeleted);
    }
    if (place_ == Place::Before || place_ == Place::After) {
        raiseEngineError(noCurrentRecord);
    }
}

Value RowCursor::value(int column) {
    requireCurrent();
    if (!loaded_) {
        ensureFetched();
        requireCurrent();
    }
    return contentOf(loaded_ ? rowAt(position_) : 0, column);
}

qint64 RowCursor::bookmark() {
    requireCurrent();
    if (!loaded_) {
        ensureFetched();
        requireCurrent();
    }
    if (!loaded_) {
        return fetched_.key(0);
    }
    const size_t row = rowAt(position_);
    return source_.editable ? rows_.key(row) : static_cast<qint64>(row);
}

void RowCursor::setBookmark(qint64 bookmark) {
    if (!loaded_) {
        if (!fetchKey(bookmark)) {
            raiseEngineError(recordDeleted);
        }
        place_ = Place::Fetched;
        return;
    }
    const size_t row = source_.editable ? rows_.find(bookmark) : static_cast<size_t>(bookmark);
    const size_t position = row < rows_.size() ? positionOf(row) : rowCount();
    if (position >= rowCount()) {
        raiseEngineError(source_.editable ? recordDeleted : 3159);
    }
    place_ = Place::At;
    position_ = position;
}

void RowCursor::changed(qint64 key) {
    forgetSearches();
    ++seen_.own;
    if (!loaded_) {
        place_ = fetchKey(key) ? Place::Fetched : Place::Deleted;
        return;
    }
    readRow(key, [this](sqlite3_stmt* row) { rows_.replace(rowAt(position_), row); });
}

void RowCursor::added(qint64 key) {
    forgetSearches();
    ++seen_.own;
    if (!loaded_) {
        if (*empty_) {
            empty_ = false;
            place_ = Place::Before;
        }
        if (count_) {
            ++*count_;
        }
        return;
    }
    readRow(key, [this](sqlite3_stmt* row) {
        const size_t place = rows_.append(row);
        if (hasOrder_) {
            order_.push_back(static_cast<quint32>(place));
        }
    });
}

void RowCursor::prepareRemoval() {
    requireCurrent();
    if (!bound_.orderSql.isEmpty()) {
        load(); // afterwards the row's place in the order could not be found
    }
    (void)bookmark();
}

void RowCursor::removed() {
    forgetSearches();
    ++seen_.own;
    if (!loaded_) {
        deletedKey_ = fetched_.key(0);
        place_ = Place::Deleted;
        count_.reset();
        Attachments::Use use;
        Statement any(source_.file->connection(), u"SELECT 1 FROM "_s + reachTable(use).sqlName + u" LIMIT 1"_s);
        empty_ = !any.step();
        return;
    }
    writeOrder();
    rows_.setGone(rowAt(position_));
    order_.erase(order_.begin() + static_cast<std::ptrdiff_t>(position_));
    place_ = Place::Deleted;
}

} // namespace dao
