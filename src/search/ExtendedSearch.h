#pragma once

#include "platform/dao/Recordset.h"
#include "search/EntryWays.h"
#include "search/HitList.h"
#include "search/SearchRequest.h"

#include <QHash>
#include <functional>
#include <optional>

namespace dao {
class Error;
}

/// A search of the whole catalogue in slices: who drives it calls goOn() until it answers false, a window from its
/// event loop, a command in a row. Between two slices nothing of the engine is in use, so the catalogue may be changed
/// or closed there; the rows that a statement has found stay as it found them.
class ExtendedSearch {
public:
    enum class State { Idle, Running, Done, Stopped, Failed };

    /// Called every few milliseconds while a statement runs.
    std::function<void()> onStatement;

    ExtendedSearch() = default;
    ~ExtendedSearch();
    ExtendedSearch(const ExtendedSearch&) = delete;
    ExtendedSearch& operator=(const ExtendedSearch&) = delete;

    /// Begins anew, the hits and the status emptied. @param request without a fault
    void begin(const SearchRequest& request);
    /// Works for some ten milliseconds, or as long as a statement takes. Failures are reported and end the search.
    /// @return true while there is more to do
    bool goOn();
    /// Has the search end at its next row, and in the middle of a statement.
    void stop() { bContinueSearch_ = false; }
    /// Ends it at once; not while goOn() is under way.
    void abandon();

    State state() const { return state_; }
    bool isRunning() const { return state_ == State::Running; }
    /// Whether goOn() would run a statement next.
    bool isAtStatement() const { return isRunning() && !rows_; }
    const SearchRequest& request() const { return request_; }
    const HitList& hits() const { return hits_; }
    /// What the status panel says: counts of the passes that are through, and how the search has ended.
    const QString& status() const { return status_; }
    /// Why its statement was most likely refused; empty for any other end, or if nothing in the terms explains it.
    const QString& hint() const { return hint_; }

private:
    SearchRequest request_;
    std::vector<SearchPass> passes_;
    size_t pass_ = 0;
    dao::RecordsetPtr rows_; ///< of the pass under way
    std::vector<int> texts_; ///< its columns that a variable's hit lists
    std::weak_ptr<dao::Database> catalogue_;
    HitList hits_;
    std::optional<EntryWays> ways_;
    struct Study {
        int view; ///< 0 if none holds it
        int way;  ///< of its variables
    };
    QHash<QString, Study> studies_;
    QString status_, hint_;
    State state_ = State::Idle;
    bool bContinueSearch_ = false;

    void work();
    void open();
    dao::RecordsetPtr run(const QString& statement, const QStringList& columns);
    void takeRow();
    void takeVariable();
    Study studyOf(const QString& number);
    void endPass();
    void end(State state);
    void fail(const dao::Error& error);
};
