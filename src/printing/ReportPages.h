#pragma once

#include "printing/ReportLayout.h"

#include <QString>
#include <functional>

class QIODevice;
class QPagedPaintDevice;

/// A report whose pages are all known, as its outlets see it.
struct ReportPages {
    const ReportOutline& outline;
    const PageSetup& setup;
    int count = 0;
    std::function<ReportPage(int)> page;
    std::function<int(int)> numberOf; ///< that stands on a page

    /// Of a complete layout, which must outlive them.
    static ReportPages of(const ReportLayout& layout);
};

/// How an outlet has ended.
struct Outcome {
    bool done = false;
    QString fault = QString(); ///< in words; empty where it was ended from outside
};

/// Writes all pages as PDF. @param goOn hears of each page that was written, of the number of all again while the file
/// is finished, and ends it with false
Outcome writePdf(const ReportPages& report, QIODevice& to, const std::function<bool(int done, int total)>& goOn);
/// Paints pages on a device that takes several.
Outcome paintPages(const ReportPages& report, QPagedPaintDevice& device, int first, int count,
                   const std::function<bool(int done, int total)>& goOn);
