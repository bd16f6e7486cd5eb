#include "platform/dao/Binder.h"
#include "platform/dao/Error.h"
#include "platform/dao/FromBinder.h"
#include "platform/dao/Parser.h"
#include "platform/dao/ScalarFunctions.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace dao {

namespace {

using tree::Operator;
using Row = Criteria::Row;

/// A condition's answer; nothing stands for Null.
using Truth = std::optional<bool>;

Value valueOf(const BoundExpression& expression, const Row& row);
Truth truthOf(const BoundExpression& expression, const Row& row);

Truth negated(Truth truth) {
    return truth ? Truth(!*truth) : truth;
}

Truth compared(const Value& a, Operator op, const Value& b) {
    if (a.isNull() || b.isNull())
        return std::nullopt;
    if (!haveOrder(a, b))
        return op == Operator::NotEqual;
    const int order = compareValues(a, b);
    switch (op) {
    case Operator::Equal:
        return order == 0;
    case Operator::NotEqual:
        return order != 0;
    case Operator::Less:
        return order < 0;
    case Operator::LessOrEqual:
        return order <= 0;
    case Operator::Greater:
        return order > 0;
    default:
        return order >= 0;
    }
}

/// And ends at the first no, Or at the first yes; Null decides only when nothing else does.
Truth joined(const BoundExpression& expression, const Row& row, bool deciding) {
    Truth result = !deciding;
    for (const BoundExpressionPtr& argument : expression.arguments) {
        const Truth truth = truthOf(*argument, row);
        if (truth == deciding)
            return deciding;
        if (!truth)
            result = std::nullopt;
    }
    return result;
}

Truth differing(Truth a, Truth b) {
    return a && b ? Truth(*a != *b) : std::nullopt;
}

Truth isIn(const BoundExpression& expression, const Row& row) {
    const Value left = valueOf(*expression.arguments[0], row);
    Truth result = false;
    for (size_t i = 1; i < expression.arguments.size(); ++i) {
        const Truth equal = compared(left, Operator::Equal, valueOf(*expression.arguments[i], row));
        if (equal == true)
            return true;
        if (!equal)
            result = std::nullopt;
    }
    return result;
}

Truth isBetween(const BoundExpression& expression, const Row& row) {
    const Value value = valueOf(*expression.arguments[0], row);
    const Truth low = compared(value, Operator::GreaterOrEqual, valueOf(*expression.arguments[1], row));
    const Truth high = compared(value, Operator::LessOrEqual, valueOf(*expression.arguments[2], row));
    if (low == false || high == false)
        return false;
    return low && high ? Truth(true) : std::nullopt;
}

Truth truthOfValue(const Value& value) {
    const Value truth = bodies::condition({value});
    return truth.isNull() ? Truth() : Truth(truth.toInteger() != 0);
}

Truth conditionTruth(const BoundExpression& expression, const Row& row) {
    const auto& a = expression.arguments;
    const auto value = [&](size_t i) { return valueOf(*a[i], row); };
    if (expression.kind == BoundExpression::Kind::Function)
        return value(0).isNull();
    switch (expression.op) {
    case Operator::And:
        return joined(expression, row, false);
    case Operator::Or:
        return joined(expression, row, true);
    case Operator::Xor:
        return differing(truthOf(*a[0], row), truthOf(*a[1], row));
    case Operator::Not:
        return negated(truthOf(*a[0], row));
    case Operator::Like:
        return truthOfValue(bodies::like({value(0), value(1)}));
    case Operator::NotLike:
        return negated(truthOfValue(bodies::like({value(0), value(1)})));
    case Operator::In:
        return isIn(expression, row);
    case Operator::NotIn:
        return negated(isIn(expression, row));
    case Operator::Between:
        return isBetween(expression, row);
    case Operator::NotBetween:
        return negated(isBetween(expression, row));
    case Operator::IsNull:
        return value(0).isNull();
    case Operator::IsNotNull:
        return !value(0).isNull();
    default:
        return compared(value(0), expression.op, value(1));
    }
}

Truth truthOf(const BoundExpression& expression, const Row& row) {
    return expression.isCondition ? conditionTruth(expression, row) : truthOfValue(valueOf(expression, row));
}

Value bitsOf(Operator op, const Arguments& arguments) {
    std::vector<qint64> whole;
    for (const Value& argument : arguments) {
        const Value number = bodies::toLong({argument});
        if (number.isNull())
            return {};
        whole.push_back(number.toInteger());
    }
    switch (op) {
    case Operator::Not:
        return Value(~whole[0]);
    case Operator::And:
        return Value(whole[0] & whole[1]);
    case Operator::Or:
        return Value(whole[0] | whole[1]);
    default:
        return Value(whole[0] ^ whole[1]);
    }
}

Value computed(Operator op, const Arguments& arguments) {
    switch (op) {
    case Operator::Concatenate:
        return bodies::concat(arguments);
    case Operator::Add:
        return bodies::add(arguments);
    case Operator::Subtract:
        return bodies::subtract(arguments);
    case Operator::Multiply:
        return bodies::multiply(arguments);
    case Operator::Divide:
        return bodies::divide(arguments);
    case Operator::IntegerDivide:
        return bodies::divideWhole(arguments);
    case Operator::Modulo:
        return bodies::modulo(arguments);
    case Operator::Power:
        return bodies::power(arguments);
    case Operator::Negate:
        return bodies::negate(arguments);
    default:
        return bitsOf(op, arguments);
    }
}

Value functionValue(const BoundExpression& expression, const Row& row) {
    const auto& a = expression.arguments;
    using Form = ScalarFunction::Form;
    switch (expression.function->form) {
    case Form::IIf:
        return valueOf(truthOf(*a[0], row) == true ? *a[1] : *a[2], row);
    case Form::Nz: {
        const Value value = valueOf(*a[0], row);
        if (!value.isNull())
            return value;
        if (a.size() > 1)
            return valueOf(*a[1], row);
        return isNumericType(a[0]->type) ? Value(0) : Value(u""_s);
    }
    default:
        break;
    }
    Arguments arguments;
    for (const BoundExpressionPtr& argument : a)
        arguments.append(valueOf(*argument, row));
    return expression.function->body(arguments);
}

Value valueOf(const BoundExpression& expression, const Row& row) {
    if (expression.isCondition) {
        const Truth truth = conditionTruth(expression, row);
        return truth ? Value(*truth) : Value();
    }
    switch (expression.kind) {
    case BoundExpression::Kind::Constant:
        return expression.value;
    case BoundExpression::Kind::Column:
        return row(expression.column.index);
    case BoundExpression::Kind::Function:
        return functionValue(expression, row);
    default:
        break;
    }
    Arguments arguments;
    for (const BoundExpressionPtr& argument : expression.arguments)
        arguments.append(valueOf(*argument, row));
    return computed(expression.op, arguments);
}

class BoundCriteria : public Criteria {
public:
    explicit BoundCriteria(BoundExpressionPtr condition) : condition_(std::move(condition)) {}

    bool matches(const Row& row) const override { return truthOf(*condition_, row) == true; }

    std::optional<std::pair<int, Value>> equality() const override {
        if (condition_->kind != BoundExpression::Kind::Operation || condition_->op != Operator::Equal)
            return std::nullopt;
        const BoundExpression* column = condition_->arguments[0].get();
        const BoundExpression* constant = condition_->arguments[1].get();
        if (column->isConstant())
            std::swap(column, constant);
        if (column->kind != BoundExpression::Kind::Column || !constant->isConstant() || constant->value.isNull())
            return std::nullopt;
        return std::pair(column->column.index, constant->value);
    }

private:
    BoundExpressionPtr condition_;
};

} // namespace

std::unique_ptr<Criteria> compileCriteria(const QString& text, const std::vector<ColumnInfo>& columns) {
    const tree::ExpressionPtr criteria = parseCriteria(text);
    Scope scope;
    scope.add(recordsetSource(columns, {}));
    ExpressionBinder binder(scope, 3070);
    return std::make_unique<BoundCriteria>(binder.bindCondition(*criteria));
}

} // namespace dao
