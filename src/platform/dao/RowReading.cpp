#include "platform/dao/RowCursor.h"

#include "platform/dao/EngineSettings.h"
#include "platform/dao/Error.h"
#include "platform/dao/SqlText.h"
#include "platform/dao/SqliteValue.h"

#include <algorithm>
#include <limits>

using namespace Qt::StringLiterals;

namespace dao {

/// Names are looked up under one lock. The rows of other files are read without it: while a long count runs there,
/// others may write into the connection's own file.
void RowCursor::endUnlessOwn(Reading& reading) const {
    if (!bound_.editable || bound_.editable->schema != source_.file->attachments().main().schema) {
        reading.end();
    }
}

/// SQLite flattens the SELECT around the statement's own: what it leaves out is not even read.
void RowCursor::narrow() {
    if (source_.columns.isEmpty()) {
        return;
    }
    QStringList list;
    std::vector<ColumnInfo> kept;
    for (const QString& name : source_.columns) {
        const auto is = [&](const ColumnInfo& column) { return sameName(column.name, name); };
        const auto found = std::find_if(bound_.columns.begin(), bound_.columns.end(), is);
        if (found == bound_.columns.end()) {
            raiseEngineError(3061, name);
        }
        if (std::none_of(kept.begin(), kept.end(), is)) {
            list += quotedName(found->name);
            kept.push_back(*found);
        }
    }
    bound_.sql = u"SELECT "_s + list.join(u", "_s) + u" FROM ("_s + bound_.sql + u')';
    bound_.columns = std::move(kept);
    bound_.editable.reset();
}

void RowCursor::open() {
    Reading reading(source_.file->connection());
    Attachments::Use use;
    bound_ = source_.file->bind(source_.text, use, true);
    if (bound_.kind != tree::Statement::Kind::Select) {
        raiseEngineError(3219);
    }
    endUnlessOwn(reading);
    narrow();
    source_.editable = source_.editable && bound_.editable.has_value();
    const bool wholeTable = source_.editable && source_.sort.isEmpty() && bound_.whereSql.endsWith(u" WHERE 1"_s);
    if (!wholeTable) {
        readAll(source_.editable ? bound_.keySql : bound_.sql);
        loaded_ = true;
        sortRows();
        place_ = rowCount() > 0 ? Place::At : Place::Before;
        return;
    }
    // One row is enough to know whether there is any; without an order of its own it is the first one too.
    empty_ =
        !fetch(bound_.whereSql + (bound_.orderSql.isEmpty() ? u" ORDER BY \"row key\""_s : QString()) + u" LIMIT 1"_s);
    place_ = *empty_ ? Place::Before : bound_.orderSql.isEmpty() ? Place::Fetched : Place::First;
}

void RowCursor::readAll(const QString& sql) {
    source_.file->trace(source_.text, sql);
    rows_.begin(bound_.columns, source_.editable, source_.editable ? bound_.isDeferred : std::vector<bool>());
    if (source_.editable) {
        seen_ = seenNow();
    }
    Statement statement(source_.file->connection(), sql);
    while (statement.step()) {
        if (rows_.size() == std::numeric_limits<quint32>::max()) {
            raiseEngineError(3035);
        }
        rows_.append(statement.handle());
        if (rows_.bytes() > engineSettings().mostResultBytes) {
            raiseEngineError(3035); // before the system ends the program for it
        }
    }
}

RowCursor::Seen RowCursor::seenNow() const {
    const QString& schema = bound_.editable->schema;
    return {source_.file->writesTo(bound_.editable->sqlName), dataVersion(source_.file->connection(), schema),
            source_.file->attachments().generation(schema)};
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
    Reading reading(source_.file->connection());
    Attachments::Use use;
    reachTable(use);
    endUnlessOwn(reading);
    qint64 key = deletedKey_;
    if (place_ == Place::Fetched) {
        key = fetched_.key(0);
    }
    readAll(bound_.whereSql + orderedSql());
    loaded_ = true;
    arriveAt(place_, key);
    fetched_ = Rows();
}

bool RowCursor::fetch(const QString& sql, std::optional<qint64> key) {
    const DatabaseFile::Operation operation(*source_.file);
    Reading reading(source_.file->connection());
    Attachments::Use use;
    reachTable(use);
    endUnlessOwn(reading);
    source_.file->trace(source_.text, sql);
    Statement statement(source_.file->connection(), sql);
    if (key) {
        statement.bind(1, Value(*key));
    }
    if (!statement.step()) {
        return false;
    }
    fetched_.begin(bound_.columns, true, bound_.isDeferred);
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

/// Without a counter the file gives a deleted row's number to the next new one: the declared key distinguishes them.
/// Where the result has none, a row that was gone is there again only if nothing in it differs.
bool RowCursor::isSameEntry(sqlite3_stmt* row, size_t known) {
    const Rows& rows = loaded_ ? rows_ : fetched_;
    const auto differs = [&](int column) {
        if (bound_.isDeferred[static_cast<size_t>(column)])
            return (columnValue(row, column) == Value(u"null"_s)) == rows.isElsewhere(known, column);
        return compareValues(columnValue(row, column), rows.value(known, column)) != 0;
    };
    bool keyed = false;
    bool other = false;
    bool changed = false;
    for (int column = 0; column < static_cast<int>(bound_.columns.size()); ++column) {
        const QString& field = bound_.columns[static_cast<size_t>(column)].sourceField;
        if (!field.isEmpty() && containsName(bound_.editable->keyColumns, field)) {
            keyed = true;
            other = other || differs(column);
        } else if (rows.isGone(known)) {
            changed = changed || differs(column);
        }
    }
    return !other && (keyed || !changed);
}

/// A cell of the rows in memory; of a memo what the file has now.
Value RowCursor::contentOf(size_t row, int column) {
    const Rows& rows = loaded_ ? rows_ : fetched_;
    return rows.isElsewhere(row, column) ? contentInFile(row, column) : rows.value(row, column);
}

Value RowCursor::contentInFile(size_t row, int column) {
    const DatabaseFile::Operation operation(*source_.file);
    Attachments::Use use;
    reachTable(use);
    Statement statement(source_.file->connection(), bound_.contentSql(column));
    statement.bind(1, Value((loaded_ ? rows_ : fetched_).key(row)));
    if (!statement.step() || !isSameEntry(statement.handle(), row)) {
        raiseEngineError(recordDeleted);
    }
    return columnValue(statement.handle(), static_cast<int>(bound_.columns.size()) + 1);
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

/// Brings the rows up to date with what was written to the table since they were read; a deleted row keeps its values,
/// and is restored when its deletion is rolled back.
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
        const bool taken = rows_.isGone(row) && rows_.find(rows_.key(row)) != rows_.size(); // by a new row
        if (!taken && statement.step() && isSameEntry(statement.handle(), row)) {
            rows_.replace(row, statement.handle());
        } else {
            rows_.setGone(row);
        }
        statement.reset();
    }
    seen_ = now;
    forgetSearches();
}

} // namespace dao
