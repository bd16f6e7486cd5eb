// All fourteen descriptive statistics of a million cases: the whole run of the program against reading the cases bare and sorting them
// once. Then how the time grows with the cases; --large goes on to ten millions.

#include "Archives.h"
#include "Frame.h"
#include "Ratios.h"
#include "SqliteDirect.h"

#include "analysis/AnalysisModel.h"
#include "catalogue/mdDataBase.h"

#include <QDir>
#include <QRegularExpression>
#include <algorithm>
#include <benchmark/benchmark.h>
#include <cstdio>
#include <ctime>
#include <random>

using namespace Qt::StringLiterals;

namespace {

struct Request {
    const char* name;
    QString variable;
    WeightKind weight = WeightKind::noWeight;
    bool grouped = false;
};

const Request requests[] = {{"descriptives unweighted", u"V6"_s},
                            {"descriptives of broken numbers", u"W"_s},
                            {"descriptives weighted", u"V6"_s, WeightKind::WeightRE},
                            {"descriptives weighted by groups", u"V6"_s, WeightKind::WeightRE, true}};

void runRequest(AnalysisModel& model, const Request& request) {
    model.open();
    model.StudyClick(u"B1"_s);
    model.chooseMode(AnalysisMode::Descriptives);
    model.chooseVariable(request.variable);
    model.chooseVariable2(u"V5"_s);
    model.request.chkDescGroup = request.grouped;
    model.chooseWeight(request.weight);
    model.request.dtDesc = u"32766"_s;
    model.request.dtDescDigits = u"2;2;2;2;2;2;2;2;2;2;2;2;2;2;"_s;
    if (model.changeTab(1) != RunOutcome::Computed)
        qFatal("the run did not compute");
}

double timeOf(const Request& request) {
    return seconds([&] {
        AnalysisModel model;
        runRequest(model, request);
    });
}

/// The statement that reads the cases, as SQLite gets it.
QString statementOf(const Request& request) {
    QString statement;
    AnalysisModel model;
    dao::DBEngine::instance().setTrace([&](const QString& jet, const QString& sqlite) {
        if (jet.startsWith(u"SELECT q.*"_s))
            statement = sqlite;
    });
    runRequest(model, request);
    dao::DBEngine::instance().setTrace({});
    return statement;
}

QString aliasIn(const QString& statement) {
    static const QRegularExpression name(u"\"([^\"]+)\"\\.\"B1_[12]\""_s);
    const auto match = name.match(statement);
    if (!match.hasMatch())
        qFatal("the statement names no case table");
    return match.captured(1);
}

/// One sort, of numbers that are as unordered as they can be.
double sortOnce(std::vector<double> numbers) {
    return seconds([&] {
        std::sort(numbers.begin(), numbers.end());
        benchmark::DoNotOptimize(numbers.data());
    });
}

std::vector<double> shuffled(int count) {
    std::vector<double> numbers(static_cast<size_t>(count));
    std::mt19937 random(7);
    std::generate(numbers.begin(), numbers.end(), [&] { return static_cast<double>(random() % 100000) / 1000; });
    return numbers;
}

QString archiveOf(const QString& folder, int cases) {
    const QString own = folder + u"/%1"_s.arg(cases);
    if (QDir(own).exists())
        return own + u"/cases.mdb"_s;
    QDir().mkpath(own);
    return Archives::makeCases(own, cases);
}

void open(const QString& catalogue) {
    mdDataBase::CloseDataBase();
    if (mdDataBase::OpenQXDatabase(catalogue) != 1)
        qFatal("the catalogue did not open");
}

void compare(const QString& folder, const Request& request) {
    constexpr int cases = 1'000'000;
    const QString statement = statementOf(request);
    SqliteDirect direct(folder + u"/%1/cases.mdb"_s.arg(cases), {{aliasIn(statement), folder + u"/%1/B1.mdb"_s.arg(cases)}});
    const std::vector<double> numbers = shuffled(cases);
    Ratios::measure(
        QString::fromLatin1(request.name), 5, 2.5, [&] { return timeOf(request); },
        [&] { return seconds([&] { direct.run(statement); }) + sortOnce(numbers); });
}

/// Processor time of one run in seconds: other programs on the machine don't count in it.
double processorTime(const Request& request) {
    const std::clock_t start = std::clock();
    timeOf(request);
    return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

void growth(const QString& folder, bool large) {
    std::vector<int> sizes{10'000, 100'000, 1'000'000};
    if (large)
        sizes.push_back(10'000'000);
    std::vector<double> each;
    for (const int cases : sizes) {
        open(archiveOf(folder, cases));
        timeOf(requests[2]);
        double best = processorTime(requests[2]);
        for (int again = 0; again < 4; ++again)
            best = std::min(best, processorTime(requests[2]));
        each.push_back(best / cases);
        std::printf("descriptives of %9d cases: %8.3f s, %.3f microseconds a case\n", cases, best, 1e6 * each.back());
    }
    Ratios::note(u"descriptives: a case among 1e6 over one among 1e5"_s, each[2] / each[1], 1.5);
}

}

int main(int argc, char** argv) {
    bool large = false;
    for (int i = 1; i < argc; ++i)
        large = large || QByteArray(argv[i]) == "--large";
    return runBenchmarks(argc, argv, [large](const QString& folder) {
        open(archiveOf(folder, 1'000'000));
        for (const Request& request : requests)
            benchmark::RegisterBenchmark(request.name, [folder, &request](benchmark::State& state) {
                for (auto _ : state)
                    compare(folder, request);
            })->Iterations(1)->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark("descriptives growing", [folder, large](benchmark::State& state) {
            for (auto _ : state)
                growth(folder, large);
        })->Iterations(1)->Unit(benchmark::kMillisecond);
    });
}
