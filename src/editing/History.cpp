#include "editing/History.h"

#include "app/globals.h"
#include "catalogue/CDaoDatabase.h"
#include "diagnostics/errors.h"
#include "editing/EditRun.h"
#include "editing/changedEntries.h"
#include "platform/dao/Transaction.h"
#include "platform/ui/Asker.h"

#include <QScopedValueRollback>

using namespace Qt::StringLiterals;

History& history() {
    // Never destroyed: what it holds of the open catalogue ends with the process.
    static auto* const one = new History;
    return *one;
}

/// What was done in another catalogue is over.
void History::settle() {
    const dao::DatabasePtr known = catalogue_.lock();
    // Nobody may have held on to one that was closed: then nothing is known, and nothing is open.
    if (known && known == gDatabase.CurrentDatabase() && known->isOpen())
        return;
    clear();
    catalogue_ = gDatabase.CurrentDatabase();
}

const History::Step* History::next(dao::ChangeWay way) {
    settle();
    if (way == dao::ChangeWay::Back)
        return done_ > 0 ? &steps_[done_ - 1] : nullptr;
    return done_ < steps_.size() ? &steps_[done_] : nullptr;
}

bool History::canUndo() {
    return next(dao::ChangeWay::Back) != nullptr;
}

bool History::canRedo() {
    return next(dao::ChangeWay::Forth) != nullptr;
}

QString History::undoName() {
    const Step* const step = next(dao::ChangeWay::Back);
    return step ? step->name : QString();
}

QString History::redoName() {
    const Step* const step = next(dao::ChangeWay::Forth);
    return step ? step->name : QString();
}

void History::clear() {
    const bool had = !steps_.empty();
    steps_.clear();
    done_ = 0;
    store_.truncate(0);
    if (had && onChange)
        onChange();
}

History::Step History::keep(dao::ChangeRecorder& recorder, const QString& name) {
    settle();
    // What an edit has left that failed afterwards.
    store_.truncate(steps_.empty() ? 0 : steps_.back().begin + steps_.back().size);
    const dao::ChangeSet changes = recorder.take(store_);
    return {name, changes.begin, changes.size};
}

void History::add(Step step) {
    if (step.size == 0)
        return; // everything is as it was
    steps_.resize(done_);
    const qint64 end = steps_.empty() ? 0 : steps_.back().begin + steps_.back().size;
    if (step.begin > end && store_.moveDown(step.begin, step.size, end))
        step.begin = end;
    store_.truncate(step.begin + step.size);
    steps_.push_back(std::move(step));
    ++done_;
    if (onChange)
        onChange();
}

bool History::go(dao::ChangeWay way) {
    const Step* const step = next(way);
    if (isWriting || !step || !mayEdit())
        return false;
    const QScopedValueRollback writing(isWriting, true);
    const ui::WaitPointer wait;
    const BusyScope busy;
    const bool back = way == dao::ChangeWay::Back;
    CatalogueChanges changes;
    std::optional<dao::Error> conflict;
    const bool finished = attempt([&] {
        dao::Transaction transaction;
        ChangedEntries entries;
        try {
            gDatabase.CurrentDatabase()->apply({&store_, step->begin, step->size}, way,
                                               [&](const dao::ChangedRow& row) { entries.add(row); });
            entries.requireWhole();
        } catch (const dao::Error& error) {
            constexpr int changedByOther = 3197;
            if (error.number() != changedByOther)
                throw;
            conflict = error;
            dao::errorList().clear();
            return;
        }
        changes = entries.changes();
        transaction.commit();
    });
    if (conflict) {
        ui::asker().messageBox(
            {.text = TranslateText(back ? u"Rückgängig machen ist nicht möglich: Ein anderes Programm hat inzwischen "
                                          "geändert, was zurückzunehmen wäre. Es wurde nichts geschrieben."_s
                                        : u"Wiederherstellen ist nicht möglich: Ein anderes Programm hat inzwischen "
                                          "geändert, was zu schreiben wäre. Es wurde nichts geschrieben."_s),
             .icon = ui::Icon::Exclamation,
             .details = conflict->description()});
        refreshExplorers();
        return false;
    }
    if (!finished)
        return false;
    done_ = back ? done_ - 1 : done_ + 1;
    attempt([&] { announce(changes); }); // what cannot be shown is written all the same
    if (onChange)
        onChange();
    return true;
}
