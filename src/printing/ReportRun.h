#pragma once

#include "printing/ReportContent.h"
#include "printing/ReportLayout.h"

#include <memory>

/// A report from its request to its pages, in slices between which events can be handled. What fails within a slice
/// ends the run with a fault; nothing is thrown.
class ReportRun {
public:
    explicit ReportRun(const ReportRequest& request);
    /// @param content of the request, where it is not to be made from it
    ReportRun(const ReportRequest& request, std::unique_ptr<ReportContent> content);
    ~ReportRun();
    ReportRun(const ReportRun&) = delete;
    ReportRun& operator=(const ReportRun&) = delete;

    /// Opens the content. @return why there is nothing to report, in words; empty if there is
    QString open();
    /// Reads and lays out for about that long. @return true while there is more to do
    bool step(int milliseconds);
    /// All pages are there.
    bool complete() const;
    /// What kept it from completing; empty if nothing did.
    QString fault() const { return fault_; }
    /// Share done by now, 0 to 1.
    double done() const;

    const ReportRequest& request() const { return request_; }
    /// Of an open run.
    ReportLayout& layout() { return *layout_; }
    const ReportLayout& layout() const { return *layout_; }

private:
    ReportRequest request_;
    std::unique_ptr<ReportContent> content_;
    std::unique_ptr<ReportLayout> layout_;
    bool reading_ = true;
    int laid_ = 0; ///< entries from the first on whose page is known
    QString fault_;

    bool stepOnce(int milliseconds);
};
