#include "platform/dao/ActionBinder.h"

#include "platform/dao/Error.h"
#include "platform/dao/SelectBinder.h"
#include "platform/dao/SqlText.h"
#include "platform/dao/SqlWriter.h"

using namespace Qt::StringLiterals;

namespace dao {

namespace {

class ActionBinder {
public:
    ActionBinder(const tree::Statement& statement, BindContext& context)
        : statement_(statement), context_(context), table_(target(statement.table)) {
        scope_.add(FromBinder::tableSource(table_, table_.name));
    }

    QString update() {
        QStringList assignments;
        QStringList assigned;
        for (const tree::Assignment& assignment : statement_.assignments) {
            const ColumnInfo& field = fieldOf(assignment.field);
            if (containsName(assigned, field.name))
                raiseEngineError(3063, field.name);
            assigned << field.name;
            assignments << quotedName(field.name) + u" = "_s +
                               writeForField(*expressions().bind(*assignment.value), field);
        }
        return u"UPDATE "_s + place() + u" SET "_s + assignments.join(u", "_s) + where();
    }

    QString remove() { return u"DELETE FROM "_s + place() + where(); }

    QString insert() {
        std::vector<ColumnInfo> fields;
        QStringList names;
        for (const QString& name : statement_.insertFields) {
            fields.push_back(fieldOf(name));
            if (containsName(names, fields.back().name))
                raiseEngineError(3063, fields.back().name);
            names << fields.back().name;
        }
        if (fields.empty())
            fields = table_.columns;
        QStringList columns;
        for (const ColumnInfo& field : fields)
            columns << quotedName(field.name);
        return u"INSERT INTO "_s + table_.sqlName + u" ("_s + columns.join(u", "_s) + u") "_s +
               (statement_.select ? selectedRows(fields) : valueList(fields));
    }

private:
    TableInfo target(const QString& name) {
        const std::optional<TableInfo> table = context_.schema.findTable(name);
        if (!table) {
            const bool isQuery = context_.schema.findQuery(name).has_value();
            raiseEngineError(isQuery ? 3027 : 3078, name);
        }
        if (table->readOnly)
            raiseEngineError(3027, name);
        context_.tables << table->name;
        return *table;
    }

    ExpressionBinder expressions() { return expressionBinder(scope_, context_); }

    const ColumnInfo& fieldOf(const QString& name) {
        for (const ColumnInfo& column : table_.columns)
            if (sameName(column.name, name))
                return column;
        raiseEngineError(3061, name);
    }

    QString place() const { return table_.sqlName + u" AS "_s + quotedName(table_.name); }

    QString where() {
        if (!statement_.where)
            return {};
        return u" WHERE "_s + writeCondition(*expressions().bindCondition(*statement_.where));
    }

    QString valueList(const std::vector<ColumnInfo>& fields) {
        if (statement_.insertValues.size() != fields.size())
            raiseEngineError(3346);
        const Scope nothing;
        ExpressionBinder binder = expressionBinder(nothing, context_);
        QStringList values;
        for (size_t i = 0; i < fields.size(); ++i)
            values << writeForField(*binder.bind(*statement_.insertValues[i]), fields[i]);
        return u"VALUES ("_s + values.join(u", "_s) + u')';
    }

    QString selectedRows(const std::vector<ColumnInfo>& fields) {
        const BoundSelect select = SelectBinder::bindWhole(*statement_.select, context_, nullptr);
        if (select.columns.size() != fields.size())
            raiseEngineError(3346);
        QStringList values;
        for (size_t i = 0; i < fields.size(); ++i) {
            BoundExpression column;
            column.kind = BoundExpression::Kind::Column;
            column.column.sql = u"\"rows\"."_s + quotedName(select.columns[i].name);
            column.type = select.columns[i].type;
            column.domain = context_.contentOf(select.columns[i], select.domains[i]);
            values << writeForField(column, fields[i]);
        }
        return u"SELECT "_s + values.join(u", "_s) + u" FROM ("_s + select.sql + u") AS \"rows\""_s;
    }

    const tree::Statement& statement_;
    BindContext& context_;
    TableInfo table_;
    Scope scope_;
};

} // namespace

QString bindAction(const tree::Statement& statement, BindContext& context) {
    ActionBinder binder(statement, context);
    switch (statement.kind) {
    case tree::Statement::Kind::Update:
        return binder.update();
    case tree::Statement::Kind::Delete:
        return binder.remove();
    default:
        return binder.insert();
    }
}

} // namespace dao
