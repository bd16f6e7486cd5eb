#pragma once

#include "platform/dao/ExpressionBinder.h"

#include <QStringList>
#include <map>

namespace dao {

/// What the binding of one statement shares between its SELECTs.
struct BindContext {
    explicit BindContext(SchemaSource& source) : schema(source) {}

    SchemaSource& schema;
    QStringList tables;  ///< reached so far
    QStringList queries; ///< reached so far
    QStringList open;    ///< stored queries being expanded, outermost first
    int expansions = 0;

    /// What the values of a column really are: one declared as a number may hold texts in a stranger's file, and
    /// has to be compared value by value then. Asked only for columns that a statement does more with than read,
    /// since the answer may cost a walk through the table.
    Domain contentOf(const ColumnInfo& column, Domain declared);

private:
    std::map<std::pair<QString, QString>, bool> onlyNumbers_;
};

/// A SELECT as SQLite text, with its result columns.
struct BoundSelect {
    QString sql;
    std::vector<ColumnInfo> columns;
    std::vector<Domain> domains;
};

/// The sources of a FROM clause and its text.
struct BoundFrom {
    QString text;
    std::vector<ScopeSourcePtr> sources;
    bool isJoin = false;
    /// The only source is this table.
    std::optional<TableInfo> table;
};

/// Reads FROM: finds tables, expands stored queries and writes joins so that SQLite keeps their nesting.
class FromBinder {
public:
    /// @param outer names that conditions of joins can reach beside their own tables
    FromBinder(BindContext& context, const Scope* outer) : context_(context), outer_(outer) {}

    /// @throws Error 3078 unknown table, 3102 a query that reads itself, 3360 too many queries inside each
    /// other
    BoundFrom bind(const std::vector<tree::SourcePtr>& places);

    /// Reads a stored query's text and notes that it is being expanded. @throws Error 3075 if it is no SELECT
    static tree::Statement openQuery(const QString& name, const QString& text, BindContext& context);
    static ScopeSourcePtr tableSource(const TableInfo& table, const QString& visibleName);

private:
    BoundFrom bindPlace(const tree::Source& place);
    BoundFrom bindName(const tree::Source& place);
    BoundFrom bindSelect(const tree::Source& place);
    BoundFrom bindJoin(const tree::Source& place);

    BindContext& context_;
    const Scope* outer_;
    int unnamed_ = 0;
};

} // namespace dao
