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
    QString name;    ///< as the catalogue spells it
    QString schema;  ///< the file's alias, quoted
    QString sqlName; ///< qualified and quoted for SQLite, such as "ln2"."QX1_1"
    std::vector<ColumnInfo> columns;
    QString rowKey;         ///< what names a row for editing, an identifier as SQLite takes it (rowid or a quoted key
                            ///< column), written without its table; empty if none
    QStringList keyColumns; ///< of the declared primary key
    bool isLink = false;
    bool readOnly = false;
};

/// Where the binder finds names. The database answers with its tables, its links (opening the linked file
/// when it is first reached) and the texts of its stored queries.
class SchemaSource {
public:
    virtual ~SchemaSource() = default;
    virtual std::optional<TableInfo> findTable(const QString& name) = 0;
    virtual std::optional<QString> findQuery(const QString& name) = 0;
    /// True when no row of that table or link holds a text or bytes in a field declared as a number; the file
    /// itself takes any value in any field.
    virtual bool holdsOnlyNumbers(const QString& table, const QString& field) = 0;
};

/// A statement made ready for SQLite.
struct BoundStatement {
    tree::Statement::Kind kind = tree::Statement::Kind::Select;
    QString sql;
    std::vector<ColumnInfo> columns; ///< of the result, in order
    QStringList tables;              ///< tables and links reached, also through stored queries
    QStringList queries;             ///< stored queries reached
    /// For a SELECT over a single table (not a query) without grouping, DISTINCT, TOP or UNION whose rows
    /// have a key: that table, else nothing. Its rows can be edited, unless the table is readOnly; a column
    /// without `sourceField` is an expression and can't be set. What follows is empty when not editable.
    std::optional<TableInfo> editable;
    /// The same SELECT with the row key as an added last column: whereSql + orderSql.
    QString keySql;
    /// keySql without its ORDER BY. It always ends in a condition, so that
    ///     whereSql + " AND (" + bindCriteriaSql(criteria, *this) + ")" + orderSql
    /// gives those of the rows that also satisfy the criteria, and
    ///     whereSql + " AND " + rowKey + " = ?"
    /// one row read again.
    QString whereSql;
    /// One row of the table by its key ?1, whether or not it satisfies the SELECT's own condition.
    QString rowSql;
    /// The columns of the result, by position, that these statements don't read: memos, of which they only say what
    /// type of value is there (as typeof() names it), since even its length can't be had without reading it whole.
    std::vector<bool> isDeferred;
    /// rowSql with the content of one of those columns behind the row key.
    QString contentSql(int column) const { return rowList + QStringLiteral(", ") + columnSql[column] + rowFrom; }
    QString rowList, rowFrom; ///< rowSql in two
    QString orderSql;         ///< " ORDER BY ..." or nothing; without it the rows come as the table gives them
    QStringList columnSql;    ///< how each of `columns` is written inside whereSql
};

/// Resolves every name of the statement and writes SQLite text from the tree. A bare table or query name
/// may be given to bindName() in place of a statement; a query is then the statement that it is, order
/// included.
///
/// Every identifier is written quoted and every column with its source, so that nothing is left for SQLite to
/// guess. Stored queries are written as bracketed SELECTs, which SQLite flattens into the statement around
/// them. A column of the result has its AS name, the name of its field, or "source.field" where another
/// column has the same; what has none of these is Expr1000 plus its place. TOP cuts at the number of rows,
/// also between equal ones. Division by zero, a text that is no number in a calculation and the like are
/// run-time errors of the row where they happen and end the statement; a Null operand makes the result Null
/// before that.
/// @throws Error 3078 unknown table or query, 3061 unknown column, 3079 a column that several sources have,
///         3081 two sources of one name, 3062 two columns of one AS name, 3085 unknown function,
///         3075 anything that no SELECT may hold, 3122 a column neither grouped nor aggregated beside an
///         aggregate, 3096 an aggregate where none may stand, 3102 a query that reads itself, 3360 queries or
///         expressions too deep inside each other, 3306 and 3307 numbers of columns, 3093 and 3351 an ORDER
///         BY that the result can't be sorted by, 3464 type mismatch, 3027 a target that can't be written
BoundStatement bindStatement(const tree::Statement& statement, SchemaSource& schema);
BoundStatement bindName(const QString& tableOrQuery, SchemaSource& schema);

/// A condition as SQLite text, for a search on rows that are not in memory: over the result columns of an
/// editable statement, to stand inside its whereSql.
/// @throws Error 3070 unknown column, 3464
QString bindCriteriaSql(const tree::Expression& criteria, const BoundStatement& statement, SchemaSource& schema);

/// A condition of FindFirst made ready for rows in memory.
class Criteria {
public:
    using Row = std::function<Value(int column)>;

    virtual ~Criteria() = default;
    /// True when the row satisfies the condition; Null counts as false. @throws Error 3464, 13
    virtual bool matches(const Row& row) const = 0;
    /// When the condition is just "column = constant" (also written the other way round, or as a LIKE without
    /// wildcards on a text): that column and the constant, so that a recordset may answer repeated searches
    /// from an index of its own instead of walking. Equal is what compareValues() finds equal, text and
    /// number included.
    virtual std::optional<std::pair<int, Value>> equality() const = 0;
};

/// @throws Error 3077 syntax, 3070 unknown column
std::unique_ptr<Criteria> compileCriteria(const QString& text, const std::vector<ColumnInfo>& columns);

} // namespace dao
