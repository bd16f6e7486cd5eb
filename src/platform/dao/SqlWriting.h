#pragma once

#include "platform/dao/BoundExpression.h"
#include "platform/dao/Functions.h"

#include <QString>
#include <vector>

/// What the writing of values and that of conditions share: each is made of the other.
namespace dao::writing {

/// SQLite's own, loosest first: brackets are written only where they are needed, since its parser takes few
/// of them.
enum Precedence {
    OrLevel = 1,
    AndLevel,
    NotLevel,
    EqualityLevel,
    OrderLevel,
    BitLevel,
    CollateLevel,
    UnaryLevel,
    AtomLevel
};

/// An expression's text with the level at which it holds together.
struct Written {
    QString text;
    int level = AtomLevel;
};

inline const QString collate = QStringLiteral(" COLLATE ") + QString::fromLatin1(textCollation);

Written value(const BoundExpression& expression);
Written condition(const BoundExpression& expression);

/// The text, in brackets if it holds together less than the level asks for. @throws Error 3360 when it has grown beyond
/// all measure
QString within(const Written& written, int level);
QString call(const QString& function, const std::vector<BoundExpressionPtr>& arguments);

} // namespace dao::writing
