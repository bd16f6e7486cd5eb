#include "platform/dao/RowSource.h"

#include "platform/dao/RowBlock.h"

#include <QStringList>
#include <new>
#include <sqlite3.h>

using namespace Qt::StringLiterals;

namespace dao {

namespace {

/// A name that no table of the engine can have. Where a stranger's file has one of that name, SQLite finds that
/// it takes no parameter and refuses the statement.
constexpr char moduleName[] = "__vx_rows";
constexpr char pointerType[] = "row block";

QString columnName(int column) {
    return u"c%1"_s.arg(column);
}

int connectTable(sqlite3* connection, void*, int, const char* const*, sqlite3_vtab** table, char**) {
    QStringList columns;
    for (int column = 0; column < RowSource::mostColumns; ++column) {
        columns += columnName(column);
    }
    const QByteArray sql = (u"CREATE TABLE x("_s + columns.join(u',') + u", block HIDDEN)"_s).toUtf8();
    const int result = sqlite3_declare_vtab(connection, sql.constData());
    if (result != SQLITE_OK) {
        return result;
    }
    sqlite3_vtab_config(connection, SQLITE_VTAB_DIRECTONLY);
    *table = new (std::nothrow) sqlite3_vtab{};
    return *table != nullptr ? SQLITE_OK : SQLITE_NOMEM;
}

int disconnectTable(sqlite3_vtab* table) {
    delete table;
    return SQLITE_OK;
}

/// Nothing can be read without the block.
int bestIndex(sqlite3_vtab*, sqlite3_index_info* info) {
    for (int i = 0; i < info->nConstraint; ++i) {
        const auto& constraint = info->aConstraint[i];
        if (constraint.iColumn == RowSource::mostColumns && constraint.op == SQLITE_INDEX_CONSTRAINT_EQ &&
            constraint.usable != 0) {
            info->aConstraintUsage[i].argvIndex = 1;
            info->aConstraintUsage[i].omit = 1;
            return SQLITE_OK;
        }
    }
    return SQLITE_CONSTRAINT;
}

} // namespace

struct RowSource::Cursor : sqlite3_vtab_cursor {
    const RowBlock* block = nullptr;
    const RowBlock::Cell* cells = nullptr; ///< of the current row
    int row = 0;

    static Cursor& of(sqlite3_vtab_cursor* cursor) { return *static_cast<Cursor*>(cursor); }

    static int open(sqlite3_vtab*, sqlite3_vtab_cursor** cursor) {
        *cursor = new (std::nothrow) Cursor();
        return *cursor != nullptr ? SQLITE_OK : SQLITE_NOMEM;
    }
    static int close(sqlite3_vtab_cursor* cursor) {
        delete static_cast<Cursor*>(cursor);
        return SQLITE_OK;
    }
    static int filter(sqlite3_vtab_cursor* cursor, int, const char*, int, sqlite3_value** parameters) {
        Cursor& self = of(cursor);
        self.block = static_cast<const RowBlock*>(sqlite3_value_pointer(parameters[0], pointerType));
        self.cells = self.block != nullptr ? self.block->cells_.data() : nullptr;
        self.row = 0;
        return SQLITE_OK;
    }
    static int next(sqlite3_vtab_cursor* cursor) {
        Cursor& self = of(cursor);
        ++self.row;
        self.cells += self.block->columns_.size();
        return SQLITE_OK;
    }
    static int isAtEnd(sqlite3_vtab_cursor* cursor) {
        const Cursor& self = of(cursor);
        return self.block == nullptr || self.row >= self.block->rows_;
    }
    static int value(sqlite3_vtab_cursor* cursor, sqlite3_context* context, int column) {
        using Cell = RowBlock::Cell;
        const Cursor& self = of(cursor);
        if (static_cast<size_t>(column) >= self.block->columns_.size()) {
            return SQLITE_RANGE;
        }
        const Cell& cell = self.cells[column];
        switch (cell.kind) {
        case Cell::Integer:
            sqlite3_result_int64(context, cell.integer);
            break;
        case Cell::Fraction:
            sqlite3_result_double(context, cell.fraction);
            break;
        case Cell::Text:
            sqlite3_result_text(context, self.block->texts_.data() + cell.text, cell.bytes, SQLITE_STATIC);
            break;
        case Cell::Null:
            break;
        }
        return SQLITE_OK;
    }
    static int rowNumber(sqlite3_vtab_cursor* cursor, sqlite3_int64* number) {
        *number = of(cursor).row;
        return SQLITE_OK;
    }
};

int RowSource::registerOn(sqlite3* connection) {
    static const sqlite3_module module = [] {
        sqlite3_module functions{};
        functions.xConnect = connectTable;
        functions.xBestIndex = bestIndex;
        functions.xDisconnect = disconnectTable;
        functions.xOpen = Cursor::open;
        functions.xClose = Cursor::close;
        functions.xFilter = Cursor::filter;
        functions.xNext = Cursor::next;
        functions.xEof = Cursor::isAtEnd;
        functions.xColumn = Cursor::value;
        functions.xRowid = Cursor::rowNumber;
        return functions;
    }();
    return sqlite3_create_module_v2(connection, moduleName, &module, nullptr, nullptr);
}

QString RowSource::selectSql(int columns) {
    QStringList names;
    for (int column = 0; column < columns; ++column) {
        names += columnName(column);
    }
    return u"SELECT "_s + names.join(u", "_s) + u" FROM "_s + QLatin1StringView(moduleName) + u"(?1)"_s;
}

void RowSource::bind(sqlite3_stmt* statement, const RowBlock& block) {
    sqlite3_bind_pointer(statement, 1, const_cast<RowBlock*>(&block), pointerType, nullptr);
}

} // namespace dao
