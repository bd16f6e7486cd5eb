#pragma once

#include "platform/dao/FromBinder.h"

namespace dao {

/// Binds the expressions of a statement, with the SELECTs inside them. @throws Error 3306 for one of these with several
/// columns
ExpressionBinder expressionBinder(const Scope& scope, BindContext& context);
ExpressionBinder::ContentCheck contentCheck(BindContext& context);

/// Binds one SELECT without what follows its UNION, and writes it.
class SelectBinder {
public:
    /// The clauses of a SELECT as SQLite text, each with its keyword in front (but the
    /// condition of WHERE), empty if it isn't there.
    struct Clauses {
        QString list, from, where, groupBy, having, orderBy, limit;
    };

    SelectBinder(BindContext& context, const Scope* outer) : context_(context), scope_(outer), outer_(outer) {}

    /// @param sorted  whether ORDER BY is this SELECT's own; a UNION's sorts the whole
    /// @throws Error as bindStatement() does
    void bind(const tree::Select& select, bool sorted);

    std::vector<ColumnInfo> columns() const;
    std::vector<Domain> domains() const;
    /// How each column is written.
    QStringList columnTexts() const;
    /// The single table whose rows these are, if they can be edited.
    const std::optional<TableInfo>& editableTable() const { return editable_; }

    /// Name of the first source, quoted.
    QString sourceName() const;

    Clauses clauses() const;
    /// The memos of the table that can be edited, by position in the result; what the table's rows are told apart by
    /// is none. All of them are false where the result lacks it: a memo read later could be another row's.
    std::vector<bool> deferredColumns() const;
    /// The first clause with the type of the value in place of each of those columns.
    QString listWithout(const std::vector<bool>& deferred) const;
    /// The same as one branch of a UNION whose columns have the given types: without order, its texts under
    /// the collation that finds equal rows.
    QString unionBranch(const std::vector<Domain>& domains) const;

    /// The same with all rows that the order leaves equal to the last of TOP's.
    Clauses withTies(Clauses clauses) const;
    static QString compose(const Clauses& clauses);
    /// A whole SELECT with all that its UNION joins.
    static BoundSelect bindWhole(const tree::Select& select, BindContext& context, const Scope* outer);

private:
    struct Item {
        BoundExpressionPtr expression;
        QString alias;
        QString name;
    };
    struct Order {
        const BoundExpression* expression = nullptr;
        int position = 0; ///< of the item that it is, from 1
        bool descending = false;
    };

    ExpressionBinder expressions() { return expressionBinder(scope_, context_); }
    void bindItems(const std::vector<tree::SelectItem>& items);
    void expandStar(const QString& qualifier);
    void settleContents();
    void nameItems();
    void bindGrouping(const tree::Select& select);
    void bindOrder(const std::vector<tree::OrderTerm>& terms);
    Order bindOrderTerm(const tree::OrderTerm& term);
    void checkGrouping() const;
    bool isGrouped() const;
    static bool isColumn(const Item& item);
    bool hasKey() const;
    QString itemText(const Item& item) const;
    QString orderText() const;

    BindContext& context_;
    Scope scope_;
    const Scope* outer_;
    BoundFrom from_;
    std::vector<Item> items_;
    BoundExpressionPtr where_, having_;
    std::vector<BoundExpressionPtr> groupBy_;
    std::vector<Order> orderBy_;
    std::vector<BoundExpressionPtr> orderOnly_; ///< what is sorted by without being selected
    std::optional<TableInfo> editable_;
    bool distinct_ = false;
    int top_ = -1;
};

} // namespace dao
