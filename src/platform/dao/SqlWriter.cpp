#include "platform/dao/SqlWriter.h"

#include "platform/dao/Error.h"
#include "platform/dao/Functions.h"
#include "platform/dao/ScalarFunctions.h"
#include "platform/dao/SqlText.h"
#include "platform/dao/SqlWriting.h"

using namespace Qt::StringLiterals;

namespace dao {

namespace writing {

namespace {

using tree::Operator;

/// Some expressions are written twice, so that nesting them doubles the text at each step.
constexpr qsizetype longestText = 1024 * 1024;

/// And, Or, Xor and Not of two numbers, bit by bit.
Written bits(const BoundExpression& expression) {
    const auto whole = [&](size_t i) { return u"vx_clng("_s + within(value(*expression.arguments[i]), 0) + u')'; };
    switch (expression.op) {
    case Operator::Not:
        return {u'~' + whole(0), UnaryLevel};
    case Operator::And:
        return {whole(0) + u" & "_s + whole(1), BitLevel};
    case Operator::Or:
        return {whole(0) + u" | "_s + whole(1), BitLevel};
    default:
        return {u'(' + whole(0) + u" | "_s + whole(1) + u") & ~("_s + whole(0) + u" & "_s + whole(1) + u')', BitLevel};
    }
}

/// a & b & c ... as one call, since calls inside each other are few in SQLite.
Written concatenated(const BoundExpression& expression) {
    constexpr qsizetype most = 100; // arguments of one function in SQLite
    QStringList parts;
    const BoundExpression* left = &expression;
    while (left->kind == BoundExpression::Kind::Operation && left->op == Operator::Concatenate &&
           parts.size() < most - 1) {
        parts.prepend(within(value(*left->arguments[1]), 0));
        left = left->arguments[0].get();
    }
    parts.prepend(within(value(*left), 0));
    return {u"vx_concat("_s + parts.join(u", "_s) + u')'};
}

QChar calculationSign(const BoundExpression& expression) {
    if (expression.kind != BoundExpression::Kind::Operation || expression.isCondition)
        return {};
    switch (expression.op) {
    case Operator::Add:
        return u'+';
    case Operator::Subtract:
        return u'-';
    case Operator::Multiply:
        return u'*';
    default:
        return {};
    }
}

/// a + b - c * ... from the left on as one call, since calls inside each other are few in SQLite, and its own operators
/// make infinity or nothing at all of what is beyond all numbers.
Written calculated(const BoundExpression& expression) {
    constexpr qsizetype most = 99; // arguments of one function in SQLite but for the signs
    QStringList parts;
    QString signs;
    const BoundExpression* left = &expression;
    for (QChar sign = calculationSign(*left); !sign.isNull() && parts.size() < most - 1;
         sign = calculationSign(*left)) {
        parts.prepend(within(value(*left->arguments[1]), 0));
        signs.prepend(sign);
        left = left->arguments[0].get();
    }
    parts.prepend(within(value(*left), 0));
    return {u"vx_calc('"_s + signs + u"', "_s + parts.join(u", "_s) + u')'};
}

Written arithmetic(const BoundExpression& expression) {
    const auto& a = expression.arguments;
    switch (expression.op) {
    case Operator::Concatenate:
        return concatenated(expression);
    case Operator::Add:
    case Operator::Subtract:
    case Operator::Multiply:
        return calculated(expression);
    case Operator::Divide:
        return {call(u"vx_div"_s, a)};
    case Operator::IntegerDivide:
        return {call(u"vx_idiv"_s, a)};
    case Operator::Modulo:
        return {call(u"vx_mod"_s, a)};
    case Operator::Power:
        return {call(u"vx_pow"_s, a)};
    case Operator::Negate:
        return {call(u"vx_neg"_s, a)};
    default:
        return bits(expression);
    }
}

Written constant(const BoundExpression& expression) {
    const Value& content = expression.value;
    switch (content.kind()) {
    case Value::Kind::Null:
        return {u"NULL"_s};
    case Value::Kind::Integer:
        return {numberLiteral(content.toInteger()), UnaryLevel};
    case Value::Kind::Double:
        return {numberLiteral(content.toDouble()), UnaryLevel};
    default:
        return {quotedText(content.toText())};
    }
}

Written function(const BoundExpression& expression) {
    const auto& a = expression.arguments;
    using Form = ScalarFunction::Form;
    switch (expression.function->form) {
    case Form::IIf:
        return {u"CASE WHEN "_s + within(condition(*a[0]), 0) + u" THEN "_s + within(value(*a[1]), 0) + u" ELSE "_s +
                within(value(*a[2]), 0) + u" END"_s};
    case Form::Nz: {
        const QString instead = a.size() > 1 ? within(value(*a[1]), 0) : isNumericType(a[0]->type) ? u"0"_s : u"''"_s;
        return {u"coalesce("_s + within(value(*a[0]), 0) + u", "_s + instead + u')'};
    }
    default:
        return {call(expression.function->sqlName(), a)};
    }
}

Written aggregate(const BoundExpression& expression) {
    if (expression.aggregate == Aggregate::CountRows)
        return {u"count(*)"_s};
    const BoundExpression& argument = *expression.arguments[0];
    const QString text = within(value(argument), 0);
    // A text among values of both kinds is read as a number, or is an error; in a number field it is one in any case.
    const bool read = argument.domain == Domain::Mixed && !isNumericType(argument.type);
    const QString number = read ? u"vx_cdbl("_s + text + u')' : text;
    switch (expression.aggregate) {
    case Aggregate::Sum:
        return {u"vx_sum("_s + number + u')'};
    case Aggregate::Average:
        return {u"vx_avg("_s + number + u')'};
    case Aggregate::Variance:
        return {u"vx_var("_s + number + u')'};
    case Aggregate::VarianceOfAll:
        return {u"vx_varp("_s + number + u')'};
    case Aggregate::Deviation:
        return {u"vx_stdev("_s + number + u')'};
    case Aggregate::DeviationOfAll:
        return {u"vx_stdevp("_s + number + u')'};
    case Aggregate::Minimum:
        return {u"min("_s + writeForOrder(argument) + u')'};
    case Aggregate::Maximum:
        return {u"max("_s + writeForOrder(argument) + u')'};
    default:
        return {u"count("_s + text + u')'};
    }
}

} // namespace

QString within(const Written& written, int level) {
    if (written.text.size() > longestText)
        raiseEngineError(3360);
    return written.level < level ? u'(' + written.text + u')' : written.text;
}

QString call(const QString& function, const std::vector<BoundExpressionPtr>& arguments) {
    QStringList texts;
    for (const BoundExpressionPtr& argument : arguments)
        texts << within(value(*argument), 0);
    return function + u'(' + texts.join(u", "_s) + u')';
}

Written value(const BoundExpression& expression) {
    if (expression.isCondition)
        return {u'-' + within(condition(expression), AtomLevel), UnaryLevel};
    switch (expression.kind) {
    case BoundExpression::Kind::Constant:
        return constant(expression);
    case BoundExpression::Kind::Column:
        return {expression.column.sql};
    case BoundExpression::Kind::Operation:
        return arithmetic(expression);
    case BoundExpression::Kind::Function:
        return function(expression);
    case BoundExpression::Kind::Aggregate:
        return aggregate(expression);
    case BoundExpression::Kind::Subquery:
        break;
    }
    return {u'(' + expression.select + u')'};
}

} // namespace writing

using namespace writing;

QString writeValue(const BoundExpression& expression) {
    return within(value(expression), 0);
}

QString writeCondition(const BoundExpression& expression) {
    return within(condition(expression), 0);
}

QString writeForGrouping(const BoundExpression& expression) {
    if (expression.domain == Domain::Mixed)
        return u"vx_key("_s + writeValue(expression) + u')';
    return writeForOrder(expression);
}

QString writeForOrder(const BoundExpression& expression) {
    if (expression.domain == Domain::Mixed && isNumericType(expression.type))
        return u"vx_key("_s + writeValue(expression) + u')';
    const bool isText = expression.domain == Domain::Text || expression.domain == Domain::Mixed;
    return isText ? within(value(expression), CollateLevel) + collate : writeValue(expression);
}

namespace {

QString numberForField(const BoundExpression& expression, const ColumnInfo& field) {
    if (expression.isTextConstant() && !textToNumber(expression.value.toText()))
        raiseEngineError(3464, field.name);
    const QString number = writeValue(expression);
    const bool isNumber = expression.domain == Domain::Number;
    if (field.type == dbBoolean)
        return isNumber && expression.type == dbBoolean ? number : u"vx_cbool("_s + number + u')';
    if (field.type <= dbLong) {
        const bool fits = isNumber && expression.type >= dbBoolean && expression.type <= field.type;
        return fits ? number : u"vx_clng("_s + number + u')';
    }
    return isNumber ? number : u"vx_cdbl("_s + number + u')';
}

} // namespace

QString writeForField(const BoundExpression& expression, const ColumnInfo& field) {
    if (expression.domain == Domain::Null)
        return writeValue(expression);
    if (isTextType(field.type) && field.size > 0)
        return u"vx_fit("_s + writeValue(expression) + u", "_s + QString::number(field.size) + u", "_s +
               quotedText(field.name) + u')';
    if (isTextType(field.type) && expression.domain != Domain::Text)
        return u"vx_text("_s + writeValue(expression) + u')';
    return isNumericType(field.type) ? numberForField(expression, field) : writeValue(expression);
}

} // namespace dao
