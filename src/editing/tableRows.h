#pragma once

#include "platform/dao/Database.h"

#include <QSet>
#include <QStringList>
#include <functional>
#include <vector>

/// Reading and writing many rows of the open catalogue at once.

/// What an assignment to another entry takes over, behind that entry's key.
const QStringList& assignmentFields();

/// @throws dao::Error 91 if none is open
dao::Database& openCatalogue();

/// Those of the fields that a table has, in their order; one that another program made may lack some.
QStringList presentFields(const QString& table, const QStringList& fields);

/// Appends a row. @param present the appender's fields @param fields what the cells are of; others are left out
void appendCells(dao::Appender& appender, const QStringList& present, const QStringList& fields,
                 const std::vector<dao::Value>& cells);

/// Calls `take` for each row whose field has one of the values, in the table's order for some hundred values at a time.
void readRows(const QString& table, const QString& field, const std::vector<dao::Value>& values,
              const std::function<void(const dao::Recordset& row)>& take);
/// Deletes one row for each value of a field that names rows. @throws dao::Error 3167 if they are not as many
void deleteNamedRows(const QString& table, const QString& field, const std::vector<dao::Value>& values);
/// Deletes whatever rows have one of the values.
void deleteRowsWith(const QString& table, const QString& field, const std::vector<dao::Value>& values);

/// The views that show the table of this one, itself among them.
QSet<int> viewsOf(int view);
