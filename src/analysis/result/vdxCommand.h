#pragma once

#include "analysis/result/TableResult.h"

#include <QStringList>
#include <optional>

/// The arguments with which vdx makes the table of a result again, the command first: everything that bears on its
/// cells is named, also where it is what vdx takes by default for this catalogue today.
/// @param view that is shown, as in cbValues @param englishContents the language of the labels
/// @return nothing for a result without a whole table, and for one whose marks no command can name: several values that
/// look alike, of which a hand has marked some
std::optional<QStringList> vdxArguments(const TableResult& result, int view, bool englishContents);

/// How vdx is told of a value whose mark is set: as the table shows it; SYSMIS for system-missing. In double quotes
/// where it could be taken for something else.
QString typedValue(const QString& value, bool null);

/// "vdx" and the arguments as one line for a POSIX shell, which takes every character in it as it stands.
QString shellLine(const QStringList& arguments);
