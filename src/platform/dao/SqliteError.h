#pragma once

#include "platform/dao/Connection.h"

namespace dao {

/// The engine's number for what SQLite refused.
int engineNumber(int extendedCode, Purpose purpose, const QString& message);
/// True if what SQLite has just refused failed for want of room: a full disk, a quota or a limit on the size of files,
/// which SQLite itself tells only of some of its writes, and never of a journal that can't be made.
bool isForWantOfRoom(sqlite3* connection, int code);
/// Folder into which SQLite puts what a statement can't hold in memory, such as rows to be sorted.
QString temporaryFolder();
/// What the error's description names, taken from SQLite's message: the field of a broken rule, an unknown table.
QString engineDetail(int number, const QString& message);

/// Name of the rule that holds the size of a Text column; its breach is error 3163.
QString sizeRuleName(const QString& field);

} // namespace dao
