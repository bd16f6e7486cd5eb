// A catalogue of 1,000 studies and 500,000 variables: opening it, its tree, the variables of one study, against the
// bare statements.

#include "Archives.h"
#include "Frame.h"
#include "Ratios.h"
#include "SqliteDirect.h"

#include "catalogue/mdDataBase.h"
#include "explorer/ExplorerModel.h"
#include "platform/dao/DBEngine.h"

#include <benchmark/benchmark.h>

using namespace Qt::StringLiterals;

namespace {

QString folder;
QString path;

/// What an action hands to SQLite.
QStringList statementsOf(const std::function<void()>& action) {
    QStringList statements;
    dao::DBEngine::instance().setTrace([&](const QString&, const QString& sqlite) { statements << sqlite; });
    action();
    dao::DBEngine::instance().setTrace({});
    return statements;
}

void open() {
    if (mdDataBase::OpenQXDatabase(path) != 1)
        qFatal("the catalogue did not open");
}

void benchOpening(benchmark::State& state) {
    const QStringList statements = statementsOf(open);
    for (auto _ : state)
        Ratios::measure(
            u"opening"_s, 21, 2, [] { return seconds(open); },
            [&] {
                return seconds([&] {
                    SqliteDirect direct(path);
                    direct.run(u"SELECT count(*) FROM sqlite_schema"_s);
                    for (const QString& statement : statements)
                        direct.run(statement);
                });
            });
}

void benchAction(benchmark::State& state, const QString& name, const std::function<void()>& action) {
    const QStringList statements = statementsOf(action);
    SqliteDirect direct(path);
    for (auto _ : state)
        Ratios::measure(
            name, 21, 2, [&] { return seconds(action); },
            [&] {
                return seconds([&] {
                    for (const QString& statement : statements)
                        direct.run(statement);
                });
            });
}

void benchTree(benchmark::State& state) {
    CatalogueTree tree;
    benchAction(state, u"tree of 1,000 studies"_s, [&] { Update_TreeView(tree, 1, false); });
}

void benchList(benchmark::State& state) {
    ExplorerModel explorer;
    explorer.open(1);
    benchAction(state, u"variables of one study"_s, [&] {
        if (!explorer.select(u"AS0500"_s, true) || explorer.list.rows.size() != 500)
            qFatal("the list is not the study's");
    });
}

} // namespace

int main(int argc, char** argv) {
    return runBenchmarks(argc, argv, [](const QString& temporary) {
        folder = temporary;
        path = Archives::makeCatalogue(folder, 1000, 500);
        open();
        benchmark::RegisterBenchmark("opening", benchOpening)->Iterations(1)->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark("tree", benchTree)->Iterations(1)->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark("list", benchList)->Iterations(1)->Unit(benchmark::kMillisecond);
    });
}
