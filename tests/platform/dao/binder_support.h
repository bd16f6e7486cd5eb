#pragma once

#include "platform/dao/Binder.h"

#include <QMap>
#include <gtest/gtest.h>
#include <sqlite3.h>

/// A SQLite connection in memory with a few tables and stored queries, to which bound statements are put.
class BinderTest : public testing::Test, public dao::SchemaSource {
protected:
    BinderTest();
    ~BinderTest() override;

    std::optional<dao::TableInfo> findTable(const QString& name) override;
    std::optional<QString> findQuery(const QString& name) override;
    bool holdsOnlyNumbers(const QString&, const QString&) override { return true; }

    /// Makes a table from "name type, ..." with the types long, double, text, memo, yesno, counter
    /// (the key).
    void createTable(const QString& name, const QString& fields, bool readOnly = false);
    void insert(const QString& table, const QString& rows); ///< "(1, 'a'), (2, NULL)"
    void query(const QString& name, const QString& jet) { queries_[name.toLower()] = jet; }

    dao::BoundStatement bind(const QString& jet);
    /// Rows as "a|b;c|d" with ~ for Null, of the Jet statement or of SQLite text.
    QString rows(const QString& jet) { return sqliteRows(bind(jet).sql); }
    QString sqliteRows(const QString& sql);
    QString plan(const QString& jet);
    /// Number of the error that binding and running raise, 0 for none.
    int errorOf(const QString& jet);
    /// "name:type name:type" of the result.
    QString columnsOf(const QString& jet);

    sqlite3* connection_ = nullptr;
    QMap<QString, dao::TableInfo> tables_;
    QMap<QString, QString> queries_;
};
