#pragma once

#include "platform/dao/FromBinder.h"

namespace dao {

/// SQLite text of an UPDATE, DELETE or INSERT.
/// @throws Error 3078 unknown table, 3027 a table that can't be written or a query, 3061 unknown field,
///         3346 as many values as fields are asked for, 3464 a value that can't fit
QString bindAction(const tree::Statement& statement, BindContext& context);

} // namespace dao
