#include "platform/dao/Tree.h"

namespace dao::tree {

namespace {

/// Parts taken from a tree that is going away. A part gives up its own parts before it is destroyed, so that
/// no destructor ever runs inside that of its parent, however deep the tree was.
class Remains {
public:
    void take(Expression& expression) {
        for (ExpressionPtr& argument : expression.arguments)
            keep(std::move(argument));
        keep(std::move(expression.select));
    }

    void take(Source& source) {
        keep(std::move(source.left));
        keep(std::move(source.right));
        keep(std::move(source.select));
        keep(std::move(source.on));
    }

    void take(Select& select) {
        for (SelectItem& item : select.items)
            keep(std::move(item.expression));
        for (SourcePtr& source : select.from)
            keep(std::move(source));
        for (ExpressionPtr& group : select.groupBy)
            keep(std::move(group));
        for (OrderTerm& term : select.orderBy)
            keep(std::move(term.expression));
        keep(std::move(select.where));
        keep(std::move(select.having));
        keep(std::move(select.unionWith));
    }

    void drain() {
        while (takeOne(expressions_) || takeOne(sources_) || takeOne(selects_)) {
        }
    }

private:
    void keep(ExpressionPtr part) { keepIn(expressions_, std::move(part)); }
    void keep(SourcePtr part) { keepIn(sources_, std::move(part)); }
    void keep(SelectPtr part) { keepIn(selects_, std::move(part)); }

    template<typename Part>
    static void keepIn(std::vector<Part>& parts, Part part) {
        if (part)
            parts.push_back(std::move(part));
    }

    template<typename Part>
    bool takeOne(std::vector<Part>& parts) {
        if (parts.empty())
            return false;
        const Part part = std::move(parts.back());
        parts.pop_back();
        take(*part);
        return true;
    }

    std::vector<ExpressionPtr> expressions_;
    std::vector<SourcePtr> sources_;
    std::vector<SelectPtr> selects_;
};

template<typename Node>
void dismantle(Node& node) {
    Remains remains;
    remains.take(node);
    remains.drain();
}

} // namespace

Expression::~Expression() {
    dismantle(*this);
}

Source::~Source() {
    dismantle(*this);
}

Select::~Select() {
    dismantle(*this);
}

} // namespace dao::tree
