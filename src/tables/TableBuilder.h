#pragma once

#include <QString>
#include <functional>

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
