#pragma once

#include "printing/PrintChoices.h"
#include "printing/ReportRequest.h"

struct Options;

/// What the user has set in the print dialog.
struct PrintOrder {
    PrintChoice choice = PrintChoice::Variable;
    bool original = true, english = false; ///< languages of the contents; neither means English alone
    int paper = 0;                         ///< code of the paper; 0 for one that has none
};

/// The request for a choice that is a report, every field of it.
ReportRequest reportRequest(const PrintSource& source, const PrintOrder& order, const Options& options);

/// Code of a place on the page. The page number's "botmiddle" is the top middle.
qint16 dateLocation(const QString& word);
qint16 pageNumberLocation(const QString& word);
