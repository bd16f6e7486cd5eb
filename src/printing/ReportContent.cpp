#include "printing/ReportContent.h"

#include "printing/RawReport.h"
#include "printing/ReportReader.h"

std::unique_ptr<ReportContent> contentOf(const ReportRequest& request) {
    if (request.isRaw())
        return std::make_unique<RawReport>(request);
    return std::make_unique<ReportReader>(request);
}
