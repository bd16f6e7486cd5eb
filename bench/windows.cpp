// The windows on a catalogue of 1,000 studies and 500,000 variables, without a screen: starting, selecting, filtering,
// sorting, switching the language, memory; against the bare statements, or against the least program of the kind.

#include "Archives.h"
#include "Frame.h"
#include "PaintWatch.h"
#include "Ratios.h"
#include "SqliteDirect.h"
#include "windowsProgram.h"

#include "app/frmMain.h"
#include "app/start.h"
#include "explorer/frmExplorer.h"
#include "platform/dao/DBEngine.h"
#include "platform/system/Paths.h"
#include "widgets/Desktop.h"
#include "widgets/QtAsker.h"
#include "widgets/VariableListView.h"

#include <QApplication>
#include <QFile>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QProcess>
#include <QTemporaryDir>
#include <QTreeView>
#include <algorithm>
#include <benchmark/benchmark.h>
#include <limits>

using namespace Qt::StringLiterals;
using windowsProgram::openExplorer;

namespace {

const QString topic = u"B1"_s, smallTopic = u"B2"_s;
QString catalogue;
QString systemDatabase;
frmMain* mainWindow = nullptr;

// ---- processes

/// Starts a program and waits for its line. @return seconds until it came, and what it says: its memory in KiB
std::pair<double, double> started(const QString& program, const QStringList& arguments) {
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    const double time = seconds([&] {
        process.start(program, arguments);
        while (!process.canReadLine())
            if (!process.waitForReadyRead())
                qFatal("%s did not start", qPrintable(program));
    });
    const double memory = process.readLine().trimmed().toDouble();
    process.waitForFinished();
    return {time, memory};
}

std::pair<double, double> startedEmpty() {
    return started(QCoreApplication::applicationDirPath() + u"/bench-empty-frame"_s, {});
}

std::pair<double, double> startedProgram(int explorers) {
    return started(QCoreApplication::applicationFilePath(), {u"--program"_s, QString::number(explorers)});
}

void benchStart(benchmark::State& state) {
    for (auto _ : state)
        Ratios::measure(
            u"start to an explorer, and an empty frame"_s, 9, 4, [] { return startedProgram(1).first; },
            [] { return startedEmpty().first; });
}

void benchMemory(benchmark::State& state) {
    for (auto _ : state) {
        const double ten = startedProgram(10).second;
        Ratios::note(u"memory of ten explorers in MB"_s, ten / 1024, 400);
        Ratios::note(u"memory of ten explorers over an empty frame's"_s, ten / startedEmpty().second, 8);
    }
}

// ---- gestures

struct TracedStatement {
    QString file, sql;
};

/// What a gesture hands to SQLite, each statement with the file that has its tables.
std::vector<TracedStatement> statementsOf(const std::function<void()>& gesture) {
    std::vector<TracedStatement> statements;
    dao::DBEngine::instance().setTrace([&](const QString& jet, const QString& sql) {
        const bool ofSystem =
            jet.contains(u"tblStat"_s, Qt::CaseInsensitive) || jet.startsWith(u"qdf"_s) || jet.contains(u" sys "_s);
        statements.push_back({ofSystem ? systemDatabase : catalogue, sql});
    });
    gesture();
    dao::DBEngine::instance().setTrace({});
    return statements;
}

/// Measures a gesture against its statements, run alone on the same files.
/// @param limit of the ratio
void measureGesture(const QString& name, int rounds, double limit, const std::function<void()>& gesture) {
    const std::vector<TracedStatement> statements = statementsOf(gesture);
    SqliteDirect ofCatalogue(catalogue), ofSystem(systemDatabase);
    Ratios::measure(
        name, rounds, limit, [&] { return seconds(gesture); },
        [&] {
            return seconds([&] {
                for (const TracedStatement& statement : statements)
                    (statement.file == catalogue ? ofCatalogue : ofSystem).run(statement.sql);
            });
        });
}

VariableListView& listOf(const frmExplorer& explorer) {
    return *static_cast<VariableListView*>(explorer.findChild<QTableView*>(u"lvListView"_s));
}

/// Selects an entry as a click in the tree does, and waits for the painted list.
void selectNode(frmExplorer& explorer, const QString& key) {
    PaintWatch watch(listOf(explorer).viewport());
    auto* tree = explorer.findChild<QTreeView*>();
    const CatalogueNode* node = explorer.model().tree.find(key);
    const QModelIndex root = tree->model()->index(0, 0);
    tree->setCurrentIndex(tree->model()->index(node->Place, 0, root));
    watch.wait();
    if (explorer.model().list.rows.empty())
        qFatal("the entry has no variables");
}

void pressKey(QWidget& widget, int key, Qt::KeyboardModifiers modifiers, const QString& text = {}) {
    QKeyEvent press(QEvent::KeyPress, key, modifiers, text), release(QEvent::KeyRelease, key, modifiers, text);
    QCoreApplication::sendEvent(&widget, &press);
    QCoreApplication::sendEvent(&widget, &release);
}

void benchStudy(benchmark::State& state) {
    frmExplorer& explorer = openExplorer(*mainWindow, 1);
    bool other = false;
    for (auto _ : state)
        measureGesture(u"study of 500 selected, list painted"_s, 21, 40,
                       [&] { selectNode(explorer, (other = !other) ? u"AS0500"_s : u"AS0501"_s); });
}

void benchRow(benchmark::State& state) {
    frmExplorer& explorer = openExplorer(*mainWindow, 1);
    explorer.setPanels(1);
    selectNode(explorer, u"AS0500"_s);
    auto* question = explorer.findChild<QPlainTextEdit*>(u"txtQuestion"_s);
    int place = 0;
    for (auto _ : state)
        measureGesture(u"row of 500 selected, panel painted"_s, 21, 100, [&] {
            PaintWatch watch(question->viewport());
            place = (place + 10) % 500;
            listOf(explorer).selectOnly(place + 9);
            watch.wait();
            if (explorer.model().DBList1.size() != 1)
                qFatal("the variable has no assignment");
        });
}

/// The variables of the topic with these words, found by a statement that searches the same fields.
void findByStatement(SqliteDirect& direct, const QString& words) {
    QStringList conditions;
    for (const QString& field :
         {u"id_VarName"_s, u"dt_VarLabel"_s, u"dt_EnVarLabel"_s, u"dt_QuestionText"_s, u"dt_EnQuestionText"_s})
        conditions << u"v."_s + field + u" LIKE '%"_s + words + u"%'"_s;
    direct.run(u"SELECT v.rowid FROM trel_VariableTopic r JOIN tkey_Variable v ON v.fi_StudyNo = r.fi_StudyNo AND "
               "v.id_VarName = r.fi_VariableNo WHERE r.fid = 1 AND ("_s +
               conditions.join(u" OR "_s) + u')');
}

const QString sortedByStatement =
    u"SELECT r.fi_VariableNo, v.dt_VarLabel FROM trel_VariableTopic r JOIN tkey_Variable v ON "
    "v.fi_StudyNo = r.fi_StudyNo AND v.id_VarName = r.fi_VariableNo WHERE r.fid = 1 "
    "ORDER BY lower(v.dt_VarLabel)"_s;

/// Measures each key of a word that is typed into the quick filter, to the painted list.
/// @param name what is filtered @param find the same words by a statement
void measureTyping(frmExplorer& explorer, const QString& name, void (*find)(SqliteDirect&, const QString&),
                   double limitMs) {
    const QString word = u"nummer 17"_s;
    constexpr int words = 3;
    auto* filter = explorer.findChild<QLineEdit*>(u"txtQuickFilter"_s);
    SqliteDirect direct(catalogue);
    int pressed = 0, found = 0;
    std::vector<double> best(static_cast<size_t>(word.size()), std::numeric_limits<double>::infinity());
    Ratios::measure(
        name + u", a key, list painted"_s, words * static_cast<int>(word.size()) - 1, 1,
        [&] {
            const qsizetype at = pressed++ % word.size();
            if (at == 0)
                filter->clear();
            QCoreApplication::processEvents();
            const double time = seconds([&] {
                PaintWatch watch(listOf(explorer).viewport());
                pressKey(*filter, Qt::Key_unknown, {}, word.mid(at, 1));
                watch.wait();
            });
            best[static_cast<size_t>(at)] = std::min(best[static_cast<size_t>(at)], time);
            return time;
        },
        [&] { return seconds([&] { find(direct, word.left(found++ % word.size() + 1)); }); });
    Ratios::note(name + u", slowest key in ms"_s, *std::ranges::max_element(best) * 1000, limitMs);
}

void benchTopic(benchmark::State& state) {
    frmExplorer& explorer = openExplorer(*mainWindow, 2);
    VariableListView& list = listOf(explorer);
    auto* filter = explorer.findChild<QLineEdit*>(u"txtQuickFilter"_s);
    SqliteDirect direct(catalogue);
    const auto reselect = [&] {
        selectNode(explorer, smallTopic);
        selectNode(explorer, topic);
    };
    for (auto _ : state) {
        measureGesture(u"topic of 50,000 selected, list painted"_s, 5, 2, reselect);
        Ratios::measure(
            u"50,000 rows sorted by label, list painted"_s, 5, 1,
            [&] {
                return seconds([&] {
                    PaintWatch watch(list.viewport());
                    pressKey(list, Qt::Key_4, Qt::ControlModifier);
                    watch.wait();
                });
            },
            [&] { return seconds([&] { direct.run(sortedByStatement); }); });
        Ratios::measure(
            u"filter of 50,000 rows, first focus"_s, 5, 1.5,
            [&] {
                reselect();
                list.setFocus();
                return seconds([&] { filter->setFocus(); });
            },
            [&] { return seconds([&] { findByStatement(direct, u"nummer 17"_s); }); });
        measureTyping(explorer, u"filter of 50,000 rows"_s, findByStatement, 50);
    }
}

/// The variables of all studies with these words.
void findInAllByStatement(SqliteDirect& direct, const QString& words) {
    QStringList conditions;
    for (const QString& field :
         {u"id_VarName"_s, u"dt_VarLabel"_s, u"dt_EnVarLabel"_s, u"dt_QuestionText"_s, u"dt_EnQuestionText"_s})
        conditions << field + u" LIKE '%"_s + words + u"%'"_s;
    direct.run(u"SELECT rowid FROM tkey_Variable WHERE "_s + conditions.join(u" OR "_s));
}

/// The whole view of 1,000 studies, searched from a window in which no entry is selected.
void benchView(benchmark::State& state) {
    frmExplorer& explorer = openExplorer(*mainWindow, 1);
    auto* filter = explorer.findChild<QLineEdit*>(u"txtQuickFilter"_s);
    SqliteDirect direct(catalogue);
    for (auto _ : state) {
        Ratios::note(u"view of 500,000 variables, first focus in ms"_s, seconds([&] { filter->setFocus(); }) * 1000,
                     6000);
        measureTyping(explorer, u"view of 500,000 variables"_s, findInAllByStatement, 150);
    }
}

void benchLanguage(benchmark::State& state) {
    for (int i = 0; i < 7; ++i)
        selectNode(openExplorer(*mainWindow, 1), u"AS0%1"_s.arg(100 + i));
    for (int i = 0; i < 3; ++i)
        mainWindow->perform(u"mnuAuswertungsansicht"_s);
    if (Form::open().size() != 11)
        qFatal("ten windows and the frame should be open");
    bool english = false;
    for (auto _ : state)
        measureGesture(u"language with ten windows open"_s, 11, 200, [&] {
            PaintWatch watch(mainWindow->menuBar());
            mainWindow->perform((english = !english) ? u"mnLngE"_s : u"mnLngG"_s);
            watch.wait();
        });
}

void closeWindows() {
    unloadChildWindows();
    QCoreApplication::processEvents();
}

void add(const char* name, void (*bench)(benchmark::State&)) {
    benchmark::RegisterBenchmark(name,
                                 [bench](benchmark::State& state) {
                                     bench(state);
                                     closeWindows();
                                 })
        ->Iterations(1)
        ->Unit(benchmark::kMillisecond);
}

/// A screen as it is usual today; the platform's own is smaller than the main window.
QByteArray screenOf(const QTemporaryDir& folder) {
    QFile file(folder.filePath(u"screen.json"_s));
    if (!file.open(QIODevice::WriteOnly))
        qFatal("no screen");
    file.write(R"({"screens":[{"name":"screen","x":0,"y":0,"width":1920,"height":1080,"logicalDpi":96,"dpr":1}]})");
    return "offscreen:configfile=" + QFile::encodeName(file.fileName());
}

} // namespace

int main(int argc, char** argv) {
    if (argc == 3 && QByteArray(argv[1]) == "--program")
        windowsProgram::run(argc, argv, QByteArray(argv[2]).toInt());
    const QTemporaryDir screen;
    qputenv("QT_QPA_PLATFORM", screenOf(screen));
    QApplication application(argc, argv);
    QtAsker dialogs;
    ui::setAsker(&dialogs);
    std::unique_ptr<frmMain> window;
    const int outcome = runBenchmarks(argc, argv, [&](const QString& folder) {
        catalogue = Archives::makeCatalogue(folder, 1000, 500);
        windowsProgram::prepareHome(folder, catalogue);
        systemDatabase = folder + u"/Vx.mdb"_s;
        dao::DBEngine::instance().setDefinitionsInMemory(false);
        Main::StartServices();
        window = std::make_unique<frmMain>();
        window->load();
        window->panelsChanged();
        window->show();
        closeWindows();
        mainWindow = window.get();
        add("start", benchStart);
        add("memory", benchMemory);
        add("study", benchStudy);
        add("row", benchRow);
        add("topic", benchTopic);
        add("view", benchView);
        add("language", benchLanguage);
    });
    window.reset();
    ui::setAsker(nullptr);
    return outcome;
}
