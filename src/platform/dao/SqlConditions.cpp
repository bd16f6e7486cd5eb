#include "platform/dao/SqlText.h"
#include "platform/dao/SqlWriting.h"

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace dao::writing {

namespace {

using tree::Operator;

bool isNever(const BoundExpression& expression, Domain domain) {
    return expression.domain != domain && expression.domain != Domain::Null;
}

bool bothIn(Domain domain, const BoundExpression& a, const BoundExpression& b) {
    return !isNever(a, domain) && !isNever(b, domain);
}

struct Comparison {
    Operator op;
    QLatin1StringView symbol;
    QLatin1StringView function;
};

constexpr std::array comparisons = {
    Comparison{Operator::Equal, "="_L1, "vx_eq"_L1},   Comparison{Operator::NotEqual, "<>"_L1, "vx_ne"_L1},
    Comparison{Operator::Less, "<"_L1, "vx_lt"_L1},    Comparison{Operator::LessOrEqual, "<="_L1, "vx_le"_L1},
    Comparison{Operator::Greater, ">"_L1, "vx_gt"_L1}, Comparison{Operator::GreaterOrEqual, ">="_L1, "vx_ge"_L1},
};

Written compared(const BoundExpression& a, Operator op, const BoundExpression& b) {
    const Comparison& comparison =
        *std::find_if(comparisons.begin(), comparisons.end(), [op](const Comparison& entry) { return entry.op == op; });
    const bool numbers = bothIn(Domain::Number, a, b);
    if (!numbers && !bothIn(Domain::Text, a, b))
        return {comparison.function + u'(' + within(value(a), 0) + u", "_s + within(value(b), 0) + u')'};
    const int level = op == Operator::Equal || op == Operator::NotEqual ? EqualityLevel : OrderLevel;
    return {within(value(a), level + 1) + u' ' + comparison.symbol + u' ' +
                (numbers ? within(value(b), level + 1) : within(value(b), CollateLevel) + collate),
            level};
}

/// And or Or of two; a chain on the right keeps its brackets, since the parser has made long chains flat
/// trees that SQLite would make deep again.
Written joined(const BoundExpression& expression, QLatin1StringView word, int level) {
    return {within(condition(*expression.arguments[0]), level) + u' ' + word + u' ' +
                within(condition(*expression.arguments[1]), level + 1),
            level};
}

/// The conditions joined by OR, as flat a tree as can be.
QString anyOf(const QStringList& conditions, qsizetype begin, qsizetype end) {
    if (end - begin == 1)
        return conditions[begin];
    const qsizetype middle = begin + (end - begin) / 2;
    return u'(' + anyOf(conditions, begin, middle) + u" OR "_s + anyOf(conditions, middle, end) + u')';
}

Written negated(const Written& written) {
    return {u"NOT "_s + within(written, NotLevel), NotLevel};
}

/// A condition as 1 or 0, never another number that is true.
Written truth(const BoundExpression& expression) {
    if (expression.isCondition || expression.domain != Domain::Number)
        return condition(expression);
    return {within(value(expression), OrderLevel) + u" <> 0"_s, EqualityLevel};
}

Written between(const BoundExpression& expression) {
    const auto& a = expression.arguments;
    const bool numbers = bothIn(Domain::Number, *a[0], *a[1]) && bothIn(Domain::Number, *a[0], *a[2]);
    const bool texts = bothIn(Domain::Text, *a[0], *a[1]) && bothIn(Domain::Text, *a[0], *a[2]);
    if (!numbers && !texts) {
        const Written low = compared(*a[0], Operator::GreaterOrEqual, *a[1]);
        const Written high = compared(*a[0], Operator::LessOrEqual, *a[2]);
        return {within(low, AndLevel) + u" AND "_s + within(high, AndLevel), AndLevel};
    }
    return {within(value(*a[0]), CollateLevel) + (texts ? collate : QString()) + u" BETWEEN "_s +
                within(value(*a[1]), OrderLevel) + u" AND "_s + within(value(*a[2]), OrderLevel),
            EqualityLevel};
}

Written inSubquery(const BoundExpression& left, const BoundExpression& subquery) {
    if (bothIn(Domain::Number, left, subquery))
        return {within(value(left), OrderLevel) + u" IN ("_s + subquery.select + u')', EqualityLevel};
    if (bothIn(Domain::Text, left, subquery))
        return {within(value(left), CollateLevel) + collate + u" IN ("_s + subquery.select + u')', EqualityLevel};
    return {u"vx_key("_s + within(value(left), 0) + u") IN (SELECT vx_key("_s + quotedName(subquery.column.info.name) +
                u") FROM ("_s + subquery.select + u"))"_s,
            EqualityLevel};
}

Written inList(const BoundExpression& expression) {
    const auto& a = expression.arguments;
    if (a.size() == 2 && a[1]->kind == BoundExpression::Kind::Subquery)
        return inSubquery(*a[0], *a[1]);
    const auto allIn = [&](Domain domain) {
        return std::none_of(a.begin(), a.end(), [domain](const auto& side) { return isNever(*side, domain); });
    };
    const bool texts = !allIn(Domain::Number) && allIn(Domain::Text);
    QStringList items;
    if (!texts && !allIn(Domain::Number)) {
        for (size_t i = 1; i < a.size(); ++i)
            items << within(compared(*a[0], Operator::Equal, *a[i]), AtomLevel);
        return {anyOf(items, 0, items.size())};
    }
    for (size_t i = 1; i < a.size(); ++i)
        items << within(value(*a[i]), 0);
    return {within(value(*a[0]), texts ? CollateLevel : OrderLevel) + (texts ? collate : QString()) + u" IN ("_s +
                items.join(u", "_s) + u')',
            EqualityLevel};
}

/// And, Or, Xor and Not of yes and no.
Written logic(const BoundExpression& expression) {
    switch (expression.op) {
    case Operator::Or:
        return joined(expression, "OR"_L1, OrLevel);
    case Operator::And:
        return joined(expression, "AND"_L1, AndLevel);
    case Operator::Not:
        return negated(condition(*expression.arguments[0]));
    default:
        return {within(truth(*expression.arguments[0]), OrderLevel) + u" <> "_s +
                    within(truth(*expression.arguments[1]), OrderLevel),
                EqualityLevel};
    }
}

Written conditionOperation(const BoundExpression& expression) {
    const auto& a = expression.arguments;
    switch (expression.op) {
    case Operator::Or:
    case Operator::And:
    case Operator::Xor:
    case Operator::Not:
        return logic(expression);
    case Operator::Like:
        return {call(u"vx_like"_s, a)};
    case Operator::NotLike:
        return negated({call(u"vx_like"_s, a)});
    case Operator::In:
        return inList(expression);
    case Operator::NotIn:
        return negated(inList(expression));
    case Operator::Between:
        return between(expression);
    case Operator::NotBetween:
        return negated(between(expression));
    case Operator::IsNull:
        return {within(value(*a[0]), OrderLevel) + u" IS NULL"_s, EqualityLevel};
    case Operator::IsNotNull:
        return {within(value(*a[0]), OrderLevel) + u" IS NOT NULL"_s, EqualityLevel};
    default:
        return compared(*a[0], expression.op, *a[1]);
    }
}

} // namespace

Written condition(const BoundExpression& expression) {
    if (!expression.isCondition)
        return expression.domain == Domain::Mixed ? Written{u"vx_bool("_s + within(value(expression), 0) + u')'}
                                                  : value(expression);
    if (expression.kind == BoundExpression::Kind::Function)
        return {within(value(*expression.arguments[0]), OrderLevel) + u" IS NULL"_s, EqualityLevel};
    return conditionOperation(expression);
}

} // namespace dao::writing
