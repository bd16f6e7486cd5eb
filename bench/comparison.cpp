// A comparison of 30 studies of 3,000 cases, each in a file of its own: the whole run against its own statements
// stepped bare, the first run of a catalogue that has no links yet, and a second one of a changed request. Then two
// entries over ever more cases.

#include "Archives.h"
#include "CaseRuns.h"
#include "Frame.h"
#include "Ratios.h"
#include "SqliteDirect.h"

#include "analysis/AnalysisModel.h"
#include "app/globals.h"
#include "catalogue/mdDataBase.h"
#include "config/Options.h"
#include "platform/dao/DBEngine.h"

#include <QRegularExpression>
#include <benchmark/benchmark.h>
#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

constexpr int studies = 30;
constexpr int cases = 3000;

/// An analysis window's model with all studies in its comparison.
struct Comparison {
    AnalysisModel model;
    ComparisonList& list = model.comparison();

    explicit Comparison(int weight) {
        gOptions.ComparisonWeight = weight;
        model.open();
        model.edit().chooseMode(AnalysisMode::Comparison);
        for (int i = 1; i <= studies; ++i)
            if (!list.addVariable(u"S%1"_s.arg(i, 2, 10, QLatin1Char('0')), u"V5"_s))
                qFatal("a study is not there");
    }

    /// Seconds of a run that computes.
    double run() {
        return seconds([this] {
            model.computeAnew();
            if (model.facts().outcome != RunOutcome::Computed)
                qFatal("the run did not compute: %d", static_cast<int>(model.facts().outcome));
        });
    }
};

/// The statements of a run and the case file that each reaches; statements of the catalogue alone reach none.
struct Reached {
    QString sql, alias, file;
};

std::vector<Reached> statementsOf(Comparison& comparison, const QString& folder) {
    static const QRegularExpression place(u"\"([^\"]+)\"\\.\"(S\\d\\d)_1\""_s);
    std::vector<Reached> statements;
    dao::DBEngine::instance().setTrace([&](const QString&, const QString& sqlite) {
        const auto match = place.match(sqlite);
        statements.push_back(
            {sqlite, match.captured(1), match.hasMatch() ? folder + u'/' + match.captured(2) + u".mdb"_s : QString()});
    });
    comparison.run();
    dao::DBEngine::instance().setTrace({});
    return statements;
}

/// The same statements on one connection, each case file attached when it is reached: SQLite takes ten at a time.
class Bare {
public:
    Bare(const QString& catalogue, const std::vector<Reached>& statements)
        : direct_(catalogue), statements_(statements) {}

    double run() {
        return seconds([this] {
            QString attached;
            for (const Reached& reached : statements_) {
                if (!reached.file.isEmpty() && reached.file != attached) {
                    detach(attached);
                    direct_.run(u"ATTACH '"_s + reached.file + u"' AS \""_s + reached.alias + u"\""_s);
                    attached = reached.file;
                    alias_ = reached.alias;
                }
                direct_.run(reached.sql);
            }
            detach(attached);
        });
    }

private:
    SqliteDirect direct_;
    std::vector<Reached> statements_;
    QString alias_;

    void detach(const QString& attached) {
        if (!attached.isEmpty())
            direct_.run(u"DETACH \""_s + alias_ + u"\""_s);
    }
};

void chooseTwo(AnalysisModel& model) {
    gOptions.ComparisonWeight = 1;
    model.edit().chooseMode(AnalysisMode::Comparison);
    ComparisonList& list = model.comparison();
    if (!list.addVariable(u"B1"_s, u"V5"_s) || !list.addVariable(u"B1"_s, u"V6"_s))
        qFatal("a variable is not there");
}

} // namespace

int main(int argc, char** argv) {
    const bool large = wantsLarge(argc, argv);
    return runBenchmarks(argc, argv, [large](const QString& folder) {
        const QString catalogue = Archives::makeWaves(folder, studies, cases);
        if (mdDataBase::OpenQXDatabase(catalogue) != 1)
            qFatal("the catalogue did not open");
        gOptions.DataPath = folder;
        benchmark::RegisterBenchmark(
            "comparison",
            [folder, catalogue](benchmark::State& state) {
                for (auto _ : state) {
                    Comparison weighted(1), unweighted(0);
                    const double first = weighted.run();
                    const double second = unweighted.run();
                    std::printf("comparison of %d studies: %.3f s without links, %.3f s a second, changed one\n",
                                studies, first, second);
                    Ratios::note(u"comparison: seconds of the first run over 1"_s, first, 1);
                    Ratios::note(u"comparison: seconds of a changed request over 0.3"_s, second / 0.3, 1);
                    Bare bare(catalogue, statementsOf(weighted, folder));
                    Ratios::measure(
                        u"comparison of 30 studies"_s, 7, 1.5, [&] { return weighted.run(); },
                        [&] { return bare.run(); });
                }
            })
            ->Iterations(1)
            ->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark("comparison growing",
                                     [folder, large](benchmark::State& state) {
                                         for (auto _ : state)
                                             CaseRuns::growth(u"comparison"_s, folder, large, chooseTwo);
                                     })
            ->Iterations(1)
            ->Unit(benchmark::kMillisecond);
    });
}
