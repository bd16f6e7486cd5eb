#pragma once

#include "platform/dao/Functions.h"

#include <QCryptographicHash>
#include <QStringList>
#include <sqlite3.h>

/// What stands in the tables of a file, for comparisons: a line a table with the number of its rows and a digest of
/// them. The order of the rows, their hidden numbers and those of counters to come don't matter; links and stored
/// queries, which are written at closing, neither.
class CatalogueDigest {
public:
    static QString of(const QString& path) {
        const CatalogueDigest file(path);
        QStringList lines;
        for (const QString& table : file.column("SELECT name FROM sqlite_schema WHERE type = 'table' AND name NOT LIKE "
                                                "'sqlite_%' AND name NOT LIKE '\\_\\_vx%' ESCAPE '\\' ORDER BY name"))
            lines << file.ofTable(table);
        return lines.join(u'\n');
    }
    /// "ok", or what is wrong with the file.
    static QString integrity(const QString& path) {
        return CatalogueDigest(path).column("PRAGMA integrity_check").join(u'\n');
    }

private:
    sqlite3* handle_ = nullptr;

    explicit CatalogueDigest(const QString& path) {
        // Not read-only: what a killed process has left is to be taken back.
        sqlite3_open(path.toUtf8().constData(), &handle_);
        sqlite3_busy_timeout(handle_, 2000);
        dao::registerFunctions(handle_);
    }
    ~CatalogueDigest() { sqlite3_close(handle_); }

    QStringList column(const QByteArray& sql) const {
        QStringList texts;
        sqlite3_stmt* rows = nullptr;
        sqlite3_prepare_v2(handle_, sql.constData(), -1, &rows, nullptr);
        while (sqlite3_step(rows) == SQLITE_ROW)
            texts << QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(rows, 0)));
        if (sqlite3_finalize(rows) != SQLITE_OK)
            texts << QString::fromUtf8(sqlite3_errmsg(handle_));
        return texts;
    }
    QString ofTable(const QString& table) const {
        const QByteArray name = '"' + table.toUtf8() + '"';
        QStringList cells;
        for (const QString& field : column("SELECT name FROM pragma_table_info('" + table.toUtf8() + "')"))
            cells << QStringLiteral("quote(\"") + field + QStringLiteral("\")");
        QStringList rows = column("SELECT " + cells.join(QStringLiteral(" || ',' || ")).toUtf8() + " FROM " + name);
        rows.sort();
        const QByteArray digest =
            QCryptographicHash::hash(rows.join(u'\n').toUtf8(), QCryptographicHash::Sha1).toHex().left(12);
        return table + u' ' + QString::number(rows.size()) + u' ' + QString::fromLatin1(digest);
    }
};
