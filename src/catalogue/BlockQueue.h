#pragma once

#include "platform/dao/RowBlock.h"

#include <condition_variable>
#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <vector>

/// Hands blocks of rows from the thread that reads a survey file to the one that writes them into the case
/// tables. Where the writer is behind, the reader waits: memory doesn't grow with the number of cases.
class BlockQueue {
public:
    /// What the reader hears when nobody wants its rows any more.
    struct Stopped {};

    // The reader's side.
    /// Takes the rows for a table, by its index, and leaves an empty block instead. @throws Stopped
    void put(size_t table, dao::RowBlock& rows);
    /// Share of the file read so far; goes to the writer with the rows up to there.
    void report(double share) { share_ = share; }
    /// No rows follow.
    void finish();

    // The writer's side.
    using Write = std::function<void(size_t table, const dao::RowBlock& rows)>;
    /// Passes on all blocks until the reader has finished, and the share done after each.
    void passOn(const Write& write, const std::function<void(double)>& progress);
    /// Ends the reader at its next block.
    void stop();

private:
    struct Item {
        size_t table;
        dao::RowBlock rows;
        double share;
    };
    double share_ = 0; ///< the reader's own
    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<Item> full_;
    std::map<size_t, std::vector<dao::RowBlock>> spare_; ///< written blocks by table
    bool finished_ = false, stopped_ = false;
};
