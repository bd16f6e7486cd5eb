#include "platform/dao/ChangeSet.h"
#include "platform/dao/DatabaseFile.h"
#include "platform/dao/Error.h"
#include "platform/dao/SqlText.h"
#include "platform/dao/SqliteValue.h"

#include <QIODevice>
#include <algorithm>
#include <cmath>
#include <set>

using namespace Qt::StringLiterals;

namespace dao {

namespace {

using Kind = ChangedRow::Kind;

/// One walk through a change set.
class ChangeReader final : public ChangedRow {
public:
    ChangeReader(Connection& connection, const ChangeSet& changes, ChangeWay way)
        : connection_(connection), back_(way == ChangeWay::Back), device_(changes.device), rest_(changes.size) {
        if (!device_->seek(changes.begin))
            raiseEngineError(3043);
        check(sqlite3changeset_start_strm(&changes_, read, this));
    }
    ~ChangeReader() override { sqlite3changeset_finalize(changes_); }
    ChangeReader(const ChangeReader&) = delete;
    ChangeReader& operator=(const ChangeReader&) = delete;

    bool next() {
        const int result = sqlite3changeset_next(changes_);
        if (result == SQLITE_DONE)
            return false;
        if (result != SQLITE_ROW)
            check(result);
        int operation = 0;
        check(sqlite3changeset_op(changes_, &table_, &columns_, &operation, nullptr));
        check(sqlite3changeset_pk(changes_, &isKey_, nullptr));
        kind_ = operation == SQLITE_UPDATE              ? Kind::Changed
                : (operation == SQLITE_INSERT) != back_ ? Kind::Added
                                                        : Kind::Removed;
        return true;
    }
    void describe(const std::vector<ColumnInfo>* fields) { fields_ = fields; }

    int columns() const { return columns_; }
    bool isKey(int column) const { return isKey_[column] != 0; }
    /// A column in the state that the change set leads from, and in the one that it leads to; null if nothing is known.
    /// Of a changed row the key stands among the old values only.
    sqlite3_value* from(int column) const {
        sqlite3_value* const value = kind_ == Kind::Added ? nullptr : back_ ? newValue(column) : oldValue(column);
        return value == nullptr && kind_ == Kind::Changed && isKey(column) ? oldValue(column) : value;
    }
    sqlite3_value* to(int column) const {
        if (kind_ == Kind::Removed || (kind_ == Kind::Changed && newValue(column) == nullptr))
            return nullptr;
        return back_ ? oldValue(column) : newValue(column);
    }

    Kind kind() const override { return kind_; }
    QString table() const override { return QString::fromUtf8(table_); }
    std::optional<Value> before(const QString& field) const override { return named(field, &ChangeReader::from); }
    std::optional<Value> after(const QString& field) const override { return named(field, &ChangeReader::to); }

private:
    Connection& connection_;
    bool back_;
    QIODevice* device_;
    qint64 rest_;
    sqlite3_changeset_iter* changes_ = nullptr;
    const char* table_ = nullptr;
    unsigned char* isKey_ = nullptr;
    int columns_ = 0;
    Kind kind_ = Kind::Changed;
    const std::vector<ColumnInfo>* fields_ = nullptr;

    void check(int result) {
        if (result != SQLITE_OK)
            connection_.raise(result, Purpose::Read);
    }
    static int read(void* self, void* bytes, int* size) {
        auto* const reader = static_cast<ChangeReader*>(self);
        const qint64 wanted = std::min<qint64>(*size, reader->rest_);
        const qint64 got = wanted > 0 ? reader->device_->read(static_cast<char*>(bytes), wanted) : 0;
        *size = static_cast<int>(std::max<qint64>(got, 0));
        reader->rest_ -= *size;
        return got == wanted ? SQLITE_OK : SQLITE_IOERR_READ;
    }
    sqlite3_value* oldValue(int column) const {
        sqlite3_value* value = nullptr;
        return sqlite3changeset_old(changes_, column, &value) == SQLITE_OK ? value : nullptr;
    }
    sqlite3_value* newValue(int column) const {
        sqlite3_value* value = nullptr;
        return sqlite3changeset_new(changes_, column, &value) == SQLITE_OK ? value : nullptr;
    }
    std::optional<Value> named(const QString& field, sqlite3_value* (ChangeReader::*get)(int) const) const {
        const auto found = std::find_if(fields_->begin(), fields_->end(),
                                        [&](const ColumnInfo& one) { return sameName(one.name, field); });
        sqlite3_value* const value =
            found != fields_->end() ? (this->*get)(static_cast<int>(found - fields_->begin())) : nullptr;
        return value != nullptr ? std::optional(valueOf(value)) : std::nullopt;
    }
};

/// Writes the rows of one table. SQLite's own way of applying changes would compare texts by the column's rule, to
/// which another program's change of case is none, and would pass over a table that is gone. Here every row must be,
/// byte by byte, what the change set leads from.
class RowWriter {
public:
    RowWriter(Connection& connection, TableInfo table) : connection_(connection), table_(std::move(table)) {}

    const TableInfo& table() const { return table_; }
    /// A row that another program had made has come back with something else in a field of numbers.
    bool hasWrittenOther() const { return hasWrittenOther_; }

