#include "printing/ReportRun.h"

ReportRun::ReportRun(const ReportRequest& request) : request_(request), content_(contentOf(request)) {}

ReportRun::~ReportRun() = default;

QString ReportRun::open() {
    QString why = content_->open();
    if (why.isEmpty())
        layout_ = std::make_unique<ReportLayout>(content_->outline(), *content_, PageSetup::of(request_));
    return why;
}

bool ReportRun::step(int milliseconds) {
    // Half the time each: the first pages are there long before the last entry is read.
    const bool reading = content_->read(milliseconds / 2);
    const bool laying = layout_->step(milliseconds / 2);
    return fault().isEmpty() && (reading || laying);
}

bool ReportRun::complete() const {
    return layout_ && layout_->complete();
}

QString ReportRun::fault() const {
    return content_->fault();
}

double ReportRun::done() const {
    const size_t entries = content_->outline().entries.size();
    return complete() || entries == 0 ? 1 : static_cast<double>(content_->ready()) / static_cast<double>(entries);
}
