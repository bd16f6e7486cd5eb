#include "CaseRuns.h"

#include "Archives.h"
#include "Ratios.h"
#include "SqliteDirect.h"

#include "analysis/AnalysisModel.h"
#include "catalogue/mdDataBase.h"
#include "platform/dao/DBEngine.h"

#include <QDir>
#include <QRegularExpression>
#include <algorithm>
#include <cstdio>
#include <ctime>

using namespace Qt::StringLiterals;

namespace {

QString folderOf(const QString& folder, int cases) {
    return folder + u"/%1"_s.arg(cases);
}

void run(AnalysisModel& model, const CaseRuns::Choose& choose) {
    model.open();
    model.edit().StudyClick(u"B1"_s);
    choose(model);
    if (model.changeTab(1) != RunOutcome::Computed)
        qFatal("the run did not compute");
}

/// The statements of a run as SQLite gets them. @param start of those that are wanted, as the engine is given them
QStringList statementsOf(const CaseRuns::Choose& choose, const QString& start = {}) {
    QStringList statements;
    dao::DBEngine::instance().setTrace([&](const QString& jet, const QString& sqlite) {
        if (jet.startsWith(start))
            statements << sqlite;
    });
    AnalysisModel model;
    run(model, choose);
    dao::DBEngine::instance().setTrace({});
    return statements;
}

/// The alias by which the statements name the linked case file.
QString aliasIn(const QStringList& statements) {
    static const QRegularExpression name(u"\"([^\"]+)\"\\.\"B1_[12]\""_s);
    for (const QString& statement : statements)
        if (const auto match = name.match(statement); match.hasMatch())
            return match.captured(1);
    qFatal("no statement names the case table");
}

} // namespace

void CaseRuns::open(const QString& folder, int cases) {
    const QString own = folderOf(folder, cases);
    QString catalogue = own + u"/cases.mdb"_s;
    mdDataBase::CloseDataBase();
    if (!QDir(own).exists()) {
        QDir().mkpath(own);
        catalogue = Archives::makeCases(own, cases);
    }
    if (mdDataBase::OpenQXDatabase(catalogue) != 1)
        qFatal("the catalogue did not open");
}

double CaseRuns::time(const Choose& choose) {
    return seconds([&] {
        AnalysisModel model;
        run(model, choose);
    });
}

/// Processor time of a run in seconds: what else goes on on the machine doesn't count in it.
static double processorTime(const CaseRuns::Choose& choose) {
    const std::clock_t start = std::clock();
    CaseRuns::time(choose);
    return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

void CaseRuns::compareWithStatements(const QString& name, double limit, const QString& folder, int cases,
                                     const Choose& choose) {
    compareWithReading(name, limit, folder, cases, choose, {}, [] { return 0.0; });
}

void CaseRuns::compareWithReading(const QString& name, double limit, const QString& folder, int cases,
                                  const Choose& choose, const QString& start, const std::function<double()>& more) {
    const QStringList statements = statementsOf(choose, start);
    const QString own = folderOf(folder, cases);
    SqliteDirect direct(own + u"/cases.mdb"_s, {{aliasIn(statements), own + u"/B1.mdb"_s}});
    Ratios::measure(
        name, 7, limit, [&] { return time(choose); },
        [&] {
            return more() + seconds([&] {
                       for (const QString& statement : statements)
                           direct.run(statement);
                   });
        });
}

void CaseRuns::growth(const QString& name, const QString& folder, bool large, const Choose& choose) {
    std::vector<int> sizes{10'000, 100'000, 1'000'000};
    if (large)
        sizes.push_back(10'000'000);
    std::vector<double> each;
    for (const int cases : sizes) {
        open(folder, cases);
        time(choose);
        const double best = std::min({processorTime(choose), processorTime(choose), processorTime(choose)});
        each.push_back(best / cases);
        std::printf("%s of %9d cases: %8.3f s, %.3f microseconds a case\n", qPrintable(name), cases, best,
                    1e6 * each.back());
    }
    Ratios::note(name + u": a case among 1e6 over one among 1e5"_s, each[2] / each[1], 1.3);
}

bool wantsLarge(int argc, char** argv) {
    return std::any_of(argv + 1, argv + argc, [](const char* argument) { return QByteArray(argument) == "--large"; });
}
