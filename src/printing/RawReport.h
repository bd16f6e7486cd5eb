#pragma once

#include "printing/ReportContent.h"

/// The report of a table or a graph that was handed over in its stored form: one entry. No catalogue is read.
class RawReport : public ReportContent {
public:
    explicit RawReport(const ReportRequest& request) : request_(request) {}

    /// Damaged texts are nothing to report; which of them it is stands in the words.
    QString open() override;
    const ReportOutline& outline() const override { return outline_; }
    bool read(int /*milliseconds*/) override { return false; }
    int ready() const override { return static_cast<int>(outline_.entries.size()); }
    std::vector<Block> blocks(int /*entry*/) const override { return blocks_; }

private:
    ReportRequest request_;
    ReportOutline outline_;
    std::vector<Block> blocks_;

    QString addTable();
    QString addGraph();
};
