#pragma once

#include "platform/dao/BoundExpression.h"

#include <functional>

namespace dao {

/// What a SELECT inside an expression comes to.
struct BoundSubquery {
    QString sql;
    ColumnInfo column;
    Domain domain = Domain::Mixed;
};

/// Resolves the names of expressions and finds their types.
class ExpressionBinder {
public:
    using SubqueryBinder = std::function<BoundSubquery(const tree::Select&, const Scope& outer)>;
    /// Finds out what a column really holds, of which only the declaration is known.
    using ContentCheck = std::function<Domain(const ColumnInfo&, Domain declared)>;

    /// @param unknownColumn error number for a name that no source has
    /// @param subqueries    binds a SELECT inside an expression; without it there may be none
    /// @param content       without it columns hold what they are declared for, or are looked at row by row
    ExpressionBinder(const Scope& scope, int unknownColumn, SubqueryBinder subqueries = nullptr,
                     ContentCheck content = nullptr)
        : scope_(scope), unknownColumn_(unknownColumn), subqueries_(std::move(subqueries)),
          content_(std::move(content)) {}

    /// An expression without aggregates. @throws Error 3061 or 3070 unknown column, 3085 unknown function,
    /// 3096 aggregate
    BoundExpressionPtr bind(const tree::Expression& expression);
    /// An expression of a SELECT list or ORDER BY, where aggregates may stand.
    BoundExpressionPtr bindWithAggregates(const tree::Expression& expression);
    /// A condition. @throws Error 3464 for what can't be taken as one
    BoundExpressionPtr bindCondition(const tree::Expression& expression);
    /// A condition on groups: of aggregates, of what the rows are grouped by, and of constants.
    /// @throws Error 3122 for any other column, and as bindCondition() does
    BoundExpressionPtr bindHaving(const tree::Expression& expression, const std::vector<BoundExpressionPtr>& groups);

private:
    BoundExpressionPtr bindNode(const tree::Expression& expression);
    BoundExpressionPtr bindColumn(const tree::Expression& expression);
    BoundExpressionPtr bindFunction(const tree::Expression& expression);
    BoundExpressionPtr bindAggregate(const tree::Expression& expression, Aggregate aggregate);
    BoundExpressionPtr bindOperation(const tree::Expression& expression);
    BoundExpressionPtr bindSubquery(const tree::Expression& expression);
    void bindArguments(const tree::Expression& expression, BoundExpression& bound);

    const Scope& scope_;
    int unknownColumn_;
    SubqueryBinder subqueries_;
    ContentCheck content_;
    bool aggregatesAllowed_ = false;
    int depth_ = 0;
};

BoundExpressionPtr boundConstant(Value value, int type);

/// @throws Error 3122 with its name if an expression has a column that is neither grouped nor aggregated
void requireGrouped(const BoundExpression& expression, const std::vector<BoundExpressionPtr>& groups);

} // namespace dao
