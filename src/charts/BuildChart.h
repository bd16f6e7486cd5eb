#pragma once

#include "charts/ChartModel.h"
#include "config/Options.h"
#include "tables/ResultTable.h"
#include "tables/TableOrigin.h"

#include <functional>

/// What a chart is made from.
struct ChartSource {
    const ResultTable& table; ///< as it is shown
    QString caption;          ///< the title that the table has
    int view = 0;             ///< of a crosstab or comparison: 0 absolute values, above that percentages
    const TableOrigin& origin;
    const Options& options; ///< in force now: a chart follows them without a new run, cells are as their run wrote them
};

/// Asked for the first item of an axis that has more than a chart takes, rows before columns. An answer that is no
/// number from 1 to the number of items counts as 1, and so does a prompt that is not there.
using StartPrompt = std::function<QString(const QString& question)>;
/// Asks the user; nothing where he cancels.
QString askForStart(const QString& question);

/// The chart of a table that is ready, for when what it shows has changed. A table whose result is no longer valid
/// keeps the chart that it has: its caller does not come here. Items begin at option StartItem. A cell that holds
/// neither nothing nor a number shows the standard error box; Ignore leaves its point empty, Abort all from there on. A
/// chart without categories has no caption.
///
/// Where an axis has as many items as MaxItems (at least 1) or fewer, all are shown. Items that the table marks as
/// missing count with IncludeMissing only. A frequency has a series of its values; a crosstab's rows are series and its
/// columns categories, a comparison's studies are series and its values categories. Statistics have no chart.
ChartModel BuildChart(const ChartSource& source, const StartPrompt& prompt);

/// The chart for somebody who turns to it, and for runs over many variables. As BuildChart(), but: StartItem counts for
/// nothing, so that an axis with too many items always asks; the percentages of a crosstab with IncludeNinXTab have two
/// places more on either axis, which are empty; a cell that is no number leaves its point empty without a word; the
/// caption stays whatever the chart holds.
ChartModel BuildChartForTab(const ChartSource& source, const StartPrompt& prompt);
