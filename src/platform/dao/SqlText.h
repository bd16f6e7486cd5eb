#pragma once

#include <QString>
#include <QStringList>

namespace dao {

/// "name" for SQLite: every identifier is written quoted, so that no name can be taken for anything else.
QString quotedName(const QString& name);
/// 'text' for SQLite. @throws Error 3075 for a text with a zero character, which SQLite would end at
QString quotedText(const QString& text);
/// A number that SQLite reads back as exactly this double.
QString numberLiteral(double number);
QString numberLiteral(qint64 number);

/// Names of tables, columns and functions are the same without regard to case.
bool sameName(const QString& a, const QString& b);
bool containsName(const QStringList& names, const QString& name);

} // namespace dao
