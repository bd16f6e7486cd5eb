#pragma once

#include "tables/ResultTable.h"

#include <QStringList>
#include <vector>

/// What of a table can change places: the rows or columns that hold data. Sums and numbers of cases stay where they
/// are.
enum class TableLines { Rows, Columns };

/// A line for each, in their order: what its head says. Empty where they have fixed places: the columns of a frequency
/// table are told by them, and a stored table has no data that are known as such.
QStringList headsOf(const ResultTable& table, TableLines lines);

/// Puts the lines of data into another order, with all that the table says of them: sizes, the place of system-missing,
/// bases, numbers of cases, groups.
/// @param order for each place, from 0, the place that the line stood at before
void orderLines(ResultTable& table, TableLines lines, const std::vector<int>& order);

/// The order for another view of a table, which may have more or fewer lines: those that both have follow it, the
/// others stay at their places.
/// @param heads of the first table as they stood, `order` as they are to stand
std::vector<int> orderLike(const QStringList& heads, const std::vector<int>& order, const QStringList& ofOther);

/// True for an order that changes nothing.
bool isInOrder(const std::vector<int>& order);
