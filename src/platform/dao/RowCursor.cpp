#include "platform/dao/RowCursor.h"

#include "platform/dao/Error.h"
#include "platform/dao/Parser.h"
#include "platform/dao/SqlText.h"
#include "platform/dao/SqliteValue.h"

#include <algorithm>
#include <limits>

using namespace Qt::StringLiterals;

namespace dao {

namespace {

constexpr int noCurrentRecord = 3021;
constexpr int recordDeleted = 3167;

}

RowCursor::RowCursor(Source source) : source_(std::move(source)) {
    open();
}

void RowCursor::open() {
    const Reading reading(source_.file->connection());
    Attachments::Use use;
    bound_ = source_.file->bind(source_.text, use, true);
    if (bound_.kind != tree::Statement::Kind::Select) {
        raiseEngineError(3219);
    }
    source_.editable = source_.editable && bound_.editable.has_value();
    const bool wholeTable = source_.editable && source_.sort.isEmpty() && bound_.whereSql.endsWith(u" WHERE 1"_s);
    if (!wholeTable) {
        readAll(source_.editable ? bound_.keySql : bound_.sql);
        sortRows();
        loaded_ = true;
        place_ = rowCount() > 0 ? Place::At : Place::Before;
        return;
    }
    // One row tells whether there is any; without an order of its own it is the first one too.
    empty_ = !fetch(bound_.whereSql + (bound_.orderSql.isEmpty() ? u" ORDER BY \"row key\""_s : QString()) +
                    u" LIMIT 1"_s);
    place_ = *empty_ ? Place::Before : bound_.orderSql.isEmpty() ? Place::Fetched : Place::First;
}

void RowCursor::readAll(const QString& sql) {
    source_.file->trace(source_.text, sql);
    rows_.begin(bound_.columns, source_.editable);
    if (source_.editable) {
        seen_ = seenNow();
    }
    Statement statement(source_.file->connection(), sql);
    while (statement.step()) {
        if (rows_.size() == std::numeric_limits<quint32>::max()) {
            raiseEngineError(3035);
        }
        rows_.append(statement.handle());
    }
}

RowCursor::Seen RowCursor::seenNow() const {
    return {source_.file->writesTo(bound_.editable->sqlName),
            dataVersion(source_.file->connection(), bound_.editable->schema)};
}

QString RowCursor::orderedSql() const {
    // Rows that the order leaves equal come as the table has them, here and in searches alike.
    return bound_.orderSql.isEmpty() ? u" ORDER BY \"row key\""_s : bound_.orderSql + u", \"row key\""_s;
}

TableInfo RowCursor::reachTable(Attachments::Use& use) {
    const QString name = bound_.editable->name;
    std::optional<TableInfo> table = source_.file->findTable(name, use);
    if (!table) {
        raiseEngineError(3078, name);
    }
    if (table->sqlName != bound_.editable->sqlName) {
        // The link leads elsewhere now; what is open stays with the rows that it was opened on.
        raiseEngineError(3420);
    }
    return *table;
}

void RowCursor::load() {
    if (loaded_) {
        return;
    }
    const DatabaseFile::Operation operation(*source_.file);
    const Reading reading(source_.file->connection());
    Attachments::Use use;
    reachTable(use);
    qint64 key = deletedKey_;
    if (place_ == Place::Fetched) {
        key = fetched_.key(0);
    }
    readAll(bound_.whereSql + orderedSql());
    loaded_ = true;
    arriveAt(place_, key);
    fetched_ = Rows();
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
    std::vector<std::pair<int, bool>> terms;
    for (const tree::OrderTerm& term : order.select->orderBy) {
        const QString name = term.expression->name;
        const auto column = std::find_if(bound_.columns.begin(), bound_.columns.end(),
                                         [&](const ColumnInfo& one) { return sameName(one.name, name); });
        if (term.expression->kind != tree::Expression::Kind::Column || column == bound_.columns.end()) {
            raiseEngineError(3070, name);
        }
        terms.emplace_back(static_cast<int>(column - bound_.columns.begin()), term.descending);
    }
    writeOrder();
    std::stable_sort(order_.begin(), order_.end(), [&](quint32 a, quint32 b) {
        for (const auto& [column, descending] : terms) {
            if (const int difference = compareValues(rows_.value(a, column), rows_.value(b, column))) {
                return descending ? difference > 0 : difference < 0;
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

bool RowCursor::fetch(const QString& sql, std::optional<qint64> key) {
    const DatabaseFile::Operation operation(*source_.file);
    const Reading reading(source_.file->connection());
    Attachments::Use use;
    reachTable(use);
    source_.file->trace(source_.text, sql);
    Statement statement(source_.file->connection(), sql);
    if (key) {
        statement.bind(1, Value(*key));
    }
    if (!statement.step()) {
        return false;
    }
    fetched_.begin(bound_.columns, true);
    fetched_.append(statement.handle());
    return true;
}

bool RowCursor::fetchKey(qint64 key) {
    return fetch(bound_.whereSql + u" AND "_s + bound_.editable->rowKey + u" = ?1"_s, key);
}

/// Brings the current row of a table that isn't in memory into fetched_.
void RowCursor::ensureFetched() {
    const QString first = bound_.whereSql + orderedSql() + u" LIMIT 1"_s;
    if (place_ == Place::Last && !bound_.orderSql.isEmpty()) {
        load();
    } else if (place_ == Place::First || place_ == Place::Last) {
        const bool found =
            fetch(place_ == Place::First ? first : bound_.whereSql + u" ORDER BY \"row key\" DESC LIMIT 1"_s);
        place_ = found ? Place::Fetched : Place::Before;
        empty_ = !found;
    }
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
        target -= 1;  // the row behind the deleted one is the next
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
    return loaded_ ? rows_.value(rowAt(position_), column) : fetched_.value(0, column);
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

/// Reads one row of the table, whether or not it satisfies the statement's condition: what was written stays in view.
bool RowCursor::readRow(qint64 key, const std::function<void(sqlite3_stmt*)>& take) {
    Attachments::Use use;
    reachTable(use);
    Statement statement(source_.file->connection(), bound_.rowSql);
    statement.bind(1, Value(key));
    const bool found = statement.step();
    if (found) {
        take(statement.handle());
    }
    return found;
}

/// Without a counter the file gives a deleted row's number to the next new one: the declared key tells them apart.
bool RowCursor::isSameEntry(sqlite3_stmt* row, size_t known) {
    for (size_t i = 0; i < bound_.columns.size(); ++i) {
        const QString& field = bound_.columns[i].sourceField;
        const int column = static_cast<int>(i);
        if (!field.isEmpty() && containsName(bound_.editable->keyColumns, field) &&
            compareValues(columnValue(row, column), (loaded_ ? rows_ : fetched_).value(known, column)) != 0) {
            return false;
        }
    }
    return true;
}

void RowCursor::refresh() {
    const qint64 key = bookmark();
    bool same = false;
    readRow(key, [&](sqlite3_stmt* row) {
        const size_t known = loaded_ ? rowAt(position_) : 0;
        same = isSameEntry(row, known);
        if (same) {
            (loaded_ ? rows_ : fetched_).replace(known, row);
        }
    });
    if (!same) {
        raiseEngineError(recordDeleted);
    }
    forgetSearches();
}

/// What else was written to the table since the rows were read comes into them; a row that is gone keeps its values but
/// its key.
void RowCursor::catchUp() {
    DatabaseFile& file = *source_.file;
    if (!source_.editable || !file.isOpen() || file.connection().isInHook()) {
        return;
    }
    const DatabaseFile::Operation operation(file);
    Attachments::Use use;
    reachTable(use);
    const Seen now = seenNow();
    if (now == seen_) {
        return;
    }
    Statement statement(file.connection(), bound_.rowSql);
    for (size_t row = 0; row < rows_.size(); ++row) {
        statement.bind(1, Value(rows_.key(row)));
        if (statement.step() && isSameEntry(statement.handle(), row)) {
            rows_.replace(row, statement.handle());
        } else {
            rows_.forgetKey(row);
        }
        statement.reset();
    }
    seen_ = now;
    forgetSearches();
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
        load();  // afterwards nothing would tell where in the order the row stood
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
    rows_.forgetKey(rowAt(position_));
    order_.erase(order_.begin() + static_cast<std::ptrdiff_t>(position_));
    place_ = Place::Deleted;
}

}
