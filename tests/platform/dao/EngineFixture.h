#pragma once

#include "platform/dao/DBEngine.h"
#include "support/TestHome.h"

#include <gtest/gtest.h>

/// A fresh folder and an engine with short waits; what a test opened through it is closed at its end.
class EngineTest : public testing::Test {
protected:
    EngineTest() { dao::DBEngine::instance().setLockWait(50); }
    ~EngineTest() override {
        while (errorOf([this] { workspace().Rollback(); }) == 0)
            ;
        for (const dao::DatabasePtr& database : opened_)
            database->Close();
        dao::DBEngine::instance().setProgress({});
        dao::DBEngine::instance().setTrace({});
        dao::DBEngine::instance().setDefinitionsInMemory(false);
    }

    dao::Workspace& workspace() { return dao::DBEngine::instance().Workspaces(0); }
    QString path(const QString& name) const { return home_.path(name); }
    dao::DatabasePtr create(const QString& name) { return keep(workspace().CreateDatabase(path(name))); }
    dao::DatabasePtr open(const QString& name, bool readOnly = false) {
        return keep(workspace().OpenDatabase(path(name), false, readOnly));
    }

    /// A table of the given fields; the first is its key.
    static void addTable(dao::Database& database, const QString& name, std::vector<dao::FieldDefinition> fields) {
        const auto table = database.CreateTableDef(name);
        table->PrimaryKey = {fields.front().Name};
        table->Fields = std::move(fields);
        database.TableDefs().Append(table);
    }
    static void addLink(dao::Database& database, const QString& name, const QString& file,
                        const QString& source = QString()) {
        const auto link = database.CreateTableDef(name);
        link->setSourceTableName(source.isEmpty() ? name : source);
        link->setConnect(QStringLiteral(";DATABASE=") + file);
        database.TableDefs().Append(link);
    }
    /// A file with one table of cases: dt_CaseID 1 to n and V1, which is the case's number times `factor`.
    void createCases(const QString& file, const QString& table, int cases, double factor = 1) {
        const auto database = workspace().CreateDatabase(path(file));
        addTable(*database, table, {{QStringLiteral("dt_CaseID"), dao::dbLong}, {QStringLiteral("V1"), dao::dbDouble}});
        const auto rows = database->openAppender(table, {QStringLiteral("dt_CaseID"), QStringLiteral("V1")});
        workspace().BeginTrans();
        for (int i = 1; i <= cases; ++i) {
            rows->setNumber(0, i);
            rows->setNumber(1, i * factor);
            rows->appendRow();
        }
        workspace().CommitTrans();
        database->Close();
    }

    /// All rows of a statement as text: fields separated by ",", rows by ";", Null as "~".
    static QString rows(dao::Database& database, const QString& statement) {
        QStringList lines;
        const auto recordset = database.OpenRecordset(statement, dao::dbOpenSnapshot);
        for (; !recordset->Eof(); recordset->MoveNext()) {
            QStringList cells;
            for (int i = 0; i < static_cast<int>(recordset->Fields().size()); ++i) {
                const dao::Value value = recordset->value(i);
                cells += value.isNull() ? QStringLiteral("~") : value.toText();
            }
            lines += cells.join(QLatin1Char(','));
        }
        return lines.join(QLatin1Char(';'));
    }

    /// Number of the error that the action throws, 0 for none.
    template<typename Action>
    static int errorOf(Action action) {
        try {
            action();
        } catch (const dao::Error& error) {
            return error.number();
        }
        return 0;
    }

    TestHome home_;

private:
    dao::DatabasePtr keep(dao::DatabasePtr database) {
        opened_.push_back(database);
        return database;
    }
    std::vector<dao::DatabasePtr> opened_;
};
