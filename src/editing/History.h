#pragma once

#include "editing/HistoryStore.h"
#include "platform/dao/Database.h"

#include <functional>
#include <vector>

/// The edits of the open catalogue since it was opened, each of which can be taken back and done again, in their order.
/// It ends with the catalogue.
class History {
public:
    /// What an edit has written.
    struct Step {
        QString name;
        qint64 begin = 0, size = 0; ///< in the store
    };

    bool canUndo();
    bool canRedo();
    /// What would be taken back or done again, such as 'Löschen "…"'; empty for nothing.
    QString undoName();
    QString redoName();

    /// Takes the last edit back, or does it again, in one transaction, and has every open explorer show it. Where
    /// another program has changed one of its rows meanwhile nothing is written, and the user is told; the edit stays
    /// the next one.
    /// @return whether it was done; a failure has been reported
    bool undo() { return go(dao::ChangeWay::Back); }
    bool redo() { return go(dao::ChangeWay::Forth); }

    /// Forgets everything.
    void clear();

    /// Called whenever something else can be taken back or done again than before.
    std::function<void()> onChange;

    /// For who carries out edits: keeps what was recorded, before the commit. Nothing is in the history before add().
    /// @throws dao::Error 3026 no room
    Step keep(dao::ChangeRecorder& recorder, const QString& name);
    /// After the commit: what could be done again no longer can.
    void add(Step step);
    bool isInMemory() const { return store_.isInMemory(); }
    /// True while an edit is being written, taken back or done again: its progress gives event turns, in which no other
    /// may begin.
    bool isWriting = false;

private:
    std::vector<Step> steps_;
    size_t done_ = 0; ///< of them; the rest was taken back
    HistoryStore store_;
    std::weak_ptr<dao::Database> catalogue_;

    bool go(dao::ChangeWay way);
    const Step* next(dao::ChangeWay way);
    void settle();
};

/// The one of the process.
History& history();
