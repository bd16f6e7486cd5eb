#include "platform/dao/SelectBinder.h"

#include "platform/dao/Error.h"
#include "platform/dao/Functions.h"
#include "platform/dao/SqlText.h"
#include "platform/dao/SqlWriter.h"

#include <QHash>
#include <QSet>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace dao {

namespace {

/// Number of the first expression without a name.
constexpr int firstExpression = 1000;

QString expressionName(size_t position) {
    return u"Expr%1"_s.arg(firstExpression + static_cast<int>(position));
}

} // namespace

void SelectBinder::bind(const tree::Select& select, bool sorted) {
    distinct_ = select.distinct;
    top_ = select.top;
    from_ = FromBinder(context_, outer_).bind(select.from);
    for (const ScopeSourcePtr& source : from_.sources)
        scope_.add(source);
    bindItems(select.items);
    if (distinct_ || !sorted)
        settleContents();
    nameItems();
    if (select.where)
        where_ = expressions().bindCondition(*select.where);
    bindGrouping(select);
    if (sorted)
        bindOrder(select.orderBy);
    checkGrouping();
    if (!distinct_ && top_ < 0 && !isGrouped() && !select.unionWith && from_.table && !from_.table->rowKey.isEmpty())
        editable_ = from_.table;
}

void SelectBinder::bindItems(const std::vector<tree::SelectItem>& items) {
    for (const tree::SelectItem& item : items) {
        if (item.expression->kind == tree::Expression::Kind::Star)
            expandStar(item.expression->qualifier);
        else
            items_.push_back({expressions().bindWithAggregates(*item.expression), item.alias, {}});
    }
    if (items_.empty())
        raiseEngineError(3066);
}

void SelectBinder::expandStar(const QString& qualifier) {
    if (!qualifier.isEmpty() && !scope_.findSource(qualifier))
        raiseEngineError(3061, qualifier + u".*"_s);
    for (const ScopeSourcePtr& source : scope_.sources()) {
        if (!qualifier.isEmpty() && !sameName(source->name, qualifier))
            continue;
        for (const ScopeColumn& column : source->columns) {
            auto bound = std::make_unique<BoundExpression>();
            bound->kind = BoundExpression::Kind::Column;
            bound->column = column;
            bound->type = column.info.type;
            bound->domain = column.domain;
            items_.push_back({std::move(bound), {}, {}});
        }
    }
}

/// What * has brought is only read, unless whole rows are compared.
void SelectBinder::settleContents() {
    for (const Item& item : items_)
        if (item.expression->kind == BoundExpression::Kind::Column)
            item.expression->domain = context_.contentOf(item.expression->column.info, item.expression->domain);
}

/// An alias stays as it is; columns that share a name with anything else are prefixed with their tables.
void SelectBinder::nameItems() {
    QHash<QString, int> uses;
    for (size_t i = 0; i < items_.size(); ++i) {
        Item& item = items_[i];
        const bool isColumn = item.expression->kind == BoundExpression::Kind::Column;
        item.name = !item.alias.isEmpty() ? item.alias
                    : isColumn            ? item.expression->column.info.name
                                          : expressionName(i);
        ++uses[item.name.toCaseFolded()];
    }
    QSet<QString> taken;
    for (const Item& item : items_) {
        if (item.alias.isEmpty())
            continue;
        const QString key = item.alias.toCaseFolded();
        if (taken.contains(key))
            raiseEngineError(3062, item.alias);
        taken.insert(key);
    }
    for (size_t i = 0; i < items_.size(); ++i) {
        Item& item = items_[i];
        if (!item.alias.isEmpty())
            continue;
        if (uses[item.name.toCaseFolded()] > 1 && item.expression->kind == BoundExpression::Kind::Column)
            item.name = item.expression->column.source + u'.' + item.name;
        for (size_t number = i; taken.contains(item.name.toCaseFolded()); ++number)
            item.name = expressionName(number);
        taken.insert(item.name.toCaseFolded());
    }
}

void SelectBinder::bindGrouping(const tree::Select& select) {
    for (const tree::ExpressionPtr& key : select.groupBy)
        groupBy_.push_back(expressions().bind(*key));
    if (select.having)
        having_ = expressions().bindHaving(*select.having, groupBy_);
}

