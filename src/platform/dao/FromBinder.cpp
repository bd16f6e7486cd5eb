#include "platform/dao/FromBinder.h"

#include "platform/dao/Error.h"
#include "platform/dao/Parser.h"
#include "platform/dao/SelectBinder.h"
#include "platform/dao/SqlText.h"
#include "platform/dao/SqlWriter.h"

using namespace Qt::StringLiterals;

namespace dao {

namespace {

/// SQLite's parser takes about a dozen bracketed SELECTs inside each other.
constexpr int maxOpenQueries = 8;
/// Queries that each read another one twice multiply.
constexpr int maxExpansions = 200;

ScopeSourcePtr selectSource(const BoundSelect& select, const QString& visibleName) {
    auto source = std::make_shared<ScopeSource>();
    source->name = visibleName;
    for (size_t i = 0; i < select.columns.size(); ++i) {
        ScopeColumn column{select.columns[i], select.domains[i], visibleName, {}, static_cast<int>(i)};
        column.sql = quotedName(visibleName) + u'.' + quotedName(column.info.name);
        source->columns.push_back(std::move(column));
    }
    return source;
}

BoundFrom fromSelect(const BoundSelect& select, const QString& visibleName) {
    BoundFrom from;
    from.text = u'(' + select.sql + u") AS "_s + quotedName(visibleName);
    from.sources = {selectSource(select, visibleName)};
    return from;
}

void addName(QStringList& names, const QString& name) {
    if (!containsName(names, name))
        names << name;
}

} // namespace

Domain BindContext::contentOf(const ColumnInfo& column, Domain declared) {
    if (declared != Domain::Number || column.sourceTable.isEmpty() || column.sourceField.isEmpty())
        return declared;
    const auto [entry, fresh] = onlyNumbers_.try_emplace({column.sourceTable, column.sourceField}, true);
    if (fresh)
        entry->second = schema.holdsOnlyNumbers(column.sourceTable, column.sourceField);
    return entry->second ? Domain::Number : Domain::Mixed;
}

ScopeSourcePtr FromBinder::tableSource(const TableInfo& table, const QString& visibleName) {
    auto source = std::make_shared<ScopeSource>();
    source->name = visibleName;
    for (const ColumnInfo& info : table.columns) {
        ScopeColumn column{info, domainOf(info.type), visibleName, {}, static_cast<int>(source->columns.size())};
        column.sql = quotedName(visibleName) + u'.' + quotedName(info.name);
        column.info.sourceTable = table.name;
        column.info.sourceField = info.name;
        source->columns.push_back(std::move(column));
    }
    return source;
}

tree::Statement FromBinder::openQuery(const QString& name, const QString& text, BindContext& context) {
    if (containsName(context.open, name))
        raiseEngineError(3102, name);
    if (context.open.size() >= maxOpenQueries || ++context.expansions > maxExpansions)
        raiseEngineError(3360, name);
    addName(context.queries, name);
    tree::Statement statement = parseStatement(text);
    if (statement.kind != tree::Statement::Kind::Select)
        raiseEngineError(3075, u"the query '%1' is no SELECT"_s.arg(name));
    context.open << name;
    return statement;
}

BoundFrom FromBinder::bind(const std::vector<tree::SourcePtr>& places) {
    BoundFrom whole;
    for (const tree::SourcePtr& place : places) {
        BoundFrom part = bindPlace(*place);
        whole.text += (whole.text.isEmpty() ? QString() : u", "_s) + part.text;
        whole.sources.insert(whole.sources.end(), part.sources.begin(), part.sources.end());
        whole.table = places.size() == 1 ? part.table : std::nullopt;
    }
    return whole;
}

BoundFrom FromBinder::bindPlace(const tree::Source& place) {
    switch (place.kind) {
    case tree::Source::Kind::Name:
        return bindName(place);
    case tree::Source::Kind::Select:
        return bindSelect(place);
    case tree::Source::Kind::Join:
        break;
    }
    return bindJoin(place);
}

BoundFrom FromBinder::bindName(const tree::Source& place) {
    if (const std::optional<TableInfo> table = context_.schema.findTable(place.name)) {
        addName(context_.tables, table->name);
        const QString visibleName = place.alias.isEmpty() ? table->name : place.alias;
        BoundFrom from;
        from.text = table->sqlName + u" AS "_s + quotedName(visibleName);
        from.sources = {tableSource(*table, visibleName)};
        from.table = table;
        return from;
    }
    const std::optional<QString> query = context_.schema.findQuery(place.name);
    if (!query)
        raiseEngineError(3078, place.name);
    const tree::Statement statement = openQuery(place.name, *query, context_);
    const BoundSelect select = SelectBinder::bindWhole(*statement.select, context_, nullptr);
    context_.open.removeLast();
    return fromSelect(select, place.alias.isEmpty() ? place.name : place.alias);
}

BoundFrom FromBinder::bindSelect(const tree::Source& place) {
    const BoundSelect select = SelectBinder::bindWhole(*place.select, context_, outer_);
    return fromSelect(select, place.alias.isEmpty() ? u"SELECT %1"_s.arg(++unnamed_) : place.alias);
}

/// Joins are written from the left on without brackets, which SQLite reads in that order; only a join on the
/// right side needs them. A RIGHT JOIN is the LEFT JOIN seen from the other side.
BoundFrom FromBinder::bindJoin(const tree::Source& place) {
    BoundFrom left = bindPlace(*place.left);
    BoundFrom right = bindPlace(*place.right);
    BoundFrom join;
    join.isJoin = true;
    join.sources = left.sources;
    join.sources.insert(join.sources.end(), right.sources.begin(), right.sources.end());
    Scope scope(outer_);
    for (const ScopeSourcePtr& source : join.sources)
        scope.add(source);
    ExpressionBinder binder = expressionBinder(scope, context_);
    if (place.join == tree::Source::JoinKind::Right)
        std::swap(left, right);
    join.text = left.text + (place.join == tree::Source::JoinKind::Inner ? u" INNER JOIN "_s : u" LEFT JOIN "_s) +
                (right.isJoin ? u'(' + right.text + u')' : right.text);
    if (place.on)
        join.text += u" ON "_s + writeCondition(*binder.bindCondition(*place.on));
    return join;
}

} // namespace dao
