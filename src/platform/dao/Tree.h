#pragma once

#include <QString>
#include <memory>
#include <vector>

/// The statement tree: what the parser makes of a Jet SQL text and what the binder writes SQLite text from.
namespace dao::tree {

struct Expression;
struct Select;
using ExpressionPtr = std::unique_ptr<Expression>;
using SelectPtr = std::unique_ptr<Select>;

enum class Operator {
    Or,
    And,
    Xor,
    Not,
    Equal,
    NotEqual,
    Less,
    LessOrEqual,
    Greater,
    GreaterOrEqual,
    Like,
    NotLike,
    In,
    NotIn,
    Between,
    NotBetween,
    IsNull,
    IsNotNull,
    Concatenate,
    Add,
    Subtract,
    Multiply,
    Divide,
    IntegerDivide,
    Modulo,
    Power,
    Negate
};

/// One node of an expression. Which members count depends on `kind`.
struct Expression {
    enum class Kind {
        Null,
        Number,    ///< number
        Text,      ///< text
        Boolean,   ///< number is -1 or 0
        Column,    ///< qualifier (may be empty) and name
        Star,      ///< qualifier (may be empty): * or T.*, in SELECT lists and Count(*)
        Function,  ///< name, arguments; aggregates too
        Operation, ///< op, arguments (1, 2, or 3 for Between; In: first the left side, then the list)
        Subquery   ///< select, for In and scalar use
    };
    Kind kind = Kind::Null;
    Operator op = Operator::Or;
    double number = 0;
    bool isInteger = false; ///< the number was written without a decimal part or exponent
    QString text;
    QString qualifier;
    QString name;
    std::vector<ExpressionPtr> arguments;
    SelectPtr select;
    int position = 0; ///< offset in the statement, for messages

    Expression() = default;
    ~Expression(); // frees deep trees without recursion
};

/// A place in FROM: a table or query by name, a bracketed SELECT, or a join of two places.
struct Source {
    enum class Kind { Name, Select, Join };
    enum class JoinKind { Inner, Left, Right };
    Kind kind = Kind::Name;
    QString name;
    QString alias;
    SelectPtr select;
    JoinKind join = JoinKind::Inner;
    std::unique_ptr<Source> left, right;
    ExpressionPtr on;
    int position = 0;

    Source() = default;
    ~Source();
};
using SourcePtr = std::unique_ptr<Source>;

struct SelectItem {
    ExpressionPtr expression;
    QString alias; ///< empty if none was written
};

struct OrderTerm {
    ExpressionPtr expression;
    bool descending = false;
};

struct Select {
    bool distinct = false;
    int top = -1; ///< -1: all rows
    std::vector<SelectItem> items;
    std::vector<SourcePtr> from; ///< separated by commas
    ExpressionPtr where;
    std::vector<ExpressionPtr> groupBy;
    ExpressionPtr having;
    std::vector<OrderTerm> orderBy;
    SelectPtr unionWith; ///< the next SELECT of a UNION; the last one's ORDER BY sorts the whole
    bool unionAll = false;

    Select() = default;
    ~Select();
};

struct Assignment {
    QString field;
    ExpressionPtr value;
};

struct Statement {
    enum class Kind { Select, Update, Delete, Insert };
    Kind kind = Kind::Select;
    SelectPtr select;                    ///< Select; Insert from a SELECT
    QString table;                       ///< Update, Delete, Insert
    std::vector<Assignment> assignments; ///< Update
    ExpressionPtr where;                 ///< Update, Delete
    std::vector<QString> insertFields;
    std::vector<ExpressionPtr> insertValues;
};

} // namespace dao::tree
