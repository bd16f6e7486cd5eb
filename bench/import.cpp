// Import of a survey file against what ReadStat alone takes to read it, and the memory of small and large
// imports.

#include "Archives.h"
#include "Frame.h"
#include "Ratios.h"

#include "catalogue/CatalogueImport.h"

#include <QFile>
#include <benchmark/benchmark.h>
#include <readstat.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

QString folder;
volatile double sink;

void readAlone(const QString& file) {
    readstat_parser_t* parser = readstat_parser_init();
    readstat_set_metadata_handler(parser,
                                  [](readstat_metadata_t*, void*) { return static_cast<int>(READSTAT_HANDLER_OK); });
    readstat_set_variable_handler(
        parser, [](int, readstat_variable_t*, const char*, void*) { return static_cast<int>(READSTAT_HANDLER_OK); });
    readstat_set_value_handler(parser, [](int, readstat_variable_t*, readstat_value_t value, void*) {
        sink = readstat_value_type(value) == READSTAT_TYPE_STRING ? 0 : value.v.double_value;
        return static_cast<int>(READSTAT_HANDLER_OK);
    });
    if (readstat_parse_sav(parser, file.toUtf8().constData(), nullptr) != READSTAT_OK)
        qFatal("ReadStat did not read the file");
    readstat_parser_free(parser);
}

/// Removes what the import before has made; that takes the system long enough to matter.
void clearAway() {
    for (const QString& name : {u"/import.mdb"_s, u"/I1.mdb"_s})
        QFile::remove(folder + name);
}

void import(const QString& file) {
    ImportRequest request;
    request.catalogue = folder + u"/import.mdb"_s;
    request.file = file;
    request.settings.study = u"I1"_s;
    importSurvey(request);
}

void benchImport(benchmark::State& state, bool compressed) {
    const QString file = Archives::makeSurveyFile(folder, 100'000, 40, compressed);
    const QString name =
        compressed ? u"import of 100,000 x 40 values, compressed"_s : u"import of 100,000 x 40 values"_s;
    for (auto _ : state)
        Ratios::measure(
            name, 7, 3,
            [&] {
                clearAway();
                return seconds([&] { import(file); });
            },
            [&] { return seconds([&] { readAlone(file); }); });
}

/// Peak memory of an import in a process of its own, in KiB.
long peakMemory(int cases) {
    const QString file = Archives::makeSurveyFile(folder, cases, 40);
    clearAway();
    const pid_t child = fork();
    if (child == 0) {
        import(file);
        _exit(0);
    }
    rusage usage{};
    int status = 0;
    wait4(child, &status, 0, &usage);
    if (status != 0)
        qFatal("the import failed");
    return usage.ru_maxrss;
}

void benchMemory(benchmark::State& state) {
    for (auto _ : state) {
        const long small = peakMemory(50'000);
        const long large = peakMemory(400'000);
        Ratios::note(u"peak memory, 400,000 over 50,000 cases"_s,
                     static_cast<double>(large) / static_cast<double>(small), 1.1);
    }
}

} // namespace

int main(int argc, char** argv) {
    return runBenchmarks(argc, argv, [](const QString& temporary) {
        folder = temporary;
        // Memory first: a child begins with what this process has used so far.
        benchmark::RegisterBenchmark("memory", benchMemory)->Iterations(1)->Unit(benchmark::kMillisecond);
        for (const bool compressed : {false, true})
            benchmark::RegisterBenchmark("import",
                                         [compressed](benchmark::State& state) { benchImport(state, compressed); })
                ->Iterations(1)
                ->Unit(benchmark::kMillisecond);
    });
}
