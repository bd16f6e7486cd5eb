// The extended search on a catalogue of 1,000 studies and 500,000 variables: against the bare statements through the
// same engine, in the window while events go on, and the marks in a long text.

#include "Archives.h"
#include "Frame.h"
#include "Ratios.h"

#include "app/globals.h"
#include "catalogue/CDaoDatabase.h"
#include "catalogue/mdDataBase.h"
#include "platform/dao/DBEngine.h"
#include "search/ExtendedSearch.h"
#include "search/frmFind.h"
#include "widgets/Desktop.h"
#include "widgets/QtAsker.h"
#include "widgets/termMarks.h"

#include <QApplication>
#include <QComboBox>
#include <QElapsedTimer>
#include <QEvent>
#include <QFile>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTableView>
#include <QTextEdit>
#include <QTimer>
#include <algorithm>
#include <benchmark/benchmark.h>

using namespace Qt::StringLiterals;

namespace {

SearchRequest everywhere(const QString& term) {
    SearchRequest request;
    request.sFind = term;
    request.chkSearch.fill(true);
    return request;
}

double bareStatements(const SearchRequest& request) {
    return seconds([&] {
        for (const SearchPass& pass : searchPasses(request))
            gDatabase.CurrentDatabase()->OpenColumns(pass.statement, pass.columns);
    });
}

double wholeSearch(const SearchRequest& request, int hits) {
    ExtendedSearch search;
    const double time = seconds([&] {
        search.begin(request);
        while (search.goOn()) {
        }
    });
    if (search.state() != ExtendedSearch::State::Done || search.hits().size() < hits)
        qFatal("the search found too little");
    return time;
}

void benchRun(benchmark::State& state) {
    for (auto _ : state) {
        const SearchRequest nothing = everywhere(u"qqxyz"_s), all = everywhere(u"Zufriedenheit"_s);
        Ratios::measure(
            u"search for what nothing has"_s, 5, 1.2, [&] { return wholeSearch(nothing, 0); },
            [&] { return bareStatements(nothing); });
        Ratios::measure(
            u"search for what 500,000 variables have"_s, 3, 4, [&] { return wholeSearch(all, 500000); },
            [&] { return bareStatements(all); });
    }
}

/// Peak of the process's memory since it was last reset, in MB.
double peakMegabytes(bool reset) {
    if (reset) {
        QFile refs(u"/proc/self/clear_refs"_s);
        if (refs.open(QIODevice::WriteOnly))
            refs.write("5");
        return 0;
    }
    QFile status(u"/proc/self/status"_s);
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray& line : status.readAll().split('\n'))
        if (line.startsWith("VmHWM:"))
            return line.mid(6).trimmed().split(' ').first().toDouble() / 1024;
    return 0;
}

/// Counts how long the program was deaf, and remembers when it last had a turn in the middle of a statement.
class TurnWatch : public QtAsker {
public:
    QElapsedTimer sinceTurn, sinceStatement;
    qint64 longest = 0;

    void eventTurn() override {
        sinceStatement.start();
        QtAsker::eventTurn();
    }
    void tick() {
        if (sinceTurn.isValid())
            longest = std::max(longest, sinceTurn.elapsed());
        sinceTurn.start();
    }
};

class Painted : public QObject {
public:
    std::function<void()> then;

protected:
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Paint && then)
            then();
        return false;
    }
};

template<class Widget>
Widget& in(frmFind& window, const QString& name) {
    return *window.findChild<Widget*>(name);
}

/// @return seconds from the click to the end
double searchInWindow(frmFind& window, const QString& term, const std::function<bool()>& each) {
    in<QComboBox>(window, u"txtFind"_s).setEditText(term);
    return seconds([&] {
        in<QPushButton>(window, u"cmd_Find"_s).click();
        while (window.search().isRunning() && each())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        while (window.search().isRunning())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    });
}

void benchWindow(benchmark::State& state) {
    TurnWatch watch;
    ui::Asker* before = ui::setAsker(&watch);
    for (auto _ : state) {
        auto* window = new frmFind;
        window->resize(900, 700);
        window->show();
        QTimer tick;
        QObject::connect(&tick, &QTimer::timeout, &tick, [&] { watch.tick(); });
        tick.start(2);
        auto& list = in<QTableView>(*window, u"lstHits"_s);
        qint64 firstPainted = -1;
        Painted painted;
        painted.then = [&] {
            if (firstPainted < 0 && list.model()->rowCount() > 0)
                firstPainted = watch.sinceStatement.elapsed();
        };
        list.viewport()->installEventFilter(&painted);
        const SearchRequest all = everywhere(u"Zufriedenheit"_s);
        QCoreApplication::processEvents();
        peakMegabytes(true);
        watch.sinceTurn.invalidate();
        watch.longest = 0;
        const double whole = searchInWindow(*window, u"Zufriedenheit"_s, [] { return true; });
        const double peak = peakMegabytes(false);
        const double bare = bareStatements(all);
        if (window->search().hits().size() < 500000)
            qFatal("the window found too little: %d", window->search().hits().size());
        Ratios::note(u"window, what 500,000 variables have, against its statements"_s, whole / bare, 4);
        Ratios::note(u"memory at the peak, MB"_s, peak, 600);
        Ratios::note(u"longest time between two event turns, ms"_s, static_cast<double>(watch.longest), 50);
        Ratios::note(u"first hit painted after its statement, ms"_s, static_cast<double>(firstPainted), 100);

        // Stopped in the middle of the long statement.
        QElapsedTimer stopping;
        QTimer::singleShot(120, window, [&] {
            if (!RunGuard::running())
                qFatal("no statement was running any more");
            stopping.start();
            in<QPushButton>(*window, u"cmd_Stop"_s).click();
        });
        searchInWindow(*window, u"q*x*y*z"_s, [] { return true; });
        Ratios::note(u"from Stop to the end of the search, ms"_s, static_cast<double>(stopping.elapsed()), 100);
        delete window;
    }
    ui::setAsker(before);
}

template<class Edit>
double markedIn(const QString& text) {
    Edit edit;
    edit.resize(600, 400);
    edit.setPlainText(text);
    edit.show();
    QCoreApplication::processEvents();
    return seconds([&] {
        markTerms(edit, {u"Maß"_s});
        QCoreApplication::processEvents(); // and paints
    });
}

void benchMarks(benchmark::State& state) {
    // 200 KB, 10,000 places, lines of 200 characters.
    QString text;
    for (int line = 0; line < 1000; ++line)
        text += u"Über alle Maß. Ort "_s.repeated(10).left(199) + u'\n';
    for (auto _ : state) {
        Ratios::note(u"10,000 marks in a question's text, ms"_s, markedIn<QPlainTextEdit>(text) * 1000, 50);
        Ratios::note(u"10,000 marks in a description, ms"_s, markedIn<QTextEdit>(text) * 1000, 50);
    }
}

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    return runBenchmarks(argc, argv, [](const QString& folder) {
        qputenv("VARIDEX_HOME", QFile::encodeName(folder));
        qputenv("VARIDEX_CONFIG", QFile::encodeName(folder));
        QFile::copy(QCoreApplication::applicationDirPath() + u"/../bin/Vx.mdb"_s, folder + u"/Vx.mdb"_s);
        if (mdDataBase::OpenQXDatabase(Archives::makeCatalogue(folder, 1000, 500)) != 1)
            qFatal("the catalogue did not open");
        benchmark::RegisterBenchmark("marks", benchMarks)->Iterations(1)->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark("run", benchRun)->Iterations(1)->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark("window", benchWindow)->Iterations(1)->Unit(benchmark::kMillisecond);
    });
}
