#pragma once

#include "printing/ContentsPages.h"

/// The index of names behind a report.
class IndexPages {
public:
    IndexPages(const ReportOutline& outline, const PageSetup& setup, const QRectF& body);

    int count() const { return pages_; }
    /// Adds one of the pages, from 0.
    void place(ReportPage& page, int index, const NumberOfEntry& number) const;
    /// The first and the last name of a page.
    QString range(int index) const;

private:
    struct Row {
        int entry = 0;
        QString name, study; ///< the study where the name occurs in several
    };
    PageSetup setup_;
    QRectF body_;
    std::vector<Row> rows_;
    int pages_ = 0, columns_ = 3;
    size_t onFirst_ = 0, onOthers_ = 0; ///< rows of a column

    double line() const;
    void chooseColumns();
    /// The rows of a page, from and to.
    std::pair<size_t, size_t> rowsOf(int index) const;
    void placeRow(ReportPage& page, const Row& row, const QRectF& place, const NumberOfEntry& number) const;
};

/// Whether a name stands before another in an index: letters alike in both cases, numbers in it by their value.
bool namesInOrder(const QString& first, const QString& second);
