#pragma once

#include "platform/dao/Connection.h"
#include "platform/dao/Database.h"

#include <optional>

namespace dao {

/// How tables of the engine are declared in SQLite, and how declared tables are read back.
///
/// The name of a declared type gives the field type, and the words in it decide how SQLite stores it: what contains
/// TEXT is stored as text, DOUBLE and FLOAT as doubles, INT as whole numbers, BLOB as bytes, everything else as
/// numbers.

/// The field type of a declared type, and the size in its brackets.
struct DeclaredType {
    int type = dbLongBinary;
    int size = 0;
};
DeclaredType declaredType(const QString& declaration);

/// Tables with this prefix are the engine's own; no collection and no statement sees them.
inline constexpr char16_t systemPrefix[] = u"__vx_";
bool isSystemName(const QString& name);
/// @throws Error 3125 for a name that no table or query may have
void requireValidName(const QString& name);

/// Makes a table with its indexes in a schema of the connection, whole or not at all.
/// @throws Error 3264 no field, 3191 a field twice, 3190 too many, 3125 impossible name, 3027 ...
void createTable(Connection& connection, const QString& schema, const TableDef& definition);
void dropTable(Connection& connection, const QString& schema, const QString& table);

/// The table as it stands in its file.
struct StoredTable {
    QString name; ///< as it is spelled there
    std::vector<ColumnInfo> columns;
    QString rowKey;         ///< name of the hidden row number, empty if the table has none
    QStringList keyColumns; ///< of the declared primary key
    bool readOnly = false;  ///< a write would compute what only a stranger's declaration asks for
    friend bool operator==(const StoredTable&, const StoredTable&) = default;
};
/// @throws Error 3274 for a view, a virtual table and a table with a computed field: reading them would compute what
///         the file says, however long that takes
std::optional<StoredTable> readTable(Connection& connection, const QString& schema, const QString& table);
/// The fields that are by themselves the primary key or a unique index over all rows, under the rule by which this
/// engine compares texts.
QStringList uniqueFields(Connection& connection, const QString& schema, const StoredTable& table);
/// Names of a file's tables but for the system's, in order of name.
QStringList tableNames(Connection& connection, const QString& schema);
qint64 schemaVersion(Connection& connection, const QString& schema);
/// Changes when another connection has written.
qint64 dataVersion(Connection& connection, const QString& schema);

/// True when a number field holds no text, no bytes and nothing infinite: SQLite takes any value in any column, and
/// what another program's file declares can be circumvented. Looks at all rows, unless the field has an index.
bool holdsOnlyNumbers(Connection& connection, const QString& schema, const QString& table, const QString& field);

} // namespace dao
