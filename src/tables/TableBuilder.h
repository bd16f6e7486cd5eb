#pragma once

#include "diagnostics/errors.h"

#include <QHash>
#include <QString>
#include <functional>
#include <vector>

/// How a table builder ended.
enum class BuildOutcome {
    Complete,
    Empty,     ///< there were no counts; the table is as prepared
    Cancelled, ///< the cancel flag was set
    Truncated, ///< more values than a table takes
    Aborted    ///< a failure that the user answered with Abort
};

/// Width of a text in the table's font, in twips.
using TextWidth = std::function<int(const QString&)>;

/// What the tables use where no window can measure: 80 twips a character, the average of an 8-point face.
int estimatedTextWidth(const QString& text);

/// Shows one of a builder's warnings, in the language in force.
void showTableWarning(const QString& text);

/// Computes what stands in a cell. A failure goes to `tell` where there is one, and the cell stays empty; else the
/// standard error box asks. @return false for Abort
template<class Step, class Tell>
bool computeOrTell(bool listened, Step&& step, Tell&& tell) {
    if (!listened)
        return trapped(step) != Trap::Aborted;
    try {
        step();
    } catch (const dao::Error& error) {
        tell(error);
    }
    return true;
}

/// The widths that a table's columns want: 1.2 times the width of the widest text, in twips.
class ColumnWidths {
public:
    /// @param on option AutoColWidth; without it nothing is measured and every width is 0
    ColumnWidths(bool on, TextWidth textWidth) : on_(on), textWidth_(std::move(textWidth)) {}

    /// @param emphasized a text of the header or of the row of sums, which takes 50 more
    void note(int column, const QString& text, bool emphasized);
    int width(int column) const;

private:
    bool on_;
    TextWidth textWidth_;
    std::vector<double> widest_;
    QHash<QString, int> measured_; ///< a table shows the same texts over and over
};
