#pragma once

#include <QString>
#include <QStringList>
#include <gtest/gtest.h>
#include <sqlite3.h>

/// Another program's connection to a file.
class Stranger {
public:
    explicit Stranger(const QString& path) { sqlite3_open(path.toUtf8().constData(), &handle_); }
    ~Stranger() { sqlite3_close(handle_); }
    void run(const char* sql) const {
        char* message = nullptr;
        EXPECT_EQ(sqlite3_exec(handle_, sql, nullptr, nullptr, &message), SQLITE_OK) << (message ? message : "");
        sqlite3_free(message);
    }
    /// The first row, its columns separated by a blank.
    QString ask(const char* sql) const {
        QStringList columns;
        const auto keep = [](void* into, int count, char** texts, char**) {
            for (int i = 0; i < count; ++i)
                *static_cast<QStringList*>(into) += QString::fromUtf8(texts[i]);
            return 0;
        };
        EXPECT_EQ(sqlite3_exec(handle_, sql, keep, &columns, nullptr), SQLITE_OK) << sqlite3_errmsg(handle_);
        return columns.join(u' ');
    }

private:
    sqlite3* handle_ = nullptr;
};
