#pragma once

#include "platform/dao/Error.h"
#include "platform/dao/Recordset.h"
#include "tables/ResultTable.h"
#include "tables/TableBuilder.h"

#include <functional>
#include <optional>

/// The options of a crosstab, by their keys.
struct CrosstabOptions {
    bool IncludeMissingXTab = false;
    bool IncludeMissingInPercentXTab = false;
    bool IncludeNinXTab = false;
    bool IncludeNinXTabPercent = false;
    bool IncludeNinXTabPercentNFirst = false;
    bool NoColumnLabels = false;
    bool NoRowLabels = false;
    bool ShowValidSums = true;
    bool ShowPercentSign = true;
    bool CommaInPercent = true;
    bool AutoColWidth = true;
};

/// What a crosstab is made from.
struct CrosstabInput {
    /// One row per combination, in any order: field 0 the value of the rows, field 1 that of the columns
    /// (Null: system-missing), field 2 the number of cases or the sum of weights. The first two fields have
    /// the names of their variables.
    dao::Recordset& counts;
    /// Labels of both variables: fi_VarName, dt_Value, dt_Label.
    dao::Recordset& labels;
    /// Missing-value definitions of the variable in the rows and of that in the columns.
    std::optional<QString> rowMissing, columnMissing;

    CrosstabOptions options;
    TextWidth textWidth = estimatedTextWidth;
    /// Asked once per record of the axes and per row of cells; gives the user interface its turn. True ends
    /// the builder.
    std::function<bool()> cancelled;
    /// Called for a percentage that cannot be computed, whose cell then stays empty; without it the standard
    /// error box asks. @param place the values of row and column
    std::function<void(const QString& place, const dao::Error& error)> onFailure;
    /// Marks set by hand, which decide in place of the definitions for the values that they hold; may be null.
    const Marks* marks = nullptr;
};

/// The five tables of a crosstab, all laid out alike: two fixed rows and columns, the values from row and
/// column 3 on, their labels beside them in row and column 1, "X" in row and column 2 for a missing value,
/// then "Summe" and "Gült. Summe".
struct CrosstabTables {
    ResultTable& shown;         ///< mfgGrid: absolute values
    ResultTable& columnPercent; ///< mfgGrid2
    ResultTable& rowPercent;    ///< mfgGrid3
    ResultTable& totalPercent;  ///< mfgGrid4
    ResultTable& absolute;      ///< mfgGrid5: a copy of the shown one
};

/// Most records that a crosstab takes its axes from; cells are looked for in all of them.
constexpr int maxCrosstabRecords = 25000;
/// Most cells between the axes; more is run-time error 7.
constexpr qint64 maxCrosstabCells = 4'000'000;

/// Builds the five tables. A cell is the count of its combination, rounded half up and empty where that is 0;
/// values without cases are left out.
///
/// The tables' `markedBy` says whether the marks of the input decided. Warnings and failures are shown; see
/// BuildOutcome. A table that was cancelled has its axes at the most.
BuildOutcome BuildCrosstabTable(const CrosstabTables& tables, const CrosstabInput& input);

/// The nearest whole number, halves up: 2.5 is 3, -2.5 is -2.
double RoundHalfUp(double x);
