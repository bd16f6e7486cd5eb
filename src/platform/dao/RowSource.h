#pragma once

#include <QString>

struct sqlite3;
struct sqlite3_stmt;

namespace dao {

class RowBlock;

/// The rows of a block as a table that SQLite can read, so that one statement inserts them all. Binding each value and
/// running a statement for each row takes half as long again.
class RowSource {
public:
    /// Columns that such a table has: as many as a Jet table takes.
    static constexpr int mostColumns = 255;

    /// To be called once for a connection. @return SQLite's code
    static int registerOn(sqlite3* connection);
    /// A SELECT of the first columns; its one parameter is the block.
    static QString selectSql(int columns);
    /// The block must stay as it is until the statement is reset.
    static void bind(sqlite3_stmt* statement, const RowBlock& block);

private:
    struct Cursor;
};

} // namespace dao