SelectBinder::Order SelectBinder::bindOrderTerm(const tree::OrderTerm& term) {
    const tree::Expression& expression = *term.expression;
    const auto count = static_cast<int>(items_.size());
    using Kind = tree::Expression::Kind;
    int position = 0;
    if (expression.kind == Kind::Number && expression.isInteger) {
        // A whole number is a place; one that isn't there can only be a mistake, as it is behind a UNION.
        if (expression.number < 1 || expression.number > count)
            raiseEngineError(3351, QString::number(expression.number));
        position = static_cast<int>(expression.number);
    } else if (expression.kind == Kind::Column && expression.qualifier.isEmpty() &&
               !scope_.find(QString(), expression.name)) {
        for (int i = 0; i < count && position == 0; ++i)
            if (sameName(items_[static_cast<size_t>(i)].name, expression.name))
                position = i + 1;
    }
    if (position > 0) {
        BoundExpression& item = *items_[static_cast<size_t>(position - 1)].expression;
        if (item.kind == BoundExpression::Kind::Column)
            item.domain = context_.contentOf(item.column.info, item.domain);
        return {&item, position, term.descending};
    }
    orderOnly_.push_back(expressions().bindWithAggregates(expression));
    const BoundExpression* bound = orderOnly_.back().get();
    for (int i = 0; i < count && position == 0; ++i)
        if (sameExpression(*items_[static_cast<size_t>(i)].expression, *bound))
            position = i + 1;
    return {bound, position, term.descending};
}

void SelectBinder::bindOrder(const std::vector<tree::OrderTerm>& terms) {
    for (const tree::OrderTerm& term : terms) {
        const Order order = bindOrderTerm(term);
        if (distinct_ && order.position == 0)
            raiseEngineError(3093);
        // A number that SQLite took for the place of a column must not stand there.
        if (!order.expression->isConstant())
            orderBy_.push_back(order);
    }
}

bool SelectBinder::isGrouped() const {
    return !groupBy_.empty() || having_ || std::any_of(items_.begin(), items_.end(), [](const Item& item) {
        return holdsAggregate(*item.expression);
    }) || std::any_of(orderBy_.begin(), orderBy_.end(), [](const Order& order) {
        return holdsAggregate(*order.expression);
    });
}

void SelectBinder::checkGrouping() const {
    if (!isGrouped())
        return;
    for (const Item& item : items_)
        requireGrouped(*item.expression, groupBy_);
    for (const Order& order : orderBy_)
        requireGrouped(*order.expression, groupBy_);
}

std::vector<ColumnInfo> SelectBinder::columns() const {
    std::vector<ColumnInfo> columns;
    for (const Item& item : items_) {
        ColumnInfo info;
        if (item.expression->kind == BoundExpression::Kind::Column)
            info = item.expression->column.info;
        info.name = item.name;
        info.type = item.expression->type;
        columns.push_back(std::move(info));
    }
    return columns;
}

std::vector<Domain> SelectBinder::domains() const {
    std::vector<Domain> domains;
    for (const Item& item : items_)
        domains.push_back(item.expression->domain);
    return domains;
}

QStringList SelectBinder::columnTexts() const {
    QStringList texts;
    for (const Item& item : items_)
        texts << writeValue(*item.expression);
    return texts;
}

QString SelectBinder::sourceName() const {
    return quotedName(scope_.sources().front()->name);
}

QString SelectBinder::itemText(const Item& item) const {
    return (distinct_ ? writeForOrder(*item.expression) : writeValue(*item.expression)) + u" AS "_s +
           quotedName(item.name);
}

QString SelectBinder::orderText() const {
    QStringList terms;
    for (const Order& order : orderBy_)
        terms << (distinct_ ? QString::number(order.position) : writeForOrder(*order.expression)) +
                     (order.descending ? u" DESC"_s : QString());
    return terms.isEmpty() ? QString() : u" ORDER BY "_s + terms.join(u", "_s);
}

