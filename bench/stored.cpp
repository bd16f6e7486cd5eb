// Choosing a study of 500 variables with a stored graph of 300 KB each, against the same study without graphs: time,
// and memory of a process of its own.

#include "Archives.h"
#include "Frame.h"
#include "Ratios.h"
#include "residentMemory.h"

#include "analysis/request/RequestEditor.h"
#include "catalogue/mdDataBase.h"
#include "charts/StoredGraph.h"
#include "platform/dao/DBEngine.h"
#include "platform/dao/Transaction.h"

#include <QDir>
#include <QRandomGenerator>
#include <benchmark/benchmark.h>
#include <sys/wait.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int variables = 500, graphBytes = 300'000;
QString folder, without, with;

/// Every variable of the catalogue gets bytes of its own.
void storeGraphs(const QString& path) {
    const dao::DatabasePtr catalogue = dao::DBEngine::instance().Workspaces(0).OpenDatabase(path);
    QRandomGenerator random(13);
    dao::Transaction transaction;
    const dao::RecordsetPtr rows = catalogue->OpenRecordset(u"SELECT * FROM tkey_Variable WHERE true"_s);
    for (; !rows->Eof(); rows->MoveNext()) {
        QByteArray bytes(graphBytes, Qt::Uninitialized);
        for (char& byte : bytes)
            byte = static_cast<char>(random.bounded(256));
        rows->Edit();
        rows->setValue(u"dt_Graph"_s, memoOf(bytes));
        rows->setValue(u"dt_GraphLayout"_s, dao::Value(u"\"title\";10205;6236;\"\";"_s));
        rows->Update();
    }
    transaction.commit();
    rows->Close();
    catalogue->Close();
}

void open(const QString& path) {
    if (mdDataBase::OpenQXDatabase(path) != 1)
        qFatal("the catalogue did not open");
}

void choose() {
    RequestEditor editor;
    editor.open();
    if (!editor.StudyClick(u"S0001"_s) || editor.variables().size() != variables)
        qFatal("the study is not there");
}

/// KiB that a fresh process has in use once it has chosen the study and one of its variables.
long memoryOf(const QString& path) {
    int ends[2];
    if (pipe(ends) != 0)
        return 0;
    const pid_t child = fork();
    if (child == 0) {
        open(path);
        RequestEditor editor;
        editor.open();
        editor.StudyClick(u"S0001"_s);
        editor.chooseVariable(editor.variables().front().name);
        const long used = residentMemory();
        _exit(write(ends[1], &used, sizeof used) == sizeof used ? 0 : 1);
    }
    long used = 0;
    if (read(ends[0], &used, sizeof used) != sizeof used)
        used = 0;
    waitpid(child, nullptr, 0);
    close(ends[0]);
    close(ends[1]);
    return used;
}

void benchMemory(benchmark::State& state) {
    for (auto _ : state)
        Ratios::note(u"memory of a study with graphs, against without"_s,
                     static_cast<double>(memoryOf(with)) / static_cast<double>(memoryOf(without)), 1.2);
}

void benchTime(benchmark::State& state) {
    const auto secondsIn = [](const QString& path) {
        open(path);
        return seconds(choose);
    };
    for (auto _ : state)
        Ratios::measure(
            u"choosing a study with graphs, against without"_s, 21, 2, [&] { return secondsIn(with); },
            [&] { return secondsIn(without); });
}

} // namespace

int main(int argc, char** argv) {
    return runBenchmarks(argc, argv, [](const QString& temporary) {
        folder = temporary;
        for (QString* path : {&without, &with}) {
            const QString own = folder + (path == &with ? u"/with"_s : u"/without"_s);
            QDir().mkpath(own);
            *path = Archives::makeCatalogue(own, 1, variables);
        }
        storeGraphs(with);
        // In processes of their own, before this one has opened anything.
        benchmark::RegisterBenchmark("memory", benchMemory)->Iterations(1)->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark("time", benchTime)->Iterations(1)->Unit(benchmark::kMillisecond);
    });
}
