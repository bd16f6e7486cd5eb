#pragma once

#include "platform/dao/Tree.h"

namespace dao {

/// Jet text of a tree, every name and every operation in brackets, so that reading it again gives the same
/// tree.
QString toText(const tree::Statement& statement);
QString toText(const tree::Select& select);
QString toText(const tree::Expression& expression);

} // namespace dao
