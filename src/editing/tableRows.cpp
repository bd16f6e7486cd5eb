#include "editing/tableRows.h"

#include "app/globals.h"
#include "catalogue/CDaoDatabase.h"
#include "catalogue/StudyRows.h"
#include "platform/dao/TextOrder.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/// As many as keep a statement short.
constexpr size_t together = 500;

QString literal(const dao::Value& value) {
    return value.kind() == dao::Value::Kind::Text ? quoted(value.toText()) : QString::number(value.toInteger());
}

/// Calls `use` with a condition for some hundred of the values at a time, and how many they are.
void inParts(const QString& field, const std::vector<dao::Value>& values,
             const std::function<void(const QString& condition, int count)>& use) {
    for (size_t from = 0; from < values.size(); from += together) {
        const size_t end = std::min(values.size(), from + together);
        QStringList list;
        for (size_t i = from; i < end; ++i)
            list << literal(values[i]);
        use(field + u" In ("_s + list.join(u", "_s) + u')', static_cast<int>(end - from));
    }
}

/// @return how many rows went
int deleteWhere(const QString& table, const QString& condition) {
    openCatalogue().Execute(u"DELETE FROM "_s + table + u" WHERE "_s + condition, dao::dbFailOnError);
    return openCatalogue().RecordsAffected();
}

} // namespace

const QStringList& assignmentFields() {
    static const QStringList fields = {u"fid"_s, u"fi_StudyNo"_s, u"fi_VariableNo"_s, u"dt_QuestionNo"_s,
                                       u"dt_PrintSelect"_s};
    return fields;
}

dao::Database& openCatalogue() {
    const dao::DatabasePtr database = gDatabase.CurrentDatabase();
    if (!database)
        dao::raiseRuntimeError(91);
    return *database;
}

QStringList presentFields(const QString& table, const QStringList& fields) {
    const std::vector<dao::ColumnInfo> columns = openCatalogue().TableDefs().Item(table)->columns();
    QStringList present;
    for (const QString& field : fields)
        if (std::ranges::any_of(columns, [&](const dao::ColumnInfo& column) {
                return column.name.compare(field, Qt::CaseInsensitive) == 0;
            }))
            present << field;
    return present;
}

void appendCells(dao::Appender& appender, const QStringList& present, const QStringList& fields,
                 const std::vector<dao::Value>& cells) {
    for (int column = 0; column < present.size(); ++column) {
        const dao::Value& cell = cells[static_cast<size_t>(fields.indexOf(present[column]))];
        if (cell.isNull())
            appender.setNull(column);
        else if (cell.kind() == dao::Value::Kind::Integer || cell.kind() == dao::Value::Kind::Double)
            appender.setNumber(column, cell.toDouble());
        else
            appender.setText(column, cell.toText());
    }
    appender.appendRow();
}

void readRows(const QString& table, const QString& field, const std::vector<dao::Value>& values,
              const std::function<void(const dao::Recordset& row)>& take) {
    inParts(field, values, [&](const QString& condition, int) {
        const dao::RecordsetPtr rows = openCatalogue().OpenRecordset(
            u"SELECT * FROM "_s + table + u" WHERE "_s + condition + u';', dao::dbOpenSnapshot);
        for (; !rows->Eof(); rows->MoveNext())
            take(*rows);
        rows->Close();
    });
}

void deleteNamedRows(const QString& table, const QString& field, const std::vector<dao::Value>& values) {
    // Where the field does not name one row, another row would go with it.
    constexpr int rowIsGone = 3167;
    inParts(field, values, [&](const QString& condition, int count) {
        if (deleteWhere(table, condition) != count)
            dao::raiseEngineError(rowIsGone);
    });
}

void deleteRowsWith(const QString& table, const QString& field, const std::vector<dao::Value>& values) {
    inParts(field, values, [&](const QString& condition, int) { deleteWhere(table, condition); });
}

QSet<int> viewsOf(int view) {
    QSet<int> views{view};
    for (int other = 1; other <= gViews.lastRow(); ++other)
        if (dao::compareTexts(gViews.at(other, ViewTable::Table), gViews.at(view, ViewTable::Table)) == 0)
            views.insert(other);
    return views;
}
