// A codebook as PDF: 500 variables with values and stored tables, with graphs as well, and 5,000 of them. Time and
// memory of a process of its own; against painting the finished pages alone; how long a window would be deaf.

#include "Archives.h"
#include "Frame.h"
#include "Ratios.h"
#include "residentMemory.h"

#include "app/globals.h"
#include "catalogue/CDaoDatabase.h"
#include "catalogue/mdDataBase.h"
#include "config/Options.h"
#include "printing/ReportRun.h"
#include "printing/outlets.h"
#include "printing/reportRequest.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QGuiApplication>
#include <QPainter>
#include <QPdfWriter>
#include <QProcess>
#include <QRandomGenerator>
#include <benchmark/benchmark.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int slice = 20; // milliseconds that a window gives a report at a time
QString folder, small, smallGraphs, large;

void open(const QString& path) {
    if (mdDataBase::OpenQXDatabase(path) != 1)
        qFatal("the catalogue did not open");
}

/// All variables of the study in both languages, with all that is kept with them.
ReportRequest codebook() {
    PrintSource source;
    source.window = PrintSource::Window::Explorer;
    source.database = gDatabase.Database();
    source.view = 1;
    source.isStudy = true;
    source.sourceTable = source.viewName = u"Study"_s;
    source.study = source.nodeId = source.nodeText = u"S0001"_s;
    return reportRequest(source, {PrintChoice::NodeVariables, true, true, 9}, gOptions);
}

/// The longest time in which nothing else had a turn.
class Turns {
public:
    Turns() { since_.start(); }
    void turn() {
        longest_ = std::max(longest_, static_cast<double>(since_.nsecsElapsed()) / 1e6);
        since_.start();
    }
    double longest() const { return longest_; }

private:
    QElapsedTimer since_;
    double longest_ = 0;
};

struct Measured {
    double first = 0, numbered = 0, whole = 0; ///< seconds until the first page, the last number, the file
    double megabytes = 0;                      ///< at the peak, above the start
    double longest = 0;                        ///< milliseconds between two turns of events
    int pages = 0;
};

double painted(const ReportLayout& layout, int index) {
    return seconds([&] {
        const ReportPage page = layout.page(index);
        QImage image((page.size / 15).toSize(), QImage::Format_RGB32); // at 96 to the inch
        image.fill(Qt::white);
        QPainter painter(&image);
        painter.scale(1 / 15.0, 1 / 15.0);
        paintPage(painter, page);
    });
}

void openRun(ReportRun& run) {
    if (const QString why = run.open(); !why.isEmpty())
        qFatal("%s", qPrintable(why));
}

void complete(ReportRun& run, const std::function<void()>& each) {
    while (run.step(slice))
        each();
    if (!run.complete())
        qFatal("the report is incomplete: %s", qPrintable(run.fault()));
}

/// Peak of the process's memory since it was last reset, in MB.
double peakMegabytes() {
    QFile status(u"/proc/self/status"_s);
    if (status.open(QIODevice::ReadOnly))
        for (const QByteArray& line : status.readAll().split('\n'))
            if (line.startsWith("VmHWM:"))
                return line.mid(6).trimmed().split(' ').first().toDouble() / 1024;
    return 0;
}

Measured saved(const QString& catalogue) {
    open(catalogue);
    const ReportRequest request = codebook();
    if (QFile refs(u"/proc/self/clear_refs"_s); refs.open(QIODevice::WriteOnly))
        refs.write("5");
    const double before = static_cast<double>(residentMemory()) / 1024;
    Measured result;
    Turns turns;
    QElapsedTimer time;
    time.start();
    const auto now = [&] { return static_cast<double>(time.nsecsElapsed()) / 1e9; };
    ReportRun run(request);
    openRun(run);
    complete(run, [&] {
        turns.turn();
        if (result.first == 0 && run.layout().pageCount() > 0) {
            painted(run.layout(), 0);
            result.first = now();
            turns.turn();
        }
    });
    result.numbered = now();
    const QString fault = savePdf(run.layout(), catalogue + u".pdf"_s, [&](int, int) {
        turns.turn();
        return true;
    });
    if (!fault.isEmpty())
        qFatal("%s", qPrintable(fault));
    result.whole = now();
    result.megabytes = peakMegabytes() - before;
    result.longest = turns.longest();
    result.pages = run.layout().pageCount();
    return result;
}

/// In a process of its own, so that nobody else's memory is counted.
Measured savedApart(const QString& catalogue) {
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(QCoreApplication::applicationFilePath(), {u"--save"_s, catalogue});
    process.waitForFinished(-1);
    const QStringList words = QString::fromLatin1(process.readAllStandardOutput()).split(u' ');
    if (process.exitCode() != 0 || words.size() < 6)
        qFatal("the codebook was not saved");
    return {words[0].toDouble(), words[1].toDouble(), words[2].toDouble(),
            words[3].toDouble(), words[4].toDouble(), words[5].toInt()};
}

