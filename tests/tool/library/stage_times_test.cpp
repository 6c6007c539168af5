#include "library/stage_times.h"

#include <gtest/gtest.h>

namespace vkr::tool {

TEST(StageTimes, TakesOnlyLinesOfToc)
{
    StageTimes times;
    char szLine[128];
    std::snprintf(szLine, sizeof(szLine), "%-56s %6d ms", "==== ==== AlignImages Done", 12);
    EXPECT_TRUE(times.AddLine(szLine));
    std::snprintf(szLine, sizeof(szLine), "%-56s %6d ms", "====@@@@@ HDR  Process Done", 1234567);
    EXPECT_TRUE(times.AddLine(szLine));
    EXPECT_TRUE(times.AddLine("words without an end==== ==== ==== Inner      7 ms"));
    for (const char* pLine : {"", " ms", "12 ms", "took 12 s", "gamma=1.5 ms", "==== Stage -3 ms", "Total Levels=9"}) {
        EXPECT_FALSE(times.AddLine(pLine)) << pLine;
    }
    const auto vRows = times.Medians();
    ASSERT_EQ(3u, vRows.size());
    EXPECT_EQ("AlignImages Done", vRows[0].sName);
    EXPECT_EQ(2, vRows[0].nDepth);
    EXPECT_EQ(12, vRows[0].nMedianMs);
    EXPECT_EQ("HDR  Process Done", vRows[1].sName);
    EXPECT_EQ(1, vRows[1].nDepth);
    EXPECT_EQ(1234567, vRows[1].nMedianMs);
    EXPECT_EQ("Inner", vRows[2].sName);
    EXPECT_EQ(3, vRows[2].nDepth);
}

TEST(StageTimes, SumsWithinARunAndTakesTheMedianOverRuns)
{
    StageTimes times;
    for (const int nMs : {100, 5, 30}) {
        times.AddLine("Pair " + std::to_string(nMs) + " ms");
        times.AddLine("Pair 1 ms");
        times.EndRun();
    }
    ASSERT_EQ(1u, times.Medians().size());
    EXPECT_EQ(31, times.Medians()[0].nMedianMs);
}

TEST(Median, IsTheLowerMiddleOne)
{
    EXPECT_EQ(0, Median({}));
    EXPECT_EQ(4, Median({9, 4}));
    EXPECT_EQ(5, Median({9, 4, 5}));
}

}  // namespace vkr::tool
