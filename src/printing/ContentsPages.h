#pragma once

#include "printing/PageSetup.h"
#include "printing/ReportOutline.h"
#include "printing/ReportPage.h"

#include <functional>

/// The number that stands on the page of an entry; empty while it is not known.
using NumberOfEntry = std::function<QString(int entry)>;

/// The contents in front of a report. What they take follows from the outline alone, so that everything behind them can
/// be numbered before any of it is laid out.
class ContentsPages {
public:
    ContentsPages(const ReportOutline& outline, const PageSetup& setup, const QRectF& body);

    int count() const { return pages_; }
    /// Adds one of the pages, from 0.
    void place(ReportPage& page, int index, const NumberOfEntry& number) const;

private:
    struct Row {
        int entry = 0;
        int lines = 1;
        int page = 0, column = 0; ///< where it stands
        double y = 0;
    };
    const ReportOutline& outline_;
    PageSetup setup_;
    QRectF body_;
    std::vector<Row> rows_;
    int pages_ = 0;
    bool wraps_ = true;
    double nameColumn_ = 0; ///< of names in front of their labels

    double columnWidth() const;
    int columns() const;
    double headHeight() const;
    void chooseEntries();
    void arrange();
    struct Text;
    Text textOf(const ReportEntry& entry) const;
    void placeRow(ReportPage& page, const Row& row, const NumberOfEntry& number) const;
};
