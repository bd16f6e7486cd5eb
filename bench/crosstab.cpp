// Crosstabs over a million cases: the whole run of the program against its own statements stepped bare (that for
// missing weights among them), how it grows with the cases (--large goes on to ten millions), and the builder alone
// with 25,000 filled cells.

#include "CaseRuns.h"
#include "Frame.h"
#include "Ratios.h"

#include "analysis/AnalysisModel.h"
#include "platform/dao/DBEngine.h"
#include "tables/Crosstab.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <cstdio>
#include <ctime>
#include <functional>

using namespace Qt::StringLiterals;

namespace {

constexpr int cases = 1'000'000;

CaseRuns::Choose crosstab(WeightKind weight) {
    return [weight](AnalysisModel& model) {
        model.edit().chooseMode(AnalysisMode::Crosstab);
        model.edit().chooseVariable(u"V5"_s);
        model.edit().chooseVariable2(u"V6"_s);
        model.edit().chooseWeight(weight);
    };
}

const struct {
    const char* name;
    CaseRuns::Choose choose;
} requests[] = {{"crosstab unweighted", crosstab(WeightKind::noWeight)},
                {"crosstab weighted", crosstab(WeightKind::WeightRE)}};

/// 200 by 200 values with labels, 25,000 of their combinations with a broken sum of weights.
void storeCounts(dao::Database& file) {
    const auto table = [&file](const QString& name, const QStringList& fields, const std::vector<int>& types) {
        const dao::TableDefPtr definition = file.CreateTableDef(name);
        for (int i = 0; i < fields.size(); ++i)
            definition->Fields.push_back(dao::TableDef::CreateField(fields[i], types[static_cast<size_t>(i)]));
        file.TableDefs().Append(definition);
        return file.openAppender(name, fields);
    };
    dao::DBEngine::instance().Workspaces(0).BeginTrans();
    {
        const auto counts =
            table(u"counts"_s, {u"A"_s, u"B"_s, u"Count"_s}, {dao::dbDouble, dao::dbDouble, dao::dbDouble});
        for (int row = 0; row < 200; ++row)
            for (int i = 0; i < 125; ++i) {
                counts->setNumber(0, row);
                counts->setNumber(1, (row + i * 8 / 5) % 200);
                counts->setNumber(2, 1 + (row * 31 + i * 17) % 997 + 0.37);
                counts->appendRow();
            }
        // One record more, that belongs nowhere: at exactly 25,000 the builder has something to say.
        counts->setNumber(2, 1);
        counts->appendRow();
    }
    {
        const auto labels = table(u"labels"_s, {u"fi_VarName"_s, u"dt_Value"_s, u"dt_Label"_s},
                                  {dao::dbText, dao::dbText, dao::dbText});
        for (const QString& variable : {u"A"_s, u"B"_s})
            for (int value = 0; value < 200; ++value) {
                labels->setText(0, variable);
                labels->setText(1, QString::number(value));
                labels->setText(2, u"Label of %1"_s.arg(value));
                labels->appendRow();
            }
    }
    dao::DBEngine::instance().Workspaces(0).CommitTrans();
}

/// Time of the processor, since the 100 ms that the builder may take are those of a machine with nothing else to do.
double processorSeconds(const std::function<void()>& action) {
    const std::clock_t start = std::clock();
    action();
    return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

void benchBuilder(const QString& folder) {
    const dao::DatabasePtr file = dao::DBEngine::instance().Workspaces(0).CreateDatabase(folder + u"/cells.mdb"_s);
    storeCounts(*file);
    const dao::RecordsetPtr counts = file->OpenRecordset(u"counts"_s, dao::dbOpenSnapshot);
    const dao::RecordsetPtr labels = file->OpenRecordset(u"labels"_s, dao::dbOpenSnapshot);
    ResultTable tables[5];
    double best = 1e9;
    for (int round = 0; round < 9; ++round)
        best = std::min(best, processorSeconds([&] {
                            const CrosstabInput input{.counts = *counts,
                                                      .labels = *labels,
                                                      .rowMissing = {},
                                                      .columnMissing = {},
                                                      .options = {},
                                                      .cancelled = {},
                                                      .onFailure = {}};
                            if (BuildCrosstabTable({tables[0], tables[1], tables[2], tables[3], tables[4]}, input) !=
                                BuildOutcome::Complete)
                                qFatal("the builder did not come to its end");
                        }));
    std::printf("crosstab builder, 25,000 cells of %d x %d values: %.1f ms\n", tables[0].Rows() - 5,
                tables[0].Cols() - 5, best * 1000);
    Ratios::note(u"crosstab builder: ms of 25,000 cells over 100"_s, best * 10, 1);
}

} // namespace

int main(int argc, char** argv) {
    const bool large = wantsLarge(argc, argv);
    return runBenchmarks(argc, argv, [large](const QString& folder) {
        CaseRuns::open(folder, cases);
        for (const auto& request : requests)
            benchmark::RegisterBenchmark(request.name,
                                         [folder, &request](benchmark::State& state) {
                                             for (auto _ : state)
                                                 CaseRuns::compareWithStatements(QString::fromLatin1(request.name), 1.2,
                                                                                 folder, cases, request.choose);
                                         })
                ->Iterations(1)
                ->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark("crosstab growing",
                                     [folder, large](benchmark::State& state) {
                                         for (auto _ : state)
                                             CaseRuns::growth(u"crosstab"_s, folder, large, requests[1].choose);
                                     })
            ->Iterations(1)
            ->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark("crosstab builder",
                                     [folder](benchmark::State& state) {
                                         for (auto _ : state)
                                             benchBuilder(folder);
                                     })
            ->Iterations(1)
            ->Unit(benchmark::kMillisecond);
    });
}