/// Best of some runs: what a machine does beside them only adds.
Measured best(const QString& catalogue, int rounds) {
    Measured best = savedApart(catalogue);
    while (--rounds > 0)
        if (const Measured next = savedApart(catalogue); next.whole < best.whole)
            best = next;
    return best;
}

void benchFiles(benchmark::State& state) {
    for (auto _ : state) {
        const Measured tables = best(small, 3), graphs = best(smallGraphs, 3), many = best(large, 2);
        std::printf("pages: %d, with graphs %d, of 5,000 variables %d\n", tables.pages, graphs.pages, many.pages);
        Ratios::note(u"codebook of 500 variables, s"_s, tables.whole, 3);
        Ratios::note(u"its memory above the start, MB"_s, tables.megabytes, 60);
        Ratios::note(u"with graphs, s"_s, graphs.whole, 6);
        Ratios::note(u"its memory above the start, MB"_s, graphs.megabytes, 60);
        Ratios::note(u"5,000 variables against 500"_s, many.whole / tables.whole, 10);
        Ratios::note(u"its memory above the start, MB"_s, many.megabytes, 150);
        Ratios::note(u"pages of 5,000 variables numbered, s"_s, many.numbered, 8);
        Ratios::note(u"first page of 5,000 variables, s"_s, many.first, 0.3);
        for (const auto& [name, measured] :
             {std::pair(u"500 variables"_s, tables), std::pair(u"graphs"_s, graphs), std::pair(u"5,000"_s, many)})
            Ratios::note(u"longest time between two turns, ms: "_s + name, measured.longest, 50);
    }
}

void benchPages(benchmark::State& state) {
    for (auto _ : state) {
        open(large);
        ReportRun run(codebook());
        openRun(run);
        complete(run, [] {});
        QRandomGenerator random(7);
        double longest = 0;
        for (int i = 0; i < 200; ++i)
            longest =
                std::max(longest, painted(run.layout(), static_cast<int>(random.bounded(run.layout().pageCount()))));
        Ratios::note(u"any page of 5,000 variables shown, ms"_s, longest * 1000, 50);
    }
}

/// All pages are there and only have to be painted.
double paintedAlone(const std::vector<ReportPage>& pages) {
    return seconds([&] {
        QFile file(folder + u"/alone.pdf"_s);
        if (!file.open(QIODevice::WriteOnly))
            qFatal("no file");
        QPdfWriter writer(&file);
        writer.setPdfVersion(QPagedPaintDevice::PdfVersion_A1b);
        writer.setResolution(1440);
        writer.setPageLayout(QPageLayout(QPageSize(QPageSize::A4), QPageLayout::Landscape, {}));
        QPainter painter(&writer);
        for (const ReportPage& page : pages) {
            if (&page != &pages.front())
                writer.newPage();
            paintPage(painter, page);
        }
    });
}

void benchRatio(benchmark::State& state) {
    for (auto _ : state) {
        open(small);
        std::vector<ReportPage> pages;
        const auto whole = [&] {
            ReportRun run(codebook());
            return seconds([&] {
                openRun(run);
                complete(run, [] {});
                savePdf(run.layout(), folder + u"/whole.pdf"_s);
            });
        };
        {
            ReportRun run(codebook());
            openRun(run);
            complete(run, [] {});
            for (int i = 0; i < run.layout().pageCount(); ++i)
                pages.push_back(run.layout().page(i));
        }
        Ratios::measure(u"codebook of 500 variables, and painting its pages"_s, 5, 3, whole,
                        [&] { return paintedAlone(pages); });
    }
}

int saveOne(const QString& catalogue) {
    gOptions = Options();
    gErrorTrapping = true;
    const Measured m = saved(catalogue);
    mdDataBase::CloseDataBase();
    std::printf("%f %f %f %f %f %d\n", m.first, m.numbered, m.whole, m.megabytes, m.longest, m.pages);
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication application(argc, argv);
    if (argc == 3 && qstrcmp(argv[1], "--save") == 0)
        return saveOne(QString::fromLocal8Bit(argv[2]));
    return runBenchmarks(argc, argv, [](const QString& temporary) {
        folder = temporary;
        const auto made = [&](const QString& name, int variables, bool graphs) {
            const QString own = folder + name;
            QDir().mkpath(own);
            return Archives::makeCodebook(own, variables, graphs);
        };
        small = made(u"/small"_s, 500, false);
        smallGraphs = made(u"/graphs"_s, 500, true);
        large = made(u"/large"_s, 5000, false);
        benchmark::RegisterBenchmark("files", benchFiles)->Iterations(1)->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark("ratio", benchRatio)->Iterations(1)->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark("pages", benchPages)->Iterations(1)->Unit(benchmark::kMillisecond);
    });
}
