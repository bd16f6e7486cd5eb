#pragma once

#include "platform/dao/Error.h"
#include "platform/dao/Recordset.h"
#include "tables/ResultTable.h"
#include "tables/TableBuilder.h"

#include <QStringList>
#include <array>
#include <functional>

/// The statistics that can be chosen, by their index in the selection and in the digits.
enum class Statistic {
    Count,
    Minimum,
    Maximum,
    ArithmeticMean,
    StandardDeviation,
    ValidN,
    Range,
    Sum,
    Variance,
    Skewness,
    Kurtosis,
    Mode,
    Median,
    Percentiles
};
constexpr size_t statisticCount = 14;
using StatisticSelection = std::array<bool, statisticCount>;

/// Titles of a statistic's rows or columns, English in both languages: one, or three for the percentiles.
const QStringList& titlesOf(Statistic statistic);

/// A selection as a whole number: 2 to the power (index + 1) for each statistic.
int maskOf(const StatisticSelection& selection);
/// Takes the largest powers out first; what is left over is nothing.
StatisticSelection selectionOf(int mask);

/// Name of a field type. @param attributes distinguish a counter, a text of fixed width and a hyperlink
QString fieldTypeName(int type, int attributes = 0);
/// True for the types that statistics are made of; counters and bytes are not among them.
bool isStatisticField(const dao::Field& field);

/// What a table of statistics is made from.
struct DescriptivesInput {
    /// The cases row by row: VAR the value, W2 the weight where there is one, VAR2 the group. VAR2 decides
    /// that the table has groups.
    dao::Recordset& stat;
    /// The cases that "Count" counts, with the same fields; may be the very same recordset.
    dao::Recordset& stat2;
    QString missingText; ///< definition of missing values; empty: every value is valid
    bool weighted = false;
    StatisticSelection selection{};
    QString digits;        ///< whole numbers separated by ";", by index; one that is not there counts as 0
    QString groupVariable; ///< title of the groups
    dao::Recordset* groupLabels = nullptr; ///< of the groups' values, fields dt_Value and dt_Label; may be null
    QString groupMissing{};                ///< definition of missing values of the group variable
    bool CommaInPercent = true;
    /// Gives the user interface its turn. True ends the builder.
    std::function<bool()> cancelled;
    /// Called for a statistic that cannot be computed, whose cell then stays empty; without it the standard
    /// error box asks. @param place the title of the statistic, behind the group's value where there are
    /// groups
    std::function<void(const QString& place, const dao::Error& error)> onFailure;
};

/// Groups are noted with their labels beside the cells, and whether their value is missing.
/// Builds the table of statistics: without groups one row a statistic, with groups one row a group and one
/// column a statistic. Groups are in order, Null first; a Null group has no cases. "Mode" is that of all
/// cases also in a group.
///
/// A statistic that cannot be computed shows the standard error box: Retry computes again, Ignore leaves the
/// cell empty and goes on, Abort ends the builder. A variable that is no number has a message in place of its
/// statistics.
/// @return Empty where `stat` has no rows
BuildOutcome BuildDescriptivesTable(ResultTable& table, const DescriptivesInput& input);
