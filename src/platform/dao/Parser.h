#pragma once

#include "platform/dao/Tree.h"

namespace dao {

/// Limits of what the parser takes, checked while it reads.
constexpr int maxStatementLength = 256 * 1024; ///< characters
constexpr int maxNesting = 200;                ///< brackets, operators and selects inside each other

/// Reads one statement (SELECT with UNION, UPDATE, DELETE, INSERT), with or without a trailing ";".
/// @throws Error 3075 with the place and what was expected there; 3035-like limits are 3075 too
tree::Statement parseStatement(const QString& text);

/// Reads the condition of a FindFirst. @throws Error 3077
tree::ExpressionPtr parseCriteria(const QString& text);

} // namespace dao
