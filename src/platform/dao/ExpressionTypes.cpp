#include "platform/dao/ExpressionTypes.h"

#include "platform/dao/Error.h"
#include "platform/dao/ScalarFunctions.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace dao {

namespace {

using tree::Operator;

void setType(BoundExpression& expression, int type) {
    expression.type = type;
    expression.domain = domainOf(type);
}

void setCondition(BoundExpression& expression) {
    setType(expression, dbBoolean);
    expression.isCondition = true;
}

bool isWholeType(int type) {
    return type >= dbBoolean && type <= dbLong;
}

int arithmeticType(int a, int b) {
    if (isWholeType(a) && isWholeType(b))
        return dbLong;
    return isNumericType(a) && isNumericType(b) && (a == dbBigInt || b == dbBigInt) &&
                   (a == dbBigInt || isWholeType(a)) && (b == dbBigInt || isWholeType(b))
               ? dbBigInt
               : dbDouble;
}

/// + joins two texts and adds everything else, which may be known only when the values are there.
void inferAddition(BoundExpression& sum) {
    const BoundExpression& a = *sum.arguments[0];
    const BoundExpression& b = *sum.arguments[1];
    if (a.domain == Domain::Number || b.domain == Domain::Number) {
        setType(sum, arithmeticType(a.type, b.type));
    } else if (a.domain == Domain::Text && b.domain == Domain::Text) {
        setType(sum, commonType(a.type, b.type));
    } else {
        sum.type = dbText;
        sum.domain = Domain::Mixed;
    }
}

/// Two numbers are combined bit by bit; as soon as one side is a yes or no, by truth.
void inferLogic(BoundExpression& expression) {
    if (std::any_of(expression.arguments.begin(), expression.arguments.end(),
                    [](const auto& argument) { return argument->isLogical(); })) {
        for (const auto& argument : expression.arguments)
            requireCondition(*argument);
        setCondition(expression);
    } else {
        setType(expression, dbLong);
    }
}

void inferOperation(BoundExpression& expression) {
    const auto type = [&](size_t i) { return expression.arguments[i]->type; };
    switch (expression.op) {
    case Operator::Or:
    case Operator::And:
    case Operator::Xor:
    case Operator::Not:
        return inferLogic(expression);
    case Operator::Concatenate:
        return setType(expression, dbText);
    case Operator::Add:
        return inferAddition(expression);
    case Operator::Subtract:
    case Operator::Multiply:
        return setType(expression, arithmeticType(type(0), type(1)));
    case Operator::Negate:
        return setType(expression, isNumericType(type(0)) && type(0) > dbInteger ? type(0)
                                   : isWholeType(type(0))                        ? dbInteger
                                                                                 : dbDouble);
    case Operator::Divide:
    case Operator::Power:
        return setType(expression, dbDouble);
    case Operator::IntegerDivide:
    case Operator::Modulo:
        return setType(expression, dbLong);
    default:
        return setCondition(expression);
    }
}

void inferFunction(BoundExpression& expression) {
    const ScalarFunction& function = *expression.function;
    const auto& arguments = expression.arguments;
    using Form = ScalarFunction::Form;
    if (function.form == Form::IsNull) {
        setCondition(expression);
    } else if (function.type != 0) {
        setType(expression, function.type);
    } else if (function.form == Form::Plain) {
        setType(expression, isNumericType(arguments[0]->type) ? arguments[0]->type : dbDouble);
    } else if (arguments.size() == 1) {
        expression.type = arguments[0]->type;
        expression.domain = arguments[0]->domain;
    } else {
        const BoundExpression& a = *arguments[arguments.size() - 2];
        const BoundExpression& b = *arguments[arguments.size() - 1];
        expression.domain = commonDomain(a.domain, b.domain);
        expression.type = a.domain == Domain::Null   ? b.type
                          : b.domain == Domain::Null ? a.type
                                                     : commonType(a.type, b.type);
    }
}

void inferAggregate(BoundExpression& expression) {
    switch (expression.aggregate) {
    case Aggregate::Count:
    case Aggregate::CountRows:
        return setType(expression, dbLong);
    case Aggregate::Sum:
    case Aggregate::Average:
    case Aggregate::Variance:
    case Aggregate::VarianceOfAll:
    case Aggregate::Deviation:
    case Aggregate::DeviationOfAll:
        if (expression.arguments[0]->domain == Domain::Text) {
            const BoundExpression& argument = *expression.arguments[0];
            const QString name = argument.kind == BoundExpression::Kind::Column ? argument.column.info.name : QString();
            raiseEngineError(3464, name);
        }
        return setType(expression, dbDouble);
    case Aggregate::Minimum:
    case Aggregate::Maximum:
        expression.type = expression.arguments[0]->type;
        expression.domain = expression.arguments[0]->domain;
    }
}

} // namespace

void inferType(BoundExpression& expression) {
    switch (expression.kind) {
    case BoundExpression::Kind::Operation:
        return inferOperation(expression);
    case BoundExpression::Kind::Function:
        return inferFunction(expression);
    case BoundExpression::Kind::Aggregate:
        return inferAggregate(expression);
    default:
        return;
    }
}

int commonType(int a, int b) {
    if (a == b)
        return a;
    if (isNumericType(a) && isNumericType(b))
        return isWholeType(a) && isWholeType(b) ? std::max({a, b, int{dbInteger}}) : arithmeticType(a, b);
    return a == dbMemo || b == dbMemo ? dbMemo : dbText;
}

Domain commonDomain(Domain a, Domain b) {
    if (a == Domain::Null || a == b)
        return b;
    return b == Domain::Null ? a : Domain::Mixed;
}

void requireCondition(const BoundExpression& expression) {
    if (expression.domain != Domain::Text)
        return;
    QString what;
    if (expression.kind == BoundExpression::Kind::Column)
        what = expression.column.info.name;
    else if (expression.isTextConstant())
        what = u'\'' + expression.value.toText() + u'\'';
    raiseEngineError(3464, what);
}

} // namespace dao
