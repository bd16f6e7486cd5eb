#pragma once

#include "platform/dao/Value.h"

struct sqlite3_context;
struct sqlite3_stmt;
struct sqlite3_value;

/// Values on their way to and from SQLite.
namespace dao {

Value valueOf(sqlite3_value* value);
/// A column of the current row of a statement.
Value columnValue(sqlite3_stmt* statement, int column);
void setResult(sqlite3_context* context, const Value& value);
/// Binds a parameter (from 1); a double that is whole is bound as a whole number, as columns of doubles keep them.
int bindValue(sqlite3_stmt* statement, int parameter, const Value& value);
/// True for a double that a whole number of SQLite can stand for, so that it needs less room in a file.
inline bool isWhole(double number) {
    constexpr double largest = 9007199254740992.0; // 2^53: beyond it not every whole number is a double
    return number >= -largest && number <= largest && number == static_cast<double>(static_cast<qint64>(number));
}

} // namespace dao
