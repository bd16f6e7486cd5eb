#include "printing/reportOutput.h"

#include "app/globals.h"
#include "config/Options.h"
#include "platform/system/Paths.h"
#include "platform/ui/Asker.h"
#include "printing/outlets.h"
#include "printing/printJob.h"

#include <QFileInfo>
#include <QPagedPaintDevice>
#include <QScopeGuard>
#include <cmath>

using namespace Qt::StringLiterals;

namespace {

void say(const QString& text, ui::Icon icon = ui::Icon::Exclamation) {
    ui::asker().messageBox({.text = text, .icon = icon});
}

/// Hears of each page and lets the user stop.
PageProgress pages(ui::Progress& progress, const QString& words) {
    return [&progress, words](int done, int total) {
        return progress.next(words.arg(std::min(done + 1, total)).arg(total));
    };
}

QString titleOf(const ReportRun& run) {
    return run.layout().outline().title;
}

/// A table is not printed in colour, a graph only if graphs are to be.
bool inColor(const ReportRequest& request) {
    return request.TableRawString.isEmpty() && (request.GraphRawString.isEmpty() || gOptions.GraphColor);
}

/// The open catalogue must not be replaced by what is printed of it.
bool isCatalogue(const QString& path, const ReportRequest& request) {
    return !request.DatabaseFile.isEmpty() && QFileInfo(path) == QFileInfo(Paths::onDisk(request.DatabaseFile));
}

} // namespace

bool reportOutput::finish(ReportRun& run) {
    constexpr int slice = 20, parts = 1000;
    const QString words = TranslateText(u"Die Seiten werden gesetzt: Seite %1"_s);
    ui::Progress progress(ui::Progress::Stop::Allowed, [] { return parts; });
    for (int told = 0; !run.complete();) {
        if (!run.step(slice))
            break;
        const int now = static_cast<int>(std::floor(run.done() * parts));
        for (; told < now; ++told)
            if (!progress.next(words.arg(run.layout().pageCount())))
                return false;
    }
    if (!run.complete())
        say(TranslateText(u"Der Bericht ist nicht vollständig:"_s) + u"\r\n"_s + run.fault());
    return run.complete();
}

QString reportOutput::print(ReportRun& run, const QString& printer) {
    if (ui::asker().printers().empty()) {
        say(TranslateText(u"Kein Drucker vorhanden!"_s));
        return {};
    }
    if (!finish(run))
        return {};
    ReportLayout& layout = run.layout();
    ui::PrintJob proposal = printJob::proposed(titleOf(run), layout.pageCount());
    proposal.printer = printer;
    proposal.color = inColor(run.request());
    proposal.paper = run.request().PaperSize;
    const std::optional<ui::PrintJob> job = ui::asker().choosePrintJob(proposal, layout.pageCount());
    if (!job)
        return {};
    if (const printJob::Answer answer = printJob::tell(*job, layout.pageCount()); answer.fault) {
        say(answer.words);
        return {};
    }
    const std::shared_ptr<QPagedPaintDevice> device = ui::asker().openPrinter(*job);
    if (!device) {
        say(TranslateText(u"Der Drucker ist nicht bereit oder nicht mehr da:"_s) + u"\r\n"_s + job->printer);
        return {};
    }
    // The number holds for this printout alone.
    const int number = layout.setup().firstPageNumber;
    const auto asBefore = qScopeGuard([&] { layout.setFirstPageNumber(number); });
    layout.setFirstPageNumber(job->firstPageNumber);
    const int count = printJob::pageCount(*job, layout.pageCount());
    ui::Progress progress(ui::Progress::Stop::Allowed, [count] { return count; });
    const QString reason = printPages(layout, *device, job->firstPage - 1, count,
                                      pages(progress, TranslateText(u"Seite %1 von %2 wird gedruckt"_s)));
    if (!reason.isEmpty())
        say(TranslateText(u"Der Bericht konnte nicht gedruckt werden:"_s) + u"\r\n"_s + reason);
    if (!reason.isEmpty() || progress.stopped())
        return reason.isEmpty() ? TranslateText(u"Der Druck wurde angehalten; was der Drucker schon hat, druckt er."_s)
                                : QString();
    return TranslateText(u"Gedruckt:"_s) + u' ' + titleOf(run);
}

QString reportOutput::print(const ReportRequest& request, const QString& printer) {
    ReportRun run(request);
    QString why;
    {
        const ui::WaitPointer wait;
        why = run.open();
    }
    if (!why.isEmpty()) {
        say(why);
        return {};
    }
    return print(run, printer);
}

QString reportOutput::save(ReportRun& run) {
    const std::optional<QString> path = ui::asker().chooseFile({.title = TranslateText(u"Bericht als PDF speichern"_s),
                                                                .filter = TranslateText(u"PDF-Dateien (*.pdf)|*.pdf"_s),
                                                                .extension = u"pdf"_s,
                                                                .folder = QString(),
                                                                .name = Paths::asFileName(titleOf(run)) + u".pdf"_s,
                                                                .save = true});
    if (!path || path->isEmpty())
        return {};
    const QString failed =
        TranslateText(u"Der Bericht konnte nicht gespeichert werden:"_s) + u"\r\n"_s + *path + u"\r\n"_s;
    if (isCatalogue(*path, run.request())) {
        say(failed + TranslateText(u"Das ist der Katalog selbst."_s));
        return {};
    }
    if (!finish(run))
        return {};
    const int count = run.layout().pageCount();
    ui::Progress progress(ui::Progress::Stop::Allowed, [count] { return count; });
    const QString reason =
        savePdf(run.layout(), *path, pages(progress, TranslateText(u"Seite %1 von %2 wird gespeichert"_s)));
    if (!reason.isEmpty())
        say(failed + reason);
    if (!reason.isEmpty() || progress.stopped())
        return reason.isEmpty() ? TranslateText(u"Das Speichern wurde angehalten; es entstand keine Datei."_s)
                                : QString();
    return TranslateText(u"Gespeichert:"_s) + u' ' + *path;
}
