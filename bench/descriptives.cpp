// All fourteen descriptive statistics of a million cases: the whole run of the program against reading the cases bare
// and sorting them once, and how it grows with the cases (--large goes on to ten millions).

#include "CaseRuns.h"
#include "Frame.h"
#include "Ratios.h"

#include "analysis/AnalysisModel.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <random>

using namespace Qt::StringLiterals;

namespace {

constexpr int cases = 1'000'000;

CaseRuns::Choose statistics(const QString& variable, WeightKind weight, bool grouped = false) {
    return [=](AnalysisModel& model) {
        model.edit().chooseMode(AnalysisMode::Descriptives);
        model.edit().chooseVariable(variable);
        model.edit().chooseVariable2(u"V5"_s);
        model.edit().chooseWeight(weight);
        model.edit().change(RequestPart::Statistics, [=](AnalysisRequest& request) {
            request.chkDescGroup = grouped;
            request.dtDesc = u"32766"_s;
            request.dtDescDigits = u"2;2;2;2;2;2;2;2;2;2;2;2;2;2;"_s;
        });
    };
}

const struct {
    const char* name;
    CaseRuns::Choose choose;
} requests[] = {{"descriptives unweighted", statistics(u"V6"_s, WeightKind::noWeight)},
                {"descriptives of fractional numbers", statistics(u"W"_s, WeightKind::noWeight)},
                {"descriptives weighted", statistics(u"V6"_s, WeightKind::WeightRE)},
                {"descriptives weighted by groups", statistics(u"V6"_s, WeightKind::WeightRE, true)}};

/// Seconds for one sort of so many unordered numbers.
double sortOnce() {
    static const std::vector<double> unordered = [] {
        std::vector<double> numbers(static_cast<size_t>(cases));
        std::mt19937 random(7);
        std::generate(numbers.begin(), numbers.end(), [&] { return static_cast<double>(random() % 100000) / 1000; });
        return numbers;
    }();
    std::vector<double> numbers = unordered;
    return seconds([&] {
        std::sort(numbers.begin(), numbers.end());
        benchmark::DoNotOptimize(numbers.data());
    });
}

} // namespace

int main(int argc, char** argv) {
    const bool large = wantsLarge(argc, argv);
    return runBenchmarks(argc, argv, [large](const QString& folder) {
        for (const auto& request : requests)
            benchmark::RegisterBenchmark(request.name,
                                         [folder, &request](benchmark::State& state) {
                                             CaseRuns::open(folder, cases);
                                             for (auto _ : state)
                                                 CaseRuns::compareWithReading(QString::fromLatin1(request.name), 2.5,
                                                                              folder, cases, request.choose,
                                                                              u"SELECT q.*"_s, sortOnce);
                                         })
                ->Iterations(1)
                ->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark("descriptives growing",
                                     [folder, large](benchmark::State& state) {
                                         for (auto _ : state)
                                             CaseRuns::growth(u"descriptives"_s, folder, large, requests[2].choose);
                                     })
            ->Iterations(1)
            ->Unit(benchmark::kMillisecond);
    });
}
