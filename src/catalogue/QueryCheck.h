#pragma once

#include <QString>
#include <QStringList>

namespace archive {

/// What keeps a study's own statement of its cases (`dt_query`) from being weighted or from having its tables
/// found.
///
/// Analyses put a weight into such a statement as text: before the first FROM, with a WHERE and at most one
/// join behind it. And they look for the tables that they must link behind the first FROM and the first JOIN.
/// Statements of one table without brackets and conditions fit; others work at most unweighted.
/// @param caseTables  tables of the study's cases
/// @return one sentence a reason, in the user's language; empty if it fits
QStringList queryWarnings(const QString& query, const QStringList& caseTables);

} // namespace archive
