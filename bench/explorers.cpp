// Five explorers of a view of 1,000 categories, without a screen, beside 1,000 studies and 500,000 variables: how long
// it takes until all of them show what an edit has written.

#include "Archives.h"
#include "Frame.h"
#include "Ratios.h"
#include "windowsProgram.h"

#include "app/frmMain.h"
#include "app/globals.h"
#include "app/start.h"
#include "catalogue/CDaoDatabase.h"
#include "explorer/CatalogueChange.h"
#include "explorer/frmExplorer.h"
#include "platform/dao/DBEngine.h"
#include "platform/dao/Transaction.h"
#include "widgets/ChildArea.h"
#include "widgets/QtAsker.h"
#include "widgets/VariableListView.h"

#include <QApplication>
#include <QTreeView>
#include <algorithm>
#include <benchmark/benchmark.h>
#include <vector>

using namespace Qt::StringLiterals;
using Kind = CatalogueChange::Kind;

namespace {

constexpr int firstGroup = 101, groups = 20, perGroup = 49, variables = 20;
frmMain* mainWindow = nullptr;

void execute(const QString& statement) {
    gDatabase.CurrentDatabase()->Execute(statement);
}

void addCategory(int id, int parent, int order) {
    execute(u"INSERT INTO tkey_Topic (id, fid, [Order], dt_IndicatorName, dt_EnIndicatorName, "
            "dt_IndicatorDescription) VALUES (%1, %2, %3, 'Kategorie %1', 'Category %1', '%4')"_s.arg(id)
                .arg(parent)
                .arg(order)
                .arg(id % 3 ? QString(400, u'x') : u" "_s));
}

/// Twenty groups of 49 categories, of which the first has some variables.
void addCategories() {
    dao::Transaction transaction;
    for (int group = 0; group < groups; ++group) {
        addCategory(firstGroup + group, 0, 10 + group);
        for (int i = 0; i < perGroup; ++i)
            addCategory(1000 + group * 100 + i, firstGroup + group, i + 1);
    }
    for (int v = 1; v <= variables; ++v)
        execute(
            u"INSERT INTO trel_VariableTopic (fid, fi_StudyNo, fi_VariableNo) VALUES (1000, 'S0001', 'V%1')"_s.arg(v));
    transaction.commit();
}

void openFive() {
    for (int i = 0; i < 5; ++i) {
        frmExplorer& explorer = windowsProgram::openExplorer(*mainWindow, 2);
        explorer.setPanels(1);
        explorer.findChild<QTreeView*>(u"tvTreeView"_s)->expandAll();
        if (!explorer.showNode(u"B1000"_s) || explorer.model().list.rows.size() != variables)
            qFatal("the category has no variables");
        static_cast<VariableListView*>(explorer.findChild<QTableView*>(u"lvListView"_s))->selectOnly(3 + i);
    }
    mainWindow->area().tileVertically();
    QCoreApplication::processEvents();
}

/// Milliseconds from the end of the writing until five windows are painted, the median of some rounds.
double untilPainted(int rounds, const std::function<CatalogueChanges(int round)>& edit) {
    std::vector<double> times;
    for (int round = 0; round < rounds; ++round) {
        const CatalogueChanges changes = edit(round);
        QCoreApplication::processEvents();
        times.push_back(seconds([&] {
                            announce(changes);
                            QCoreApplication::processEvents();
                        }) *
                        1000);
    }
    std::ranges::sort(times);
    return times[times.size() / 2];
}

void benchInPlace(benchmark::State& state) {
    const EntryText text{u"Neu"_s, true};
    const auto added = [&](int) {
        addCategory(5000, firstGroup, 999);
        return CatalogueChanges{
            {.kind = Kind::Added, .view = 2, .key = u"B5000"_s, .parentKey = u"B101"_s, .original = text}};
    };
    const auto removed = [&](int) {
        execute(u"DELETE FROM tkey_Topic WHERE id = 5000"_s);
        return CatalogueChanges{{.kind = Kind::Removed, .view = 2, .key = u"B5000"_s}};
    };
    const auto both = [&](int round) { return round % 2 ? removed(round) : added(round); };
    const auto renamed = [&](int) {
        return CatalogueChanges{{.kind = Kind::Renamed, .view = 2, .key = u"B1000"_s, .original = text}};
    };
    const auto moved = [&](int round) {
        const int to = firstGroup + 1 + round % 2;
        execute(u"UPDATE tkey_Topic SET fid = %1, [Order] = 999 WHERE id = 1000"_s.arg(to));
        return CatalogueChanges{{.kind = Kind::Moved, .view = 2, .key = u"B1000"_s, .parentKey = u"B%1"_s.arg(to)}};
    };
    for (auto _ : state) {
        Ratios::note(u"five explorers, entry added or removed, painted, in ms"_s, untilPainted(20, both), 60);
        Ratios::note(u"five explorers, entry renamed, painted, in ms"_s, untilPainted(11, renamed), 60);
        Ratios::note(u"five explorers, entry moved, painted, in ms"_s, untilPainted(11, moved), 60);
    }
}

void benchOrdered(benchmark::State& state) {
    const auto ordered = [](int round) {
        execute(u"UPDATE tkey_Topic SET [Order] = %1 WHERE id = 105"_s.arg(round % 2 ? 14 : 25));
        return CatalogueChanges{{.kind = Kind::Ordered, .view = 2}};
    };
    for (auto _ : state)
        Ratios::note(u"five explorers, entries ordered, painted, in ms"_s, untilPainted(11, ordered), 350);
}

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    QtAsker dialogs;
    ui::setAsker(&dialogs);
    std::unique_ptr<frmMain> window;
    const int outcome = runBenchmarks(argc, argv, [&](const QString& folder) {
        windowsProgram::prepareHome(folder, Archives::makeCatalogue(folder, 1000, 500));
        Main::StartServices();
        window = std::make_unique<frmMain>();
        window->load();
        window->panelsChanged();
        window->resize(1800, 1000);
        window->show();
        unloadChildWindows();
        mainWindow = window.get();
        addCategories();
        openFive();
        benchmark::RegisterBenchmark("inPlace", benchInPlace)->Iterations(1)->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark("ordered", benchOrdered)->Iterations(1)->Unit(benchmark::kMillisecond);
    });
    window.reset();
    ui::setAsker(nullptr);
    return outcome;
}
