#pragma once

#include "analysis/result/TableResult.h"

#include <QJsonObject>
#include <QStringList>

/// What a table says of itself, below it and wherever it goes. All words in the language in force.

/// The lines below the table in its window: notes, what the numbers stand on, what percentages are of.
QStringList linesBelow(const TableResult& result);
/// The lines of a table that leaves the program: the same, its groups, the options that are not as a fresh program has
/// them, and whether it was cut short or bears other marks than it was made with. Empty for a result without a table.
QStringList provenanceLines(const TableResult& result);
/// The same as data: study, variables with their missing values, filter or part, weight, n, validN (null where the
/// table states none), options that differ from the defaults, notes, percent. A comparison has `entries` in place of
/// study, filter, weight and numbers.
QJsonObject provenanceFacts(const TableResult& result);