SelectBinder::Clauses SelectBinder::clauses() const {
    Clauses clauses;
    QStringList list;
    for (const Item& item : items_)
        list << itemText(item);
    clauses.list = (distinct_ ? u"SELECT DISTINCT "_s : u"SELECT "_s) + list.join(u", "_s);
    if (!from_.text.isEmpty())
        clauses.from = u" FROM "_s + from_.text;
    if (where_)
        clauses.where = writeCondition(*where_);
    QStringList keys;
    for (const BoundExpressionPtr& key : groupBy_)
        keys << (key->isConstant() ? u"NULL"_s : writeForGrouping(*key));
    if (!keys.isEmpty())
        clauses.groupBy = u" GROUP BY "_s + keys.join(u", "_s);
    if (having_)
        clauses.having = u" HAVING "_s + writeCondition(*having_);
    clauses.orderBy = orderText();
    if (top_ >= 0 && !orderBy_.empty())
        return withTies(std::move(clauses));
    if (top_ >= 0)
        clauses.limit = u" LIMIT "_s + QString::number(top_);
    return clauses;
}

std::vector<bool> SelectBinder::deferredColumns() const {
    std::vector<bool> deferred(items_.size(), false);
    if (!editable_ || !hasKey())
        return deferred;
    std::transform(items_.begin(), items_.end(), deferred.begin(), [&](const Item& item) {
        const ColumnInfo& info = item.expression->column.info;
        return isColumn(item) && info.type == dbMemo && !containsName(editable_->keyColumns, info.sourceField);
    });
    return deferred;
}

/// Whether the result has all of its table's declared key.
bool SelectBinder::hasKey() const {
    QStringList fields;
    for (const Item& item : items_)
        if (isColumn(item))
            fields << item.expression->column.info.sourceField;
    return !editable_->keyColumns.isEmpty() &&
           std::ranges::all_of(editable_->keyColumns, [&](const QString& key) { return containsName(fields, key); });
}

bool SelectBinder::isColumn(const Item& item) {
    return item.expression->kind == BoundExpression::Kind::Column;
}

QString SelectBinder::listWithout(const std::vector<bool>& deferred) const {
    QStringList list;
    for (size_t i = 0; i < items_.size(); ++i)
        list << (deferred[i]
                     ? u"typeof("_s + writeValue(*items_[i].expression) + u") AS "_s + quotedName(items_[i].name)
                     : itemText(items_[i]));
    return u"SELECT "_s + list.join(u", "_s);
}

SelectBinder::Clauses SelectBinder::withTies(Clauses clauses) const {
    clauses.orderBy.clear();
    QStringList names;
    for (const Item& item : items_)
        names << quotedName(item.name);
    QStringList terms;
    for (const Order& order : orderBy_) {
        BoundExpression column;
        if (distinct_) {
            column.kind = BoundExpression::Kind::Column;
            column.column.sql = names[order.position - 1];
            column.type = order.expression->type;
            column.domain = order.expression->domain;
        }
        terms << writeForOrder(distinct_ ? column : *order.expression) + (order.descending ? u" DESC"_s : QString());
    }
    const QString rank = u", rank() OVER (ORDER BY "_s + terms.join(u", "_s) + u") AS \"top rank\""_s;
    if (distinct_)
        clauses = {u"SELECT *"_s + rank, u" FROM ("_s + compose(clauses) + u')', {}, {}, {}, {}, {}};
    else
        clauses.list += rank;
    return {u"SELECT "_s + names.join(u", "_s),
            u" FROM ("_s + compose(clauses) + u')',
            u"\"top rank\" <= "_s + QString::number(top_),
            {},
            {},
            u" ORDER BY \"top rank\""_s,
            {}};
}

QString SelectBinder::unionBranch(const std::vector<Domain>& domains) const {
    Clauses parts = clauses();
    QStringList list;
    for (size_t i = 0; i < items_.size(); ++i) {
        const BoundExpression& expression = *items_[i].expression;
        const bool becomesText = domains[i] == Domain::Text && expression.domain != Domain::Text;
        list << (becomesText
                     ? u"vx_text("_s + writeValue(expression) + u") COLLATE "_s + QString::fromLatin1(textCollation)
                     : writeForOrder(expression)) +
                    u" AS "_s + quotedName(items_[i].name);
    }
    parts.list = (distinct_ ? u"SELECT DISTINCT "_s : u"SELECT "_s) + list.join(u", "_s);
    return top_ < 0 ? compose(parts) : u"SELECT * FROM ("_s + compose(parts) + u')';
}

QString SelectBinder::compose(const Clauses& clauses) {
    const QString where = clauses.where.isEmpty() ? QString() : u" WHERE "_s + clauses.where;
    return clauses.list + clauses.from + where + clauses.groupBy + clauses.having + clauses.orderBy + clauses.limit;
}

} // namespace dao
