#include "platform/dao/Error.h"
#include "platform/dao/ExpressionTypes.h"
#include "platform/dao/SelectBinder.h"
#include "platform/dao/SqlText.h"
#include "platform/dao/SqlWriter.h"

using namespace Qt::StringLiterals;

namespace dao {

namespace {

const QString unionName = u"union"_s;

/// The branches of a UNION, each bound for itself.
class UnionBinder {
public:
    UnionBinder(const tree::Select& first, BindContext& context, const Scope* outer) {
        for (const tree::Select* select = &first; select; select = select->unionWith.get()) {
            branches_.push_back(std::make_unique<SelectBinder>(context, outer));
            branches_.back()->bind(*select, false);
            selects_.push_back(select);
        }
        combineColumns();
    }

    BoundSelect write() const {
        BoundSelect whole;
        whole.columns = columns_;
        whole.domains = domains_;
        for (size_t i = 0; i < branches_.size(); ++i) {
            if (i > 0)
                whole.sql += selects_[i - 1]->unionAll ? u" UNION ALL "_s : u" UNION "_s;
            whole.sql += branches_[i]->unionBranch(domains_);
        }
        const QString order = orderText();
        if (!order.isEmpty())
            whole.sql = u"SELECT * FROM ("_s + whole.sql + u") AS "_s + quotedName(unionName) + order;
        return whole;
    }

private:
    void combineColumns() {
        columns_ = branches_.front()->columns();
        domains_ = branches_.front()->domains();
        for (size_t b = 1; b < branches_.size(); ++b) {
            const std::vector<ColumnInfo> columns = branches_[b]->columns();
            const std::vector<Domain> domains = branches_[b]->domains();
            if (columns.size() != columns_.size())
                raiseEngineError(3307);
            for (size_t i = 0; i < columns.size(); ++i)
                combine(columns_[i], domains_[i], columns[i], domains[i]);
        }
        for (ColumnInfo& column : columns_)
            column.attributes = 0;
    }

    static bool isBytes(int type) { return type == dbBinary || type == dbLongBinary; }

    /// Numbers beside texts become texts, so that what is the same text is one row; bytes stay as they are.
    static void combine(ColumnInfo& column, Domain& domain, const ColumnInfo& other, Domain otherDomain) {
        if (otherDomain == Domain::Null)
            return;
        const bool bytes = isBytes(column.type) || isBytes(other.type);
        column.type = domain == Domain::Null ? other.type : commonType(column.type, other.type);
        column.size = column.size > 0 && other.size > 0 ? std::max(column.size, other.size) : 0;
        domain = commonDomain(domain, otherDomain);
        if (bytes)
            column.type = dbLongBinary;
        else if (domain == Domain::Mixed && !isNumericType(column.type))
            domain = Domain::Text;
    }

    /// The last branch's ORDER BY sorts the whole, by columns of the result.
    QString orderText() const {
        QStringList terms;
        for (const tree::OrderTerm& term : selects_.back()->orderBy) {
            const size_t column = findColumn(*term.expression);
            BoundExpression bound;
            bound.kind = BoundExpression::Kind::Column;
            bound.column.sql = quotedName(unionName) + u'.' + quotedName(columns_[column].name);
            bound.domain = domains_[column];
            terms << writeForOrder(bound) + (term.descending ? u" DESC"_s : QString());
        }
        return terms.isEmpty() ? QString() : u" ORDER BY "_s + terms.join(u", "_s);
    }

    size_t findColumn(const tree::Expression& expression) const {
        using Kind = tree::Expression::Kind;
        const auto count = static_cast<double>(columns_.size());
        if (expression.kind == Kind::Number && expression.isInteger && expression.number >= 1 &&
            expression.number <= count)
            return static_cast<size_t>(expression.number) - 1;
        for (size_t i = 0; expression.kind == Kind::Column && i < columns_.size(); ++i)
            if (sameName(columns_[i].name, expression.name) ||
                sameName(columns_[i].name, expression.qualifier + u'.' + expression.name))
                return i;
        raiseEngineError(3351, expression.kind == Kind::Number ? QString::number(expression.number) : expression.name);
    }

    std::vector<const tree::Select*> selects_;
    std::vector<std::unique_ptr<SelectBinder>> branches_;
    std::vector<ColumnInfo> columns_;
    std::vector<Domain> domains_;
};

} // namespace

BoundSelect SelectBinder::bindWhole(const tree::Select& select, BindContext& context, const Scope* outer) {
    if (select.unionWith)
        return UnionBinder(select, context, outer).write();
    SelectBinder binder(context, outer);
    binder.bind(select, true);
    return {compose(binder.clauses()), binder.columns(), binder.domains()};
}

ExpressionBinder::ContentCheck contentCheck(BindContext& context) {
    return [&context](const ColumnInfo& column, Domain declared) { return context.contentOf(column, declared); };
}

ExpressionBinder expressionBinder(const Scope& scope, BindContext& context) {
    const auto subqueries = [&context](const tree::Select& select, const Scope& around) {
        BoundSelect bound = SelectBinder::bindWhole(select, context, &around);
        if (bound.columns.size() != 1)
            raiseEngineError(3306);
        const ColumnInfo& column = bound.columns.front();
        return BoundSubquery{bound.sql, column, context.contentOf(column, bound.domains.front())};
    };
    return ExpressionBinder(scope, 3061, subqueries, contentCheck(context));
}

} // namespace dao
