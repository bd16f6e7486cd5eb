#include "platform/dao/Permissions.h"

#include <algorithm>
#include <array>
#include <sqlite3.h>
#include <string_view>

namespace dao {

namespace {

/// The longest value and the longest row, in bytes: a row of a thousand texts of the greatest length that survey files
/// know is half of it.
constexpr int longestValue = 64 * 1024 * 1024;
/// Of all connections together. Rows are sorted and grouped in a few megabytes, the rest goes to temporary files.
constexpr sqlite3_int64 mostMemory = 1024LL * 1024 * 1024;

struct Limit {
    int id;
    int value;
};

constexpr std::array limits = {
    Limit{SQLITE_LIMIT_LENGTH, longestValue},
    Limit{SQLITE_LIMIT_SQL_LENGTH, 1'000'000},
    Limit{SQLITE_LIMIT_EXPR_DEPTH, 1000},
    Limit{SQLITE_LIMIT_COMPOUND_SELECT, 500},
    Limit{SQLITE_LIMIT_VDBE_OP, 5'000'000},
    Limit{SQLITE_LIMIT_LIKE_PATTERN_LENGTH, 1000}, // the engine's own LIKE is none of SQLite's
    Limit{SQLITE_LIMIT_TRIGGER_DEPTH, 1},
    Limit{SQLITE_LIMIT_WORKER_THREADS, 0},
};

constexpr std::array<std::string_view, 17> pragmas = {
    "application_id", "cache_size",   "cell_size_check", "data_version", "index_list",  "index_xinfo",
    "journal_mode",   "locking_mode", "mmap_size",       "page_count",   "page_size",   "query_only",
    "schema_version", "synchronous",  "table_info",      "table_list",   "table_xinfo",
};

/// Kinds of virtual tables of which SQLite must know what other tables their content lies in; no statement reaches one.
constexpr const char* virtualTables[] = {"fts3", "fts4", "fts5", "rtree", "rtree_i32", "geopoly", nullptr};

/// SQLite's own functions that the engine writes; all others that it writes are registered by it.
constexpr std::array<std::string_view, 7> functions = {"coalesce", "count", "length", "max", "min", "rank", "typeof"};
constexpr std::string_view ownPrefix = "vx_";

template<size_t count>
bool isAmong(const std::array<std::string_view, count>& names, const char* name) {
    return name != nullptr && std::find(names.begin(), names.end(), name) != names.end();
}

int authorize(void*, int action, const char* first, const char* second, const char*, const char*) {
    switch (action) {
    case SQLITE_SELECT:
    case SQLITE_READ:
    case SQLITE_INSERT:
    case SQLITE_UPDATE:
    case SQLITE_DELETE:
    case SQLITE_TRANSACTION:
    case SQLITE_SAVEPOINT:
    case SQLITE_ATTACH:
    case SQLITE_DETACH:
    case SQLITE_CREATE_TABLE:
    case SQLITE_CREATE_INDEX:
    case SQLITE_REINDEX: // part of making an index
    case SQLITE_DROP_TABLE:
    case SQLITE_DROP_INDEX:
    case SQLITE_DROP_TRIGGER: // goes with its table
        return SQLITE_OK;
    case SQLITE_PRAGMA:
        return isAmong(pragmas, first) ? SQLITE_OK : SQLITE_DENY;
    case SQLITE_FUNCTION:
        return isAmong(functions, second) || (second != nullptr && std::string_view(second).starts_with(ownPrefix))
                   ? SQLITE_OK
                   : SQLITE_DENY;
    default:
        return SQLITE_DENY;
    }
}

} // namespace

void restrictConnection(sqlite3* connection) {
    for (const Limit& limit : limits) {
        sqlite3_limit(connection, limit.id, limit.value);
    }
    static const sqlite3_int64 before = sqlite3_hard_heap_limit64(mostMemory); // of the process: once
    (void)before;
    sqlite3_drop_modules(connection, const_cast<const char**>(virtualTables));
    sqlite3_set_authorizer(connection, authorize, nullptr);
}

} // namespace dao
