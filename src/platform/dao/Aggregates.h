#pragma once

struct sqlite3;

namespace dao {

/// Registers the aggregates of Functions.h. @return SQLite's result
int registerAggregates(sqlite3* connection);

} // namespace dao
