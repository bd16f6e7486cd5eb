#pragma once

#include "printing/ReportOutline.h"
#include "printing/ReportRequest.h"

#include <memory>

/// A report's outline and blocks while they are read, in slices, so that a window stays alive.
class ReportContent : public BlockSource {
public:
    /// Reads what the outline needs. @return why there is nothing to report, in the report's words; empty if there is
    virtual QString open() = 0;
    virtual const ReportOutline& outline() const = 0;
    /// Reads on for about that long. @return true while there is more to read
    virtual bool read(int milliseconds) = 0;
    /// What went wrong while reading and is no part of the report (the catalogue has gone); empty if nothing did.
    virtual QString fault() const { return {}; }
};

/// The content of a request: of what was handed over, or of the catalogue.
std::unique_ptr<ReportContent> contentOf(const ReportRequest& request);
