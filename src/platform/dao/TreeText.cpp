#include "platform/dao/TreeText.h"

#include <QLocale>
#include <QStringList>

using namespace Qt::StringLiterals;

namespace dao {

namespace {

using tree::Expression;
using tree::Operator;
using tree::Source;

QString bracketed(const QString& name) {
    return u'[' + name + u']';
}

QString quoted(QString text) {
    return u'\'' + text.replace(u'\'', u"''"_s) + u'\'';
}

template<typename Items, typename Write>
QString joined(const Items& items, Write write) {
    QStringList texts;
    for (const auto& item : items)
        texts.append(write(item));
    return texts.join(u", "_s);
}

QString pointerText(const tree::ExpressionPtr& expression) {
    return toText(*expression);
}

QString clause(QStringView word, const tree::ExpressionPtr& condition) {
    return condition ? u" %1 %2"_s.arg(word, toText(*condition)) : QString();
}

QString numberText(const Expression& number) {
    if (number.isInteger)
        return QString::number(number.number, 'f', 0);
    QString text = QString::number(number.number, 'g', QLocale::FloatingPointShortest);
    if (!text.contains(u'.') && !text.contains(u'e'))
        text += u".0"_s;
    return text;
}

QStringView sign(Operator op) {
    switch (op) {
    case Operator::Or:
        return u"Or";
    case Operator::And:
        return u"And";
    case Operator::Xor:
        return u"Xor";
    case Operator::Equal:
        return u"=";
    case Operator::NotEqual:
        return u"<>";
    case Operator::Less:
        return u"<";
    case Operator::LessOrEqual:
        return u"<=";
    case Operator::Greater:
        return u">";
    case Operator::GreaterOrEqual:
        return u">=";
    case Operator::Like:
        return u"Like";
    case Operator::NotLike:
        return u"Not Like";
    case Operator::In:
        return u"In";
    case Operator::NotIn:
        return u"Not In";
    case Operator::Between:
        return u"Between";
    case Operator::NotBetween:
        return u"Not Between";
    case Operator::IsNull:
        return u"Is Null";
    case Operator::IsNotNull:
        return u"Is Not Null";
    case Operator::Concatenate:
        return u"&";
    case Operator::Add:
        return u"+";
    case Operator::Subtract:
    case Operator::Negate:
        return u"-";
    case Operator::Multiply:
        return u"*";
    case Operator::Divide:
        return u"/";
    case Operator::IntegerDivide:
        return u"\\";
    case Operator::Modulo:
        return u"Mod";
    case Operator::Power:
        return u"^";
    case Operator::Not:
        return u"Not";
    }
    return {};
}

QString operationText(const Expression& operation) {
    const QString word = sign(operation.op).toString();
    const QString first = toText(*operation.arguments.front());
    switch (operation.op) {
    case Operator::Not:
        return u"(Not %1)"_s.arg(first);
    case Operator::Negate:
        return u"(-%1)"_s.arg(first);
    case Operator::IsNull:
    case Operator::IsNotNull:
        return u"(%1 %2)"_s.arg(first, word);
    case Operator::Between:
    case Operator::NotBetween:
        return u"(%1 %2 %3 And %4)"_s.arg(first, word, toText(*operation.arguments[1]),
                                          toText(*operation.arguments[2]));
    case Operator::In:
    case Operator::NotIn: {
        if (operation.arguments[1]->kind == Expression::Kind::Subquery)
            return u"(%1 %2 %3)"_s.arg(first, word, toText(*operation.arguments[1]));
        QStringList items;
        for (size_t item = 1; item < operation.arguments.size(); ++item)
            items.append(toText(*operation.arguments[item]));
        return u"(%1 %2 (%3))"_s.arg(first, word, items.join(u", "_s));
    }
    default:
        return u"(%1 %2 %3)"_s.arg(first, word, toText(*operation.arguments[1]));
    }
}

QString sourceText(const Source& source) {
    const QString alias = source.alias.isEmpty() ? QString() : u" AS "_s + bracketed(source.alias);
    switch (source.kind) {
    case Source::Kind::Name:
        return bracketed(source.name) + alias;
    case Source::Kind::Select:
        return u"(%1)"_s.arg(toText(*source.select)) + alias;
    case Source::Kind::Join:
        break;
    }
    const QString kind = source.join == Source::JoinKind::Inner  ? u"INNER"_s
                         : source.join == Source::JoinKind::Left ? u"LEFT"_s
                                                                 : u"RIGHT"_s;
    return u"(%1 %2 JOIN %3 ON %4)"_s.arg(sourceText(*source.left), kind, sourceText(*source.right),
                                          toText(*source.on));
}

QString itemText(const tree::SelectItem& item) {
    return toText(*item.expression) + (item.alias.isEmpty() ? QString() : u" AS "_s + bracketed(item.alias));
}

QString insertText(const tree::Statement& statement) {
    QString text = u"INSERT INTO "_s + bracketed(statement.table);
    if (!statement.insertFields.empty())
        text += u" (%1)"_s.arg(joined(statement.insertFields, bracketed));
    return text + u' ' +
           (statement.select ? toText(*statement.select)
                             : u"VALUES (%1)"_s.arg(joined(statement.insertValues, pointerText)));
}

} // namespace

QString toText(const Expression& expression) {
    const QString qualifier = expression.qualifier.isEmpty() ? QString() : bracketed(expression.qualifier) + u'.';
    switch (expression.kind) {
    case Expression::Kind::Null:
        return u"Null"_s;
    case Expression::Kind::Number:
        return numberText(expression);
    case Expression::Kind::Text:
        return quoted(expression.text);
    case Expression::Kind::Boolean:
        return expression.number != 0 ? u"True"_s : u"False"_s;
    case Expression::Kind::Column:
        return qualifier + bracketed(expression.name);
    case Expression::Kind::Star:
        return qualifier + u'*';
    case Expression::Kind::Function:
        return expression.name + u"(%1)"_s.arg(joined(expression.arguments, pointerText));
    case Expression::Kind::Operation:
        return operationText(expression);
    case Expression::Kind::Subquery:
        return u"(%1)"_s.arg(toText(*expression.select));
    }
    return {};
}

QString toText(const tree::Select& select) {
    QString text = u"SELECT "_s;
    if (select.distinct)
        text += u"DISTINCT "_s;
    if (select.top >= 0)
        text += u"TOP %1 "_s.arg(select.top);
    text += joined(select.items, itemText);
    if (!select.from.empty())
        text += u" FROM "_s + joined(select.from, [](const tree::SourcePtr& source) { return sourceText(*source); });
    text += clause(u"WHERE", select.where);
    if (!select.groupBy.empty())
        text += u" GROUP BY "_s + joined(select.groupBy, pointerText);
    text += clause(u"HAVING", select.having);
    if (!select.orderBy.empty())
        text += u" ORDER BY "_s + joined(select.orderBy, [](const tree::OrderTerm& term) {
                    return toText(*term.expression) + (term.descending ? u" DESC"_s : QString());
                });
    if (select.unionWith)
        text += (select.unionAll ? u" UNION ALL "_s : u" UNION "_s) + toText(*select.unionWith);
    return text;
}

QString toText(const tree::Statement& statement) {
    switch (statement.kind) {
    case tree::Statement::Kind::Select:
        return toText(*statement.select);
    case tree::Statement::Kind::Insert:
        return insertText(statement);
    case tree::Statement::Kind::Delete:
        return u"DELETE FROM "_s + bracketed(statement.table) + clause(u"WHERE", statement.where);
    case tree::Statement::Kind::Update:
        break;
    }
    const QString assignments = joined(statement.assignments, [](const tree::Assignment& assignment) {
        return bracketed(assignment.field) + u" = "_s + toText(*assignment.value);
    });
    return u"UPDATE %1 SET %2"_s.arg(bracketed(statement.table), assignments) + clause(u"WHERE", statement.where);
}

} // namespace dao
