#include "SqliteDirect.h"

#include "platform/dao/Functions.h"

#include <cstdio>
#include <cstdlib>
#include <sqlite3.h>

using namespace Qt::StringLiterals;

struct SqliteDirect::Content {
    sqlite3* handle = nullptr;
};

namespace {
volatile qint64 sink;

void check(bool good, sqlite3* handle, const QString& what) {
    if (good)
        return;
    std::fprintf(stderr, "%s: %s\n", qPrintable(what), sqlite3_errmsg(handle));
    std::exit(1);
}
} // namespace

SqliteDirect::SqliteDirect(const QString& file, const std::vector<std::pair<QString, QString>>& attached)
    : content_(std::make_unique<Content>()) {
    check(sqlite3_open(file.toUtf8().constData(), &content_->handle) == SQLITE_OK, content_->handle, file);
    dao::registerFunctions(content_->handle);
    for (const auto& [alias, path] : attached)
        run(u"ATTACH '%1' AS %2"_s.arg(path, alias));
}

SqliteDirect::~SqliteDirect() {
    sqlite3_close(content_->handle);
}

int SqliteDirect::run(const QString& sql) {
    sqlite3_stmt* statement = nullptr;
    check(sqlite3_prepare_v2(content_->handle, sql.toUtf8().constData(), -1, &statement, nullptr) == SQLITE_OK,
          content_->handle, sql);
    int rows = 0;
    int result = SQLITE_ROW;
    const int columns = sqlite3_column_count(statement);
    while ((result = sqlite3_step(statement)) == SQLITE_ROW) {
        ++rows;
        for (int column = 0; column < columns; ++column)
            sink =
                sink + (sqlite3_column_type(statement, column) == SQLITE_TEXT ? sqlite3_column_bytes(statement, column)
                                                                              : sqlite3_column_int(statement, column));
    }
    check(result == SQLITE_DONE, content_->handle, sql);
    sqlite3_finalize(statement);
    return rows;
}
