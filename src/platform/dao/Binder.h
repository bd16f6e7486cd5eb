#pragma once

#include "platform/dao/Tree.h"
#include "platform/dao/Types.h"
#include "platform/dao/Value.h"

#include <QStringList>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace dao {

/// A table that a statement can reach, as the binder must write it for SQLite.
struct TableInfo {
    QString name;     ///< as the catalogue spells it
    QString sqlName;  ///< qualified and quoted for SQLite, such as "ln2"."QX1_1"
    std::vector<ColumnInfo> columns;
    QString rowKey;   ///< column expression that names a row for editing ("rowid" or the integer key), empty if none
    bool isLink = false;
    bool readOnly = false;
};

/// Where the binder finds names. The database answers with its tables, its links (opening the linked file when
/// it is first reached) and the texts of its stored queries.
class SchemaSource {
public:
    virtual ~SchemaSource() = default;
    virtual std::optional<TableInfo> findTable(const QString& name) = 0;
    virtual std::optional<QString> findQuery(const QString& name) = 0;
};

/// A statement made ready for SQLite.
struct BoundStatement {
    tree::Statement::Kind kind = tree::Statement::Kind::Select;
    QString sql;
    std::vector<ColumnInfo> columns;  ///< of the result, in order
    QStringList tables;               ///< tables and links reached, also through stored queries
    QStringList queries;              ///< stored queries reached
    /// For a SELECT over a single table without grouping, DISTINCT or UNION: that table, else nothing. Its rows
    /// can be edited; then `keySql` is the same SELECT with the row key as an added last column.
    std::optional<TableInfo> editable;
    QString keySql;
    /// The same rows with a further condition, written by the binder: SELECT of the key and all columns with the
    /// place for "AND (<criteria>)". Empty when not editable. See bindCriteriaSql().
    QString whereSql;
    QString orderSql;
};

/// Resolves every name of the statement and writes SQLite text from the tree. A bare table or query name
/// may be given to bindName() in place of a statement.
/// @throws Error 3078 unknown table or query, 3061 unknown column, 3075 anything that no SELECT may hold,
///         3122-like mixing of aggregates and plain columns, 3464 type mismatch
BoundStatement bindStatement(const tree::Statement& statement, SchemaSource& schema);
BoundStatement bindName(const QString& tableOrQuery, SchemaSource& schema);

/// A condition as SQLite text over the columns of one editable table, for a search on rows that are not in memory.
/// @throws Error 3070 unknown column, 3464
QString bindCriteriaSql(const tree::Expression& criteria, const TableInfo& table);

/// A condition of FindFirst made ready for rows in memory.
class Criteria {
public:
    using Row = std::function<Value(int column)>;

    virtual ~Criteria() = default;
    /// True when the row satisfies the condition; Null counts as false. @throws Error 3464, 13
    virtual bool matches(const Row& row) const = 0;
    /// When the condition is just "column = constant": that column and the constant, so that a recordset may answer
    /// repeated searches from an index of its own instead of walking.
    virtual std::optional<std::pair<int, Value>> equality() const = 0;
};

/// @throws Error 3077 syntax, 3070 unknown column
std::unique_ptr<Criteria> compileCriteria(const QString& text, const std::vector<ColumnInfo>& columns);

}
