#include "binder_support.h"

#include "platform/dao/Error.h"
#include "platform/dao/Functions.h"
#include "platform/dao/Parser.h"
#include "platform/system/NumberFormat.h"

#include <stdexcept>

using namespace Qt::StringLiterals;

BinderTest::BinderTest() {
    NumberFormat::setDecimalSeparator(u',');
    sqlite3_open(":memory:", &connection_);
    sqlite3_db_config(connection_, SQLITE_DBCONFIG_DQS_DML, 0, nullptr);
    dao::registerFunctions(connection_);
}

BinderTest::~BinderTest() {
    sqlite3_close(connection_);
}

std::optional<dao::TableInfo> BinderTest::findTable(const QString& name) {
    const auto found = tables_.find(name.toLower());
    return found == tables_.end() ? std::nullopt : std::optional(*found);
}

std::optional<QString> BinderTest::findQuery(const QString& name) {
    const auto found = queries_.find(name.toLower());
    return found == queries_.end() ? std::nullopt : std::optional(*found);
}

void BinderTest::createTable(const QString& name, const QString& fields, bool readOnly) {
    struct Type {
        int code;
        QString declared;
    };
    const QMap<QString, Type> types = {{u"long"_s, {dao::dbLong, u"INTEGER"_s}},
                                       {u"double"_s, {dao::dbDouble, u"REAL"_s}},
                                       {u"text"_s, {dao::dbText, u"TEXT COLLATE VXTEXT"_s}},
                                       {u"memo"_s, {dao::dbMemo, u"TEXT COLLATE VXTEXT"_s}},
                                       {u"yesno"_s, {dao::dbBoolean, u"INTEGER NOT NULL DEFAULT 0"_s}},
                                       {u"counter"_s, {dao::dbLong, u"INTEGER PRIMARY KEY"_s}}};
    dao::TableInfo table;
    table.name = name;
    table.sqlName = u"\"main\".\"%1\""_s.arg(name);
    table.rowKey = u"rowid"_s;
    table.readOnly = readOnly;
    QStringList declared;
    for (const QString& field : fields.split(u", "_s)) {
        const QStringList words = field.split(u' ');
        const QString& type = words[1];
        dao::ColumnInfo column;
        column.name = words[0];
        column.type = types[type].code;
        column.attributes = type == u"counter"_s ? dao::dbAutoIncrField : 0;
        table.columns.push_back(column);
        declared << u"\"%1\" %2"_s.arg(words[0], types[type].declared);
    }
    tables_[name.toLower()] = table;
    sqliteRows(u"CREATE TABLE %1 (%2)"_s.arg(table.sqlName, declared.join(u", "_s)));
}

void BinderTest::insert(const QString& table, const QString& rows) {
    sqliteRows(u"INSERT INTO \"%1\" VALUES %2"_s.arg(table, rows));
}

dao::BoundStatement BinderTest::bind(const QString& jet) {
    return dao::bindStatement(dao::parseStatement(jet), *this);
}

QString BinderTest::sqliteRows(const QString& sql) {
    sqlite3_stmt* statement = nullptr;
    if (sqlite3_prepare_v2(connection_, sql.toUtf8().constData(), -1, &statement, nullptr) != SQLITE_OK)
        throw std::runtime_error(std::string(sqlite3_errmsg(connection_)) + " in " + sql.toStdString());
    QStringList rows;
    int result = SQLITE_ROW;
    while ((result = sqlite3_step(statement)) == SQLITE_ROW) {
        QStringList cells;
        for (int i = 0; i < sqlite3_column_count(statement); ++i) {
            const unsigned char* text = sqlite3_column_text(statement, i);
            cells << (text ? QString::fromUtf8(reinterpret_cast<const char*>(text)) : u"~"_s);
        }
        rows << cells.join(u'|');
    }
    sqlite3_finalize(statement);
    if (result != SQLITE_DONE) {
        dao::raiseFunctionError();
        throw std::runtime_error(std::string(sqlite3_errmsg(connection_)) + " in " + sql.toStdString());
    }
    return rows.join(u';');
}

QString BinderTest::plan(const QString& jet) {
    const QStringList steps = sqliteRows(u"EXPLAIN QUERY PLAN "_s + bind(jet).sql).split(u';');
    QStringList texts;
    for (const QString& step : steps)
        texts << step.section(u'|', 3);
    return texts.join(u"; "_s);
}

int BinderTest::errorOf(const QString& jet) {
    try {
        rows(jet);
    } catch (const dao::Error& error) {
        return error.number();
    }
    return 0;
}

QString BinderTest::columnsOf(const QString& jet) {
    QStringList columns;
    for (const dao::ColumnInfo& column : bind(jet).columns)
        columns << u"%1:%2"_s.arg(column.name).arg(column.type);
    return columns.join(u' ');
}
