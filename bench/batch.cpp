// The instructions of 300 variables of 3,000 cases: the batch that keeps their tables against the same runs with
// nothing kept, and the batch that keeps their graphs against the same runs, painting and encoding.

#include "Archives.h"
#include "Frame.h"
#include "Ratios.h"

#include "analysis/BatchRun.h"
#include "analysis/request/Instruction.h"
#include "analysis/runRequest.h"
#include "catalogue/mdDataBase.h"
#include "charts/BuildChart.h"
#include "charts/chartFile.h"
#include "config/Options.h"

#include <QGuiApplication>
#include <benchmark/benchmark.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int variables = 300, cases = 3000;
const QString study = u"B1"_s;

BatchRun batchOf(BatchKind kind) {
    return BatchRun({.kind = kind, .study = study});
}

/// Seconds that a batch takes.
double batchSeconds(BatchKind kind) {
    BatchRun batch = batchOf(kind);
    return seconds([&] {
        if (batch.run().done.size() != variables)
            qFatal("not every variable has its result");
    });
}

/// Seconds of the same runs, with what is made of each table.
double runSeconds(const std::function<void(const TableResult&)>& make) {
    RequestEditor editor;
    editor.open();
    editor.StudyClick(study);
    const std::vector<KeptInstruction> all = readInstructions(study);
    return seconds([&] {
        for (const KeptInstruction& one : all) {
            if (one.text.isEmpty())
                continue;
            editor.chooseMode(AnalysisMode::Frequency);
            editor.chooseVariable(one.variable);
            loadInstruction(editor, Instruction::read(one.text));
            const TableResult result = runRequest(editor, gOptions, {}, {});
            if (result.run.outcome != RunOutcome::Computed)
                qFatal("a run did not compute");
            make(result);
        }
    });
}

void drawAndEncode(const TableResult& result) {
    const ChartModel chart = BuildChartForTab({.table = result.mfgGrid,
                                               .caption = result.lblLabel,
                                               .view = 0,
                                               .origin = result.facts->origin,
                                               .options = gOptions},
                                              {});
    if (storedGraphOf(chart).jpeg.isEmpty())
        qFatal("a chart was not drawn");
}

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    return runBenchmarks(argc, argv, [](const QString& folder) {
        if (mdDataBase::OpenQXDatabase(Archives::makeInstructions(folder, variables, cases)) != 1)
            qFatal("the catalogue did not open");
        const auto add = [](const char* name, int rounds, double limit, BatchKind kind,
                            const std::function<void(const TableResult&)>& make) {
            benchmark::RegisterBenchmark(name,
                                         [=](benchmark::State& state) {
                                             for (auto _ : state)
                                                 Ratios::measure(
                                                     QString::fromLatin1(name), rounds, limit,
                                                     [&] { return batchSeconds(kind); },
                                                     [&] { return runSeconds(make); });
                                         })
                ->Iterations(1)
                ->Unit(benchmark::kMillisecond);
        };
        add("batch of tables", 7, 1.3, BatchKind::Tables, [](const TableResult&) {});
        add("batch of graphs", 3, 1.2, BatchKind::Graphs, drawAndEncode);
    });
}
