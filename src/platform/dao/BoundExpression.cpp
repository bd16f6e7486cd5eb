#include "platform/dao/BoundExpression.h"

#include <algorithm>

namespace dao {

bool sameExpression(const BoundExpression& a, const BoundExpression& b) {
    using Kind = BoundExpression::Kind;
    if (a.kind != b.kind || a.arguments.size() != b.arguments.size())
        return false;
    const bool same = a.kind == Kind::Constant    ? a.value == b.value
                      : a.kind == Kind::Column    ? a.column.sql == b.column.sql
                      : a.kind == Kind::Operation ? a.op == b.op
                      : a.kind == Kind::Function  ? a.function == b.function
                      : a.kind == Kind::Aggregate ? a.aggregate == b.aggregate
                                                  : a.select == b.select;
    return same && std::equal(a.arguments.begin(), a.arguments.end(), b.arguments.begin(),
                              [](const auto& left, const auto& right) { return sameExpression(*left, *right); });
}

bool holdsAggregate(const BoundExpression& expression) {
    return expression.kind == BoundExpression::Kind::Aggregate ||
           std::any_of(expression.arguments.begin(), expression.arguments.end(),
                       [](const auto& argument) { return holdsAggregate(*argument); });
}

bool isPlainPattern(const QString& pattern) {
    return std::none_of(pattern.begin(), pattern.end(),
                        [](QChar c) { return c == u'*' || c == u'?' || c == u'#' || c == u'['; });
}

} // namespace dao
