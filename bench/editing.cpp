// Edits of a catalogue of 1,000 studies with 500 variables each and a view of 1,000 categories, with an explorer open
// on both: moving and copying a subtree, dropping variables, deleting a study; each against the time that it may take
// on an idle machine, copying against the bare INSERTs too, and undo against the operation.

#include "Archives.h"
#include "Frame.h"
#include "Ratios.h"

#include "app/globals.h"
#include "catalogue/CDaoDatabase.h"
#include "catalogue/mdDataBase.h"
#include "config/Options.h"
#include "editing/Drop.h"
#include "editing/Entries.h"
#include "editing/History.h"
#include "platform/dao/Functions.h"
#include "platform/dao/Transaction.h"
#include "platform/ui/CollectingAsker.h"

#include <QFile>
#include <algorithm>
#include <benchmark/benchmark.h>
#include <sqlite3.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int subtree = 1000, assignmentsEach = 20, dropped = 5000, rounds = 5;
QString path;

/// Says yes to everything.
class Willing : public ui::CollectingAsker {
public:
    ui::Answer messageBox(const ui::Box& box) override {
        return box.buttons == ui::Buttons::YesNo ? ui::Answer::Yes : ui::Answer::Ok;
    }
};

/// Below category 1000 stand 999 others, ten below each.
void addCategories() {
    const dao::DatabasePtr catalogue = dao::DBEngine::instance().Workspaces(0).OpenDatabase(path);
    const auto entries = catalogue->openAppender(
        u"tkey_Topic"_s, {u"id"_s, u"fid"_s, u"Order"_s, u"dt_IndicatorName"_s, u"dt_IndicatorDescription"_s});
    const auto rows = catalogue->openAppender(u"trel_VariableTopic"_s, {u"fid"_s, u"fi_StudyNo"_s, u"fi_VariableNo"_s});
    dao::Transaction transaction;
    for (int i = 0; i < subtree; ++i) {
        entries->setNumber(0, 1000 + i);
        entries->setNumber(1, i == 0 ? 0 : 1000 + (i - 1) / 10);
        entries->setNumber(2, 10 + i % 10);
        entries->setText(3, u"Entry %1"_s.arg(i));
        entries->setText(4, u"What the entry is about, in a few words"_s);
        entries->appendRow();
        for (int v = 1; v <= assignmentsEach; ++v) {
            rows->setNumber(0, 1000 + i);
            rows->setText(1, u"S%1"_s.arg(1 + i % 1000, 4, 10, QLatin1Char('0')));
            rows->setText(2, u"V%1"_s.arg(v));
            rows->appendRow();
        }
    }
    transaction.commit();
    catalogue->Close();
}

struct World {
    Willing asker;
    ui::Asker* before = ui::setAsker(&asker);
    ExplorerModel topics, studies;

    World() {
        if (mdDataBase::OpenQXDatabase(path) != 1)
            qFatal("the catalogue did not open");
        gOptions.EditStudiesMode = true;
        topics.open(2);
        studies.open(1);
    }
    ~World() {
        mdDataBase::CloseDataBase();
        ui::setAsker(before);
    }
};

double medianOf(std::vector<double> times) {
    std::sort(times.begin(), times.end());
    return times[times.size() / 2];
}

/// Measures an operation and taking it back, in turn.
double measure(const QString& name, double allowed, const std::function<void()>& prepare,
               const std::function<bool()>& operation) {
    std::vector<double> times, undos;
    for (int round = 0; round <= rounds; ++round) {
        prepare();
        bool done = false;
        const double time = seconds([&] { done = operation(); });
        const double back = seconds([&] { done = done && history().undo(); });
        if (!done)
            qFatal("%s was not done", qPrintable(name));
        if (round == 0)
            continue;
        times.push_back(time);
        undos.push_back(back);
    }
    Ratios::note(name + u" (%1 ms), against %2 ms"_s.arg(medianOf(times) * 1000, 0, 'f', 1).arg(allowed * 1000),
                 medianOf(times) / allowed, 1);
    Ratios::note(u"undo of "_s + name + u" (%1 ms), against doing it"_s.arg(medianOf(undos) * 1000, 0, 'f', 1),
                 medianOf(undos) / medianOf(times), 1);
    return medianOf(times);
}

bool dropSubtree(World& world, TransferMode mode) {
    const auto source = DropSource::entry(world.topics.tree, u"B1000"_s, false);
    return source && drop(*source, DropTarget::in(world.topics, u"B2"_s, false), mode);
}

