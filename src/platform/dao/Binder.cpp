#include "platform/dao/Binder.h"

#include "platform/dao/ActionBinder.h"
#include "platform/dao/Error.h"
#include "platform/dao/Parser.h"
#include "platform/dao/SelectBinder.h"
#include "platform/dao/SqlText.h"
#include "platform/dao/SqlWriter.h"

using namespace Qt::StringLiterals;

namespace dao {

namespace {

BoundStatement bindEditable(const SelectBinder& binder) {
    BoundStatement bound;
    const SelectBinder::Clauses clauses = binder.clauses();
    bound.sql = SelectBinder::compose(clauses);
    bound.columns = binder.columns();
    bound.editable = binder.editableTable();
    if (!bound.editable)
        return bound;
    const QString key = binder.sourceName() + u'.' + bound.editable->rowKey;
    bound.columnSql = binder.columnTexts();
    bound.isDeferred = binder.deferredColumns();
    bound.rowList = binder.listWithout(bound.isDeferred) + u", "_s + key + u" AS \"row key\""_s;
    const QString from = clauses.from + u" WHERE "_s;
    // In brackets, since a further condition follows.
    bound.whereSql = bound.rowList + from + (clauses.where.isEmpty() ? u"1"_s : u'(' + clauses.where + u')');
    bound.rowFrom = from + key + u" = ?1"_s;
    bound.rowSql = bound.rowList + bound.rowFrom;
    bound.orderSql = clauses.orderBy;
    bound.keySql = bound.whereSql + bound.orderSql;
    return bound;
}

BoundStatement bindSelect(const tree::Select& select, BindContext& context) {
    BoundStatement bound;
    if (select.unionWith) {
        const BoundSelect whole = SelectBinder::bindWhole(select, context, nullptr);
        bound.sql = whole.sql;
        bound.columns = whole.columns;
    } else {
        SelectBinder binder(context, nullptr);
        binder.bind(select, true);
        bound = bindEditable(binder);
    }
    return bound;
}

BoundStatement bindTable(const QString& name, BindContext& context) {
    tree::Select select;
    tree::SelectItem all;
    all.expression = std::make_unique<tree::Expression>();
    all.expression->kind = tree::Expression::Kind::Star;
    select.items.push_back(std::move(all));
    auto place = std::make_unique<tree::Source>();
    place->name = name;
    select.from.push_back(std::move(place));
    return bindSelect(select, context);
}

} // namespace

BoundStatement bindStatement(const tree::Statement& statement, SchemaSource& schema) {
    BindContext context(schema);
    BoundStatement bound;
    if (statement.kind == tree::Statement::Kind::Select)
        bound = bindSelect(*statement.select, context);
    else
        bound.sql = bindAction(statement, context);
    bound.kind = statement.kind;
    bound.tables = context.tables;
    bound.queries = context.queries;
    return bound;
}

BoundStatement bindName(const QString& tableOrQuery, SchemaSource& schema) {
    BindContext context(schema);
    BoundStatement bound;
    const std::optional<QString> query = schema.findTable(tableOrQuery) ? std::nullopt : schema.findQuery(tableOrQuery);
    if (query) {
        const tree::Statement statement = FromBinder::openQuery(tableOrQuery, *query, context);
        bound = bindSelect(*statement.select, context);
    } else {
        bound = bindTable(tableOrQuery, context);
    }
    bound.tables = context.tables;
    bound.queries = context.queries;
    return bound;
}

QString bindCriteriaSql(const tree::Expression& criteria, const BoundStatement& statement, SchemaSource& schema) {
    Scope scope;
    scope.add(recordsetSource(statement.columns, statement.columnSql));
    BindContext context(schema);
    ExpressionBinder binder(scope, 3070, nullptr, contentCheck(context));
    return writeCondition(*binder.bindCondition(criteria));
}

} // namespace dao
