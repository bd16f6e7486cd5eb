// Frequency tables over a million cases: the whole run of the program against its own statements stepped bare, and how
// it grows with the cases (--large goes on to ten millions).

#include "CaseRuns.h"
#include "Frame.h"

#include "analysis/AnalysisModel.h"

#include <benchmark/benchmark.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int cases = 1'000'000;

CaseRuns::Choose frequency(WeightKind weight, const QString& filter = QString()) {
    return [=](AnalysisModel& model) {
        model.edit().chooseVariable(u"V5"_s);
        model.edit().chooseWeight(weight);
        if (!filter.isEmpty())
            model.edit().chooseFilterText(filter);
    };
}

const struct {
    const char* name;
    CaseRuns::Choose choose;
} requests[] = {{"frequency unweighted", frequency(WeightKind::noWeight)},
                {"frequency weighted", frequency(WeightKind::WeightRE)},
                {"frequency filtered over two tables", frequency(WeightKind::noWeight, u"V9<6"_s)}};

} // namespace

int main(int argc, char** argv) {
    const bool large = wantsLarge(argc, argv);
    return runBenchmarks(argc, argv, [large](const QString& folder) {
        CaseRuns::open(folder, cases);
        for (const auto& request : requests)
            benchmark::RegisterBenchmark(request.name,
                                         [folder, &request](benchmark::State& state) {
                                             for (auto _ : state)
                                                 CaseRuns::compareWithStatements(QString::fromLatin1(request.name),
                                                                                 1.15, folder, cases, request.choose);
                                         })
                ->Iterations(1)
                ->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark("frequency growing",
                                     [folder, large](benchmark::State& state) {
                                         for (auto _ : state)
                                             CaseRuns::growth(u"frequency"_s, folder, large, requests[1].choose);
                                     })
            ->Iterations(1)
            ->Unit(benchmark::kMillisecond);
    });
}
