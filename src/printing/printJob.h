#pragma once

#include "platform/ui/Asker.h"

/// What the dialog for a printout knows of its answer; no window.
namespace printJob {

/// What the options propose for a report of so many pages. What no printout can begin with is put right.
ui::PrintJob proposed(const QString& title, int pages);

/// Number of pages that a job prints of a report.
int pageCount(const ui::PrintJob& job, int pages);

/// What will be printed, in words; in place of that, what is wrong with it.
struct Answer {
    QString words;
    bool fault = false;
};
Answer tell(const ui::PrintJob& job, int pages);

} // namespace printJob
