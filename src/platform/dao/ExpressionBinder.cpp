#include "platform/dao/ExpressionBinder.h"

#include "platform/dao/Error.h"
#include "platform/dao/ExpressionTypes.h"
#include "platform/dao/ScalarFunctions.h"
#include "platform/dao/SqlText.h"

#include <array>
#include <optional>

using namespace Qt::StringLiterals;

namespace dao {

namespace {

using tree::Operator;

/// Deeper than any tree of the parser; what a search or statement walks recursively stays below it.
constexpr int maxDepth = 300;

struct AggregateName {
    QLatin1StringView name;
    Aggregate aggregate;
};

constexpr std::array aggregateNames = {
    AggregateName{"count"_L1, Aggregate::Count},           AggregateName{"sum"_L1, Aggregate::Sum},
    AggregateName{"avg"_L1, Aggregate::Average},           AggregateName{"min"_L1, Aggregate::Minimum},
    AggregateName{"max"_L1, Aggregate::Maximum},           AggregateName{"var"_L1, Aggregate::Variance},
    AggregateName{"varp"_L1, Aggregate::VarianceOfAll},    AggregateName{"stdev"_L1, Aggregate::Deviation},
    AggregateName{"stdevp"_L1, Aggregate::DeviationOfAll},
};

std::optional<Aggregate> findAggregate(const QString& name) {
    for (const AggregateName& entry : aggregateNames)
        if (name.compare(entry.name, Qt::CaseInsensitive) == 0)
            return entry.aggregate;
    return std::nullopt;
}

bool comparesValues(Operator op) {
    return (op >= Operator::Equal && op <= Operator::GreaterOrEqual) ||
           (op >= Operator::In && op <= Operator::NotBetween);
}

/// A text that spells a number is one beside a number, whatever else the number's field holds; so its index may serve.
void foldNumberText(BoundExpression& side, const BoundExpression& other) {
    if (!side.isTextConstant() || (other.domain != Domain::Number && !isNumericType(other.type)))
        return;
    if (const std::optional<double> number = textToNumber(side.value.toText())) {
        side.value = Value(*number);
        side.type = dbDouble;
        side.domain = Domain::Number;
    }
}

/// LIKE without wildcards is equality, which an index can answer: of texts, and of whole numbers with the
/// number's text.
void foldPlainLike(BoundExpression& like) {
    BoundExpression& pattern = *like.arguments[1];
    if (!pattern.isTextConstant() || !isPlainPattern(pattern.value.toText()))
        return;
    const BoundExpression& subject = *like.arguments[0];
    if (subject.type >= dbBoolean && subject.type <= dbLong) {
        const QString text = pattern.value.toText();
        const qint64 number = text.toLongLong();
        if (QString::number(number) != text)
            return;
        pattern.value = Value(number);
        pattern.type = dbLong;
        pattern.domain = Domain::Number;
    } else if (subject.domain != Domain::Text) {
        return;
    }
    like.op = like.op == Operator::Like ? Operator::Equal : Operator::NotEqual;
}

void foldNegatedNumber(BoundExpressionPtr& bound) {
    if (bound->op != Operator::Negate || !bound->arguments[0]->isConstant())
        return;
    const Value& value = bound->arguments[0]->value;
    if (value.kind() == Value::Kind::Double || value.kind() == Value::Kind::Integer)
        bound = boundConstant(bodies::negate({value}), bound->arguments[0]->type);
}

} // namespace

BoundExpressionPtr boundConstant(Value value, int type) {
    auto bound = std::make_unique<BoundExpression>();
    bound->domain = value.isNull() ? Domain::Null : domainOf(type);
    bound->value = std::move(value);
    bound->type = type;
    return bound;
}

BoundExpressionPtr ExpressionBinder::bind(const tree::Expression& expression) {
    aggregatesAllowed_ = false;
    return bindNode(expression);
}

BoundExpressionPtr ExpressionBinder::bindWithAggregates(const tree::Expression& expression) {
    aggregatesAllowed_ = true;
    return bindNode(expression);
}

BoundExpressionPtr ExpressionBinder::bindCondition(const tree::Expression& expression) {
    BoundExpressionPtr bound = bind(expression);
    requireCondition(*bound);
    return bound;
}

BoundExpressionPtr ExpressionBinder::bindHaving(const tree::Expression& expression,
                                                const std::vector<BoundExpressionPtr>& groups) {
    BoundExpressionPtr bound = bindWithAggregates(expression);
    requireCondition(*bound);
    requireGrouped(*bound, groups);
    return bound;
}

namespace {

/// The first column of the expression that is neither grouped by nor inside an aggregate, null if there is none.
const BoundExpression* findUngrouped(const BoundExpression& expression, const std::vector<BoundExpressionPtr>& keys) {
    if (expression.kind == BoundExpression::Kind::Aggregate ||
        std::any_of(keys.begin(), keys.end(), [&](const auto& key) { return sameExpression(*key, expression); }))
        return nullptr;
    if (expression.kind == BoundExpression::Kind::Column)
        return &expression;
    for (const BoundExpressionPtr& argument : expression.arguments)
        if (const BoundExpression* found = findUngrouped(*argument, keys))
            return found;
    return nullptr;
}

} // namespace

void requireGrouped(const BoundExpression& expression, const std::vector<BoundExpressionPtr>& groups) {
    if (const BoundExpression* ungrouped = findUngrouped(expression, groups))
        raiseEngineError(3122, ungrouped->column.info.name);
}

BoundExpressionPtr ExpressionBinder::bindNode(const tree::Expression& expression) {
    if (depth_ >= maxDepth)
        raiseEngineError(3360);
    ++depth_;
    BoundExpressionPtr bound;
    using Kind = tree::Expression::Kind;
    switch (expression.kind) {
    case Kind::Null:
        bound = boundConstant(Value(), dbText);
        break;
    case Kind::Number: {
        constexpr double wholeLimit = 9007199254740992.0;
        const bool whole = expression.isInteger && expression.number > -wholeLimit && expression.number < wholeLimit;
        bound = whole ? boundConstant(Value(static_cast<qint64>(expression.number)), dbLong)
                      : boundConstant(Value(expression.number), dbDouble);
        break;
    }
    case Kind::Text:
        bound = boundConstant(Value(expression.text), dbText);
        break;
    case Kind::Boolean:
        bound = boundConstant(Value(expression.number != 0), dbBoolean);
        break;
    case Kind::Column:
        bound = bindColumn(expression);
        break;
    case Kind::Star:
        raiseEngineError(3075, u"*"_s);
    case Kind::Function:
        bound = bindFunction(expression);
        break;
    case Kind::Operation:
        bound = bindOperation(expression);
        break;
    case Kind::Subquery:
        bound = bindSubquery(expression);
        break;
    }
    --depth_;
    return bound;
}

BoundExpressionPtr ExpressionBinder::bindColumn(const tree::Expression& expression) {
    const ScopeColumn* column = scope_.find(expression.qualifier, expression.name);
    if (!column) {
        const QString& qualifier = expression.qualifier;
        raiseEngineError(unknownColumn_, qualifier.isEmpty() ? expression.name : qualifier + u'.' + expression.name);
    }
    auto bound = std::make_unique<BoundExpression>();
    bound->kind = BoundExpression::Kind::Column;
    bound->column = *column;
    bound->type = column->info.type;
    bound->domain = content_ ? content_(column->info, column->domain) : column->domain;
    return bound;
}

void ExpressionBinder::bindArguments(const tree::Expression& expression, BoundExpression& bound) {
    for (const tree::ExpressionPtr& argument : expression.arguments)
        bound.arguments.push_back(bindNode(*argument));
}

BoundExpressionPtr ExpressionBinder::bindFunction(const tree::Expression& expression) {
    if (const auto aggregate = findAggregate(expression.name))
        return bindAggregate(expression, *aggregate);
    const ScalarFunction* function = findScalarFunction(expression.name);
    if (!function)
        raiseEngineError(3085, expression.name);
    const auto count = static_cast<int>(expression.arguments.size());
    if (count < function->fewest || count > function->most)
        raiseEngineError(3075, u"wrong number of arguments of "_s + expression.name);
    auto bound = std::make_unique<BoundExpression>();
    bound->kind = BoundExpression::Kind::Function;
    bound->function = function;
    bindArguments(expression, *bound);
    if (function->form == ScalarFunction::Form::IIf)
        requireCondition(*bound->arguments[0]);
    inferType(*bound);
    return bound;
}

BoundExpressionPtr ExpressionBinder::bindAggregate(const tree::Expression& expression, Aggregate aggregate) {
    if (!aggregatesAllowed_)
        raiseEngineError(3096, expression.name);
    if (expression.arguments.size() != 1)
        raiseEngineError(3075, u"wrong number of arguments of "_s + expression.name);
    auto bound = std::make_unique<BoundExpression>();
    bound->kind = BoundExpression::Kind::Aggregate;
    bound->aggregate = aggregate;
    const tree::Expression& argument = *expression.arguments[0];
    if (aggregate == Aggregate::Count && argument.kind == tree::Expression::Kind::Star) {
        bound->aggregate = Aggregate::CountRows;
    } else {
        aggregatesAllowed_ = false;
        bound->arguments.push_back(bindNode(argument));
        aggregatesAllowed_ = true;
    }
    inferType(*bound);
    return bound;
}

BoundExpressionPtr ExpressionBinder::bindOperation(const tree::Expression& expression) {
    auto bound = std::make_unique<BoundExpression>();
    bound->kind = BoundExpression::Kind::Operation;
    bound->op = expression.op;
    bindArguments(expression, *bound);
    auto& arguments = bound->arguments;
    if (comparesValues(expression.op)) {
        for (size_t i = 1; i < arguments.size(); ++i) {
            foldNumberText(*arguments[0], *arguments[i]);
            foldNumberText(*arguments[i], *arguments[0]);
        }
    } else if (expression.op == Operator::Like || expression.op == Operator::NotLike) {
        foldPlainLike(*bound);
    }
    inferType(*bound);
    foldNegatedNumber(bound);
    return bound;
}

BoundExpressionPtr ExpressionBinder::bindSubquery(const tree::Expression& expression) {
    if (!subqueries_ || !expression.select)
        raiseEngineError(3075, u"SELECT"_s);
    BoundSubquery subquery = subqueries_(*expression.select, scope_);
    auto bound = std::make_unique<BoundExpression>();
    bound->kind = BoundExpression::Kind::Subquery;
    bound->select = std::move(subquery.sql);
    bound->column.info = subquery.column;
    bound->type = subquery.column.type;
    bound->domain = subquery.domain;
    for (ScopeColumn& outer : scope_.takeNamedInside()) {
        auto column = std::make_unique<BoundExpression>();
        column->kind = BoundExpression::Kind::Column;
        column->column = std::move(outer);
        bound->arguments.push_back(std::move(column));
    }
    return bound;
}

} // namespace dao