/// The same rows by SQLite alone, with the engine's settings.
double bareInserts() {
    const QString copy = path + u".copy"_s;
    QFile::remove(copy);
    QFile::copy(path, copy);
    sqlite3* file = nullptr;
    sqlite3_open(copy.toUtf8().constData(), &file);
    dao::registerFunctions(file);
    const auto run = [&](const char* sql) {
        if (sqlite3_exec(file, sql, nullptr, nullptr, nullptr) != SQLITE_OK)
            qFatal("%s", sqlite3_errmsg(file));
    };
    run("PRAGMA synchronous=FULL");
    sqlite3_stmt *entry = nullptr, *row = nullptr;
    sqlite3_prepare_v2(file,
                       "INSERT INTO tkey_Topic (fid, \"Order\", dt_IndicatorName, dt_IndicatorDescription) VALUES "
                       "(2, ?, ?, 'What the entry is about, in a few words')",
                       -1, &entry, nullptr);
    sqlite3_prepare_v2(file, "INSERT INTO trel_VariableTopic (fid, fi_StudyNo, fi_VariableNo) VALUES (?, ?, ?)", -1,
                       &row, nullptr);
    const double time = seconds([&] {
        run("BEGIN");
        for (int i = 0; i < subtree; ++i) {
            sqlite3_bind_int(entry, 1, i);
            sqlite3_bind_text(entry, 2, "Entry 1", -1, SQLITE_STATIC);
            sqlite3_step(entry);
            sqlite3_reset(entry);
            const sqlite3_int64 id = sqlite3_last_insert_rowid(file);
            for (int v = 1; v <= assignmentsEach; ++v) {
                const QByteArray study = QByteArray("S") + QByteArray::number(1 + i),
                                 name = "V" + QByteArray::number(v);
                sqlite3_bind_int64(row, 1, id);
                sqlite3_bind_text(row, 2, study.constData(), -1, SQLITE_TRANSIENT);
                sqlite3_bind_text(row, 3, name.constData(), -1, SQLITE_TRANSIENT);
                sqlite3_step(row);
                sqlite3_reset(row);
            }
        }
        run("COMMIT");
    });
    sqlite3_finalize(entry);
    sqlite3_finalize(row);
    sqlite3_close(file);
    QFile::remove(copy);
    return time;
}

void benchMove(benchmark::State& state) {
    World world;
    for (auto _ : state)
        measure(
            u"moving a subtree of 1,000"_s, 0.03, [] {}, [&] { return dropSubtree(world, TransferMode::Move); });
}

void benchCopy(benchmark::State& state) {
    World world;
    for (auto _ : state) {
        const double ours = measure(
            u"copying it with 20,000 assignments"_s, 0.6, [] {},
            [&] { return dropSubtree(world, TransferMode::Copy); });
        std::vector<double> bare;
        for (int round = 0; round < rounds; ++round)
            bare.push_back(bareInserts());
        Ratios::note(u"copying it, against the bare INSERTs"_s, ours / medianOf(bare), 5);
    }
}

void benchDrop(benchmark::State& state) {
    World world;
    std::vector<int> rows(dropped);
    for (int i = 0; i < dropped; ++i)
        rows[static_cast<size_t>(i)] = i * 10;
    for (auto _ : state)
        for (const TransferMode mode : {TransferMode::Copy, TransferMode::Move})
            measure(
                mode == TransferMode::Copy ? u"copying 5,000 of 50,000 variables"_s
                                           : u"moving 5,000 of 50,000 variables"_s,
                0.4, [&] { world.topics.select(u"B1"_s, true); },
                [&] {
                    const auto source = DropSource::rows(world.topics, rows);
                    return source && drop(*source, DropTarget::in(world.topics, u"B2"_s, false), mode);
                });
}

void benchDelete(benchmark::State& state) {
    World world;
    for (auto _ : state)
        measure(
            u"deleting a study of 500 variables"_s, 0.06, [&] { world.studies.select(u"AS0500"_s, true); },
            [&] { return deleteEntry(world.studies); });
}

} // namespace

int main(int argc, char** argv) {
    return runBenchmarks(argc, argv, [](const QString& folder) {
        path = Archives::makeCatalogue(folder, 1000, 500);
        addCategories();
        benchmark::RegisterBenchmark("move", benchMove)->Iterations(1)->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark("copy", benchCopy)->Iterations(1)->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark("drop", benchDrop)->Iterations(1)->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark("delete", benchDelete)->Iterations(1)->Unit(benchmark::kMillisecond);
    });
}