    /// @throws Error 3197 the row is another by now
    void write(const ChangeReader& row) {
        if (row.columns() != static_cast<int>(table_.columns.size()))
            raiseConflict(row);
        for (int column = 0; column < row.columns(); ++column)
            if (row.isKey(column) != containsName(table_.keyColumns, name(column)))
                raiseConflict(row);
        Statement& statement = prepared(row);
        bind(statement, row);
        try {
            statement.step();
        } catch (const Error& error) {
            constexpr int duplicate = 3022;
            statement.reset();
            if (error.number() != duplicate)
                throw;
            errorList().clear();
            raiseConflict(row);
        }
        statement.reset();
        if (sqlite3_changes(connection_.handle()) != 1)
            raiseConflict(row);
    }

private:
    Connection& connection_;
    TableInfo table_;
    bool hasWrittenOther_ = false;
    std::map<QByteArray, std::unique_ptr<Statement>> statements_; ///< by kind and the columns that differ

    const QString& name(int column) const { return table_.columns[static_cast<size_t>(column)].name; }

    static bool isOther(sqlite3_value* value) {
        const int type = sqlite3_value_type(value);
        return type == SQLITE_TEXT || type == SQLITE_BLOB ||
               (type == SQLITE_FLOAT && !std::isfinite(sqlite3_value_double(value)));
    }

    [[noreturn]] void raiseConflict(const ChangeReader& row) const {
        constexpr int conflict = 3197;
        QStringList key;
        for (int column = 0; column < row.columns(); ++column)
            if (row.isKey(column))
                key += valueOf(row.kind() == Kind::Added ? row.to(column) : row.from(column)).toText();
        raiseEngineError(conflict, table_.name + u' ' + key.join(u", "_s));
    }

    /// The condition that the row is what it should be. The plain comparison of the key finds it by its index.
    QString condition(const ChangeReader& row) const {
        QStringList terms;
        for (int column = 0; column < row.columns(); ++column) {
            if (row.from(column) == nullptr)
                continue;
            if (row.isKey(column))
                terms += quotedName(name(column)) + u" = ?"_s;
            terms += quotedName(name(column)) + u" COLLATE BINARY IS ?"_s;
        }
        return u" WHERE "_s + terms.join(u" AND "_s);
    }

    QString sqlFor(const ChangeReader& row) const {
        QStringList names, places, assignments;
        for (int column = 0; column < row.columns(); ++column)
            if (row.to(column) != nullptr) {
                names += quotedName(name(column));
                places += u"?"_s;
                assignments += quotedName(name(column)) + u" = ?"_s;
            }
        switch (row.kind()) {
        case Kind::Removed:
            return u"DELETE FROM "_s + table_.sqlName + condition(row);
        case Kind::Changed:
            return u"UPDATE "_s + table_.sqlName + u" SET "_s + assignments.join(u", "_s) + condition(row);
        case Kind::Added:
            return u"INSERT INTO "_s + table_.sqlName + u" ("_s + names.join(u", "_s) + u") VALUES ("_s +
                   places.join(u", "_s) + u')';
        }
        return {};
    }

    Statement& prepared(const ChangeReader& row) {
        QByteArray shape(1, static_cast<char>(row.kind()));
        for (int column = 0; column < row.columns(); ++column)
            shape += row.to(column) != nullptr ? '1' : '0';
        std::unique_ptr<Statement>& statement = statements_[shape];
        if (!statement)
            statement = std::make_unique<Statement>(connection_, sqlFor(row), Purpose::Write);
        return *statement;
    }

    void bind(Statement& statement, const ChangeReader& row) {
        int place = 0;
        const auto bindNext = [&](sqlite3_value* value) {
            if (const int result = sqlite3_bind_value(statement.handle(), ++place, value); result != SQLITE_OK)
                connection_.raise(result, Purpose::Write);
        };
        for (int column = 0; column < row.columns(); ++column)
            if (sqlite3_value* const value = row.to(column)) {
                bindNext(value);
                hasWrittenOther_ |= isNumericType(table_.columns[static_cast<size_t>(column)].type) && isOther(value);
            }
        for (int column = 0; column < row.columns(); ++column)
            if (sqlite3_value* const value = row.from(column))
                for (int times = row.isKey(column) ? 2 : 1; times > 0; --times)
                    bindNext(value);
    }
};

} // namespace

void DatabaseFile::apply(const ChangeSet& changes, ChangeWay way, const std::function<void(const ChangedRow&)>& each) {
    const Operation operation(*this);
    requireWritable();
    if (level_ == 0)
        raiseEngineError(3219);
    QStringList tables;
    std::set<Kind> kinds;
    for (ChangeReader row(*connection_, changes, way); row.next();) {
        kinds.insert(row.kind());
        if (!tables.contains(row.table()))
            tables += row.table();
    }
    takeWritersPlace(tables);
    std::map<QString, RowWriter> writers;
    for (const QString& table : tables) {
        const std::optional<TableInfo> info = tableIn(attachments_->main(), table);
        if (!info)
            raiseEngineError(3078, table);
        writers.try_emplace(table, *connection_, *info);
        noteWrite(info->sqlName);
    }
    // A key that one row gives up may be another's afterwards.
    for (const Kind kind : kinds)
        for (ChangeReader row(*connection_, changes, way); row.next();)
            if (row.kind() == kind) {
                RowWriter& writer = writers.at(row.table());
                writer.write(row);
                row.describe(&writer.table().columns);
                each(row);
            }
    for (const auto& [table, writer] : writers)
        if (writer.hasWrittenOther())
            cachedTable(attachments_->main(), table).contents.clear();
}

} // namespace dao
