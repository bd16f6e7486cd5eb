#pragma once

#include "platform/dao/Scope.h"
#include "platform/dao/Tree.h"

#include <memory>
#include <vector>

namespace dao {

struct ScalarFunction;

enum class Aggregate {
    Count,
    CountRows,
    Sum,
    Average,
    Minimum,
    Maximum,
    Variance, ///< of a sample: by the number of values less one
    VarianceOfAll,
    Deviation, ///< of a sample
    DeviationOfAll
};

/// An expression whose names are resolved and whose type is known: what SQLite text is written from, and what
/// the condition of a search is evaluated on.
struct BoundExpression {
    enum class Kind {
        Constant,  ///< value
        Column,    ///< column
        Operation, ///< op, arguments
        Function,  ///< function, arguments
        Aggregate, ///< aggregate, arguments
        Subquery   ///< select: text of a SELECT with one column, that of column.info; arguments: the columns
                   ///< of the SELECT around it that it names
    };
    Kind kind = Kind::Constant;
    Value value;
    ScopeColumn column;
    tree::Operator op = tree::Operator::Or;
    const ScalarFunction* function = nullptr;
    Aggregate aggregate = Aggregate::CountRows;
    std::vector<std::unique_ptr<BoundExpression>> arguments;
    QString select;

    int type = dbText; ///< field type of the value
    Domain domain = Domain::Mixed;
    /// A comparison or the like. Its value is -1 or 0; as a condition it is written as SQLite's own 1 or 0.
    bool isCondition = false;

    /// True for what stands for yes or no in an And, Or or Not; other numbers are combined bit by bit.
    bool isLogical() const { return isCondition || domain == Domain::Null || type == dbBoolean; }
    bool isConstant() const { return kind == Kind::Constant; }
    bool isTextConstant() const { return isConstant() && value.kind() == Value::Kind::Text; }
};
using BoundExpressionPtr = std::unique_ptr<BoundExpression>;

/// True when both compute the same from the same columns.
bool sameExpression(const BoundExpression& a, const BoundExpression& b);
bool holdsAggregate(const BoundExpression& expression);

/// True for a LIKE pattern that only the same text matches.
bool isPlainPattern(const QString& pattern);

} // namespace dao
