#include "printing/ReportRun.h"

#include "diagnostics/errors.h"

#include <algorithm>

ReportRun::ReportRun(const ReportRequest& request) : ReportRun(request, contentOf(request)) {}

ReportRun::ReportRun(const ReportRequest& request, std::unique_ptr<ReportContent> content)
    : request_(request), content_(std::move(content)) {}

ReportRun::~ReportRun() = default;

QString ReportRun::open() {
    try {
        fault_ = content_->open();
        if (fault_.isEmpty())
            layout_ = std::make_unique<ReportLayout>(content_->outline(), *content_, PageSetup::of(request_));
    } catch (const std::exception& failure) {
        fault_ = asError(failure).description();
    }
    return fault_;
}

bool ReportRun::step(int milliseconds) {
    if (!fault_.isEmpty() || !layout_)
        return false;
    try {
        return stepOnce(milliseconds);
    } catch (const std::exception& failure) {
        fault_ = asError(failure).description();
        return false;
    }
}

bool ReportRun::stepOnce(int milliseconds) {
    // Half the time each while both go on: the first pages are there long before the last entry is read.
    const int half = std::max(1, milliseconds / 2);
    if (reading_)
        reading_ = content_->read(half);
    const bool laying = layout_->step(reading_ ? half : milliseconds);
    const int entries = static_cast<int>(content_->outline().entries.size());
    while (laid_ < entries && layout_->pageOf(laid_) >= 0)
        ++laid_;
    fault_ = content_->fault();
    return fault_.isEmpty() && (reading_ || laying);
}

bool ReportRun::complete() const {
    return layout_ && layout_->complete();
}

double ReportRun::done() const {
    const auto entries = static_cast<double>(content_->outline().entries.size());
    if (complete() || entries == 0)
        return 1;
    return (content_->ready() + laid_) / (2 * entries);
}
