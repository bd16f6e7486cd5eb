#pragma once

#include <QByteArrayView>
#include <QString>

namespace dao {

class Connection;
class Statement;

/// What the declaration of a table makes SQLite compute when a row is read or written. The engine's own tables hold
/// constant defaults and the length of a text; a stranger's may hold anything, and the time that it takes has no limit.

/// True for a computed field, by its row of PRAGMA table_xinfo.
bool isComputedField(const Statement& field);

/// True if it is a table without computed fields: no view and no virtual table.
bool isPlainTable(Connection& connection, const QString& schema, const QString& table);

/// True if a rule or default in a CREATE TABLE, or a column or the condition in a CREATE INDEX, calls functions other
/// than a few cheap ones, matches patterns or joins texts.
bool callsFunctions(QByteArrayView sql);

/// True if callsFunctions() is true of the table or one of its indexes.
bool computesOnWriting(Connection& connection, const QString& schema, const QString& table);

} // namespace dao
