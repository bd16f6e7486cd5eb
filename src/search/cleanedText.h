#pragma once

#include <QString>

/// A text of the catalogue for one line: without carriage returns, a blank in place of each line feed, and of a run of
/// blanks the first alone. A line break ends such a run, so that a blank behind it stays.
QString cleanedText(const QString& text);
