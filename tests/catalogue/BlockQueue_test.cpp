#include "catalogue/BlockQueue.h"

#include <gtest/gtest.h>
#include <thread>

using Column = dao::RowBlock::Column;

namespace {

constexpr size_t tables = 2;
constexpr int blocks = 100; // more than wait at a time

dao::RowBlock oneColumn() {
    return dao::RowBlock({Column::Number});
}

/// Puts blocks of 1, 2, 3, ... rows, to each table in turn.
void putBlocks(BlockQueue& queue) {
    std::vector<dao::RowBlock> rows(tables, oneColumn());
    for (int block = 0; block < blocks; ++block) {
        for (int row = 0; row <= block; ++row) {
            rows[block % tables].setNumber(0, row);
            rows[block % tables].endRow();
        }
        queue.report(double(block) / blocks);
        queue.put(block % tables, rows[block % tables]);
        EXPECT_EQ(rows[block % tables].rows(), 0);
    }
}

} // namespace

TEST(BlockQueue, PassesEveryBlockOnInOrderWithTheShareThatBelongsToIt) {
    BlockQueue queue;
    std::thread reader([&] {
        putBlocks(queue);
        queue.finish();
    });
    int block = 0, reports = 0;
    queue.passOn(
        [&](size_t table, const dao::RowBlock& rows) {
            EXPECT_EQ(table, block % tables);
            EXPECT_EQ(rows.rows(), ++block);
        },
        [&](double share) { EXPECT_EQ(share, double(reports++) / blocks); });
    reader.join();
    EXPECT_EQ(block, blocks);
    EXPECT_EQ(reports, blocks);
}

TEST(BlockQueue, EndsAReaderWhoseRowsNobodyWantsAnyMore) {
    for (const int failing : {0, 1, 20}) {
        BlockQueue queue;
        bool stopped = false;
        std::thread reader([&] {
            try {
                putBlocks(queue);
            } catch (const BlockQueue::Stopped&) {
                stopped = true;
            }
            queue.finish();
        });
        int block = 0;
        EXPECT_THROW(queue.passOn(
                         [&](size_t, const dao::RowBlock&) {
                             if (block++ == failing)
                                 throw 1;
                         },
                         [](double) {}),
                     int);
        queue.stop();
        reader.join();
        EXPECT_TRUE(stopped) << failing;
    }
}
