// Frequency tables over a million cases: the whole run of the program against its own statements stepped bare.

#include "Archives.h"
#include "Frame.h"
#include "Ratios.h"
#include "SqliteDirect.h"

#include "analysis/AnalysisModel.h"
#include "catalogue/mdDataBase.h"

#include <QRegularExpression>
#include <benchmark/benchmark.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int cases = 1'000'000;

struct Request {
    const char* name;
    WeightKind weight;
    QString filter;
};

const Request requests[] = {{"frequency unweighted", WeightKind::noWeight, {}},
                            {"frequency weighted", WeightKind::WeightRE, {}},
                            {"frequency filtered over two tables", WeightKind::noWeight, u"V9<6"_s}};

QString folder;

void runRequest(AnalysisModel& model, const Request& request) {
    model.open();
    model.StudyClick(u"B1"_s);
    model.chooseVariable(u"V5"_s);
    model.chooseWeight(request.weight);
    if (!request.filter.isEmpty())
        model.chooseFilterText(request.filter);
    if (model.changeTab(1) != RunOutcome::Computed)
        qFatal("the run did not compute");
}

/// The statements of a run as SQLite gets them.
QStringList statementsOf(const Request& request) {
    QStringList statements;
    dao::DBEngine::instance().setTrace([&](const QString&, const QString& sqlite) { statements << sqlite; });
    AnalysisModel model;
    runRequest(model, request);
    dao::DBEngine::instance().setTrace({});
    return statements;
}

/// The alias by which the statements name the linked case file.
QString aliasIn(const QStringList& statements) {
    static const QRegularExpression name(u"\"([^\"]+)\"\\.\"B1_1\""_s);
    for (const QString& statement : statements)
        if (const auto match = name.match(statement); match.hasMatch())
            return match.captured(1);
    qFatal("no statement names the case table");
}

void benchRequest(benchmark::State& state, const Request& request) {
    const QStringList statements = statementsOf(request);
    const QString alias = aliasIn(statements);
    SqliteDirect direct(folder + u"/cases.mdb"_s, {{alias, folder + u"/B1.mdb"_s}});
    for (auto _ : state) {
        Ratios::measure(
            QString::fromLatin1(request.name), 7, 1.15,
            [&] {
                return seconds([&] {
                    AnalysisModel model;
                    runRequest(model, request);
                });
            },
            [&] {
                return seconds([&] {
                    for (const QString& statement : statements)
                        direct.run(statement);
                });
            });
    }
}

}

int main(int argc, char** argv) {
    return runBenchmarks(argc, argv, [](const QString& temporary) {
        folder = temporary;
        const QString catalogue = Archives::makeCases(folder, cases);
        if (mdDataBase::OpenQXDatabase(catalogue) != 1)
            qFatal("the catalogue did not open");
        for (const Request& request : requests)
            benchmark::RegisterBenchmark(request.name, [&request](benchmark::State& state) { benchRequest(state, request); })
                ->Iterations(1)
                ->Unit(benchmark::kMillisecond);
    });
}
