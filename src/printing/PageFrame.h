#pragma once

#include "printing/PageSetup.h"
#include "printing/ReportPage.h"

/// What stands at the head and at the foot of a page.
struct RunningHead {
    QString chapter; ///< left, at the head
    QString range;   ///< right: the first and the last variable of the page
    int number = 0;  ///< of the page
};

/// A page around its body: running head, page number and date at the places that they were given.
class PageFrame {
public:
    explicit PageFrame(const PageSetup& setup);

    /// The room for everything else.
    QRectF body() const { return body_; }
    /// Adds head and foot to a page.
    void place(ReportPage& page, const RunningHead& head) const;

private:
    PageSetup setup_;
    QRectF area_, body_;
    QFont font() const;
    double line() const;
    /// Date and page number as far as they stand at a place from 1 to 6; both are one text, date first.
    QString fixedText(int place, int number) const;
    void placeLine(ReportPage& page, const QString (&texts)[3], double y) const;
};
