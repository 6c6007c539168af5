#include "foundation/parallel_rows.h"

#include <gtest/gtest.h>

#include <array>
#include <atomic>

#include "support/for_threads.h"

namespace vkr {
namespace {

TEST(ParallelRows, BlocksAreContiguousAndTheFirstOnesLonger)
{
    for (int nRows = 0; nRows <= 23; ++nRows) {
        int nNext = 0;
        for (int i = 0; i < 5; ++i) {
            const RowBlock block = SplitRows(nRows, 5, i);
            EXPECT_EQ(block.nBegin, nNext);
            EXPECT_EQ(block.nEnd - block.nBegin, nRows / 5 + (i < nRows % 5 ? 1 : 0));
            EXPECT_EQ(block.nIndex, i);
            nNext = block.nEnd;
        }
        EXPECT_EQ(nNext, nRows);
    }
}

TEST(ParallelRows, EveryRowOnceInBlocksThatAreNotEmpty)
{
    ForThreads([](int nThreads) {
        EXPECT_EQ(MaxTeam(), nThreads);
        for (const int nRows : {-1, 0, 1, 2, 4, 5, 6, 23}) {
            std::array<std::atomic<int>, 23> vVisits{};
            std::atomic<int> nBlocks{0};
            ParallelRows(nRows, [&](RowBlock rows) {
                ++nBlocks;
                if (rows.nBegin >= rows.nEnd || rows.nIndex >= nThreads) nBlocks += 1000;
                for (int y = rows.nBegin; y < rows.nEnd; ++y) ++vVisits[static_cast<size_t>(y)];
            });
            EXPECT_LE(nBlocks, nThreads);
            for (int y = 0; y < 23; ++y) EXPECT_EQ(vVisits[static_cast<size_t>(y)], y < nRows ? 1 : 0) << y;
        }
    });
}

TEST(ParallelRows, NestedIsOneBlock)
{
    ForThreads([](int nThreads) {
        std::atomic<int> nItems{0}, nBlocks{0}, nWrong{0};
        ParallelItems(7, [&](int) {
            ++nItems;
            if (MaxTeam() != 1) ++nWrong;
            ParallelRows(10, [&](RowBlock rows) {
                ++nBlocks;
                if (rows.nBegin != 0 || rows.nEnd != 10 || rows.nIndex != 0) ++nWrong;
            });
        });
        EXPECT_EQ(nItems, 7) << nThreads;
        EXPECT_EQ(nBlocks, 7);
        EXPECT_EQ(nWrong, 0);
    });
}

}  // namespace
}  // namespace vkr
