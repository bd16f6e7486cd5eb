#include "printing/printJob.h"

#include "app/globals.h"
#include "config/Options.h"

#include <algorithm>

using namespace Qt::StringLiterals;

ui::PrintJob printJob::proposed(const QString& title, int pages) {
    ui::PrintJob job;
    job.title = title;
    job.firstPage = std::max(1, gOptions.PrintStartPage);
    // A count that was never meant to be reached is shown as what there is.
    job.pageCount = gOptions.PrintPageCount < 1 ? pages : std::min(gOptions.PrintPageCount, pages);
    job.firstPageNumber = std::max(1, gOptions.PrintStartPageNumber);
    return job;
}

int printJob::pageCount(const ui::PrintJob& job, int pages) {
    return job.firstPage < 1 ? 0 : std::clamp(pages - job.firstPage + 1, 0, std::max(0, job.pageCount));
}

printJob::Answer printJob::tell(const ui::PrintJob& job, int pages) {
    if (job.firstPage < 1 || job.firstPage > pages)
        return {
            pages == 1
                ? TranslateText(u"Der Bericht hat nur eine Seite; eine Seite %1 gibt es nicht."_s).arg(job.firstPage)
                : TranslateText(u"Der Bericht hat nur %1 Seiten; eine Seite %2 gibt es nicht."_s)
                      .arg(pages)
                      .arg(job.firstPage),
            true};
    const int count = pageCount(job, pages);
    if (count == 0)
        return {TranslateText(u"So wird keine Seite gedruckt."_s), true};
    if (count == 1)
        return {TranslateText(u"Gedruckt wird Seite %1."_s).arg(job.firstPage)};
    return {TranslateText(u"Gedruckt werden %1 Seiten, von Seite %2 bis Seite %3."_s)
                .arg(count)
                .arg(job.firstPage)
                .arg(job.firstPage + count - 1)};
}
