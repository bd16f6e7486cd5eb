#pragma once

#include "platform/dao/Binder.h"

#include <QStringList>
#include <memory>
#include <vector>

namespace dao {

/// What is known of a value before any row is read.
enum class Domain {
    Null, ///< always Null
    Number,
    Text,
    Mixed ///< either, or unknown
};

Domain domainOf(int fieldType);

/// A column that an expression may name.
struct ScopeColumn {
    ColumnInfo info;
    Domain domain = Domain::Mixed;
    QString source; ///< name of its source
    QString sql;    ///< as SQLite text names it
    int index = 0;  ///< its place in the source
};

/// A table, stored query or bracketed SELECT in FROM.
struct ScopeSource {
    QString name; ///< by which columns are qualified: the alias, or the table's name
    std::vector<ScopeColumn> columns;
};
using ScopeSourcePtr = std::shared_ptr<const ScopeSource>;

/// A recordset's columns by their names and, as long as no other has that name, as "table.field".
/// @param sql how each is written in SQLite text; may be empty for rows in memory
ScopeSourcePtr recordsetSource(const std::vector<ColumnInfo>& columns, const QStringList& sql);

/// The names that an expression can reach: the sources of its own SELECT, then those of the SELECT around it.
class Scope {
public:
    explicit Scope(const Scope* outer = nullptr) : outer_(outer) {}

    /// @throws Error 3081 for a second source of the same name
    void add(ScopeSourcePtr source);
    const std::vector<ScopeSourcePtr>& sources() const { return sources_; }
    const ScopeSource* findSource(const QString& name) const;

    /// The column of that name, null if there is none. A column of a query that is itself called
    /// "table.field" is also found when its name is written without brackets. @throws Error 3079 for a name
    /// that several sources have
    const ScopeColumn* find(const QString& qualifier, const QString& name) const;
    /// The columns of these sources that SELECTs inside have named since the last call.
    std::vector<ScopeColumn> takeNamedInside() const;

private:
    const ScopeColumn* findHere(const QString& name) const;
    /// True when the search ends here, with or without a column.
    bool findOwn(const QString& qualifier, const QString& name, const ScopeColumn*& column) const;
    const ScopeColumn* findFromInside(const QString& qualifier, const QString& name) const;

    const Scope* outer_;
    mutable std::vector<ScopeColumn> namedInside_;
    std::vector<ScopeSourcePtr> sources_;
};

} // namespace dao
