#include "Frame.h"

#include "Ratios.h"

#include "app/globals.h"
#include "catalogue/mdDataBase.h"
#include "config/Options.h"
#include "platform/dao/DBEngine.h"

#include <QCoreApplication>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>
#include <optional>

int runBenchmarks(int argc, char** argv, const std::function<void(const QString&)>& prepare) {
    std::optional<QCoreApplication> application;
    if (!QCoreApplication::instance())
        application.emplace(argc, argv);
    benchmark::Initialize(&argc, argv);
    const QTemporaryDir folder;
    gOptions = Options();
    gErrorTrapping = true;
    dao::DBEngine::instance().setDefinitionsInMemory(true);
    prepare(folder.path());
    benchmark::RunSpecifiedBenchmarks();
    mdDataBase::CloseDataBase();
    Ratios::report();
    return 0;
}
