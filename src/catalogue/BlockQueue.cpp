#include "catalogue/BlockQueue.h"

#include <utility>

namespace {

constexpr size_t mostBlocks = 8;

} // namespace

void BlockQueue::put(size_t table, dao::RowBlock& rows) {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return stopped_ || full_.size() < mostBlocks; });
    if (stopped_)
        throw Stopped();
    std::vector<dao::RowBlock>& spare = spare_[table];
    dao::RowBlock next = spare.empty() ? rows.another() : std::move(spare.back());
    if (!spare.empty())
        spare.pop_back();
    full_.push_back({table, std::exchange(rows, std::move(next)), share_});
    changed_.notify_all();
    lock.unlock();
    rows.clear(); // here, since the writer is mostly the one who is behind
}

void BlockQueue::finish() {
    const std::lock_guard lock(mutex_);
    finished_ = true;
    changed_.notify_all();
}

void BlockQueue::stop() {
    const std::lock_guard lock(mutex_);
    stopped_ = true;
    changed_.notify_all();
}

void BlockQueue::passOn(const Write& write, const std::function<void(double)>& progress) {
    std::unique_lock lock(mutex_);
    for (;;) {
        changed_.wait(lock, [this] { return finished_ || !full_.empty(); });
        if (full_.empty())
            return;
        Item item = std::move(full_.front());
        full_.pop_front();
        changed_.notify_all();
        lock.unlock();
        write(item.table, item.rows);
        progress(item.share);
        lock.lock();
        spare_[item.table].push_back(std::move(item.rows));
    }
}
