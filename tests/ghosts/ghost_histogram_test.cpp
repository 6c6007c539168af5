#include "ghosts/ghost_histogram.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "support/random_image.h"

namespace vkr {

TEST(BuildMaskHist_Integral, CountsWhatTheMaskCoversWhateverItsSize)
{
    TestImage frame, mask, none;
    FillConstant(frame, 4, 3, 3, 10);
    frame.Row(0)[0] = 5;   // blue of the first pixel
    frame.Row(1)[10] = 9;  // green of one that is not covered
    FillConstant(mask, 9, 2, 1, 1);
    mask.Row(1)[3] = 0;
    GhostShares shares;
    BuildMaskHist_Integral(frame, mask, shares);
    EXPECT_EQ(0.0f, shares.vShares[0][4]);
    EXPECT_EQ(1.0f / 7.0f, shares.vShares[0][5]);
    EXPECT_EQ(0.0f, shares.vShares[1][9]);
    for (const auto& vChannel : shares.vShares) EXPECT_EQ(1.0f, vChannel[10]);
    BuildMaskHist_Integral(frame, none, shares);
    for (const auto& vChannel : shares.vShares) EXPECT_EQ(256, std::count(vChannel, vChannel + 256, 0.0f));
}

TEST(MatchHistogram, TakesTheLowestOfTheNearest)
{
    // Half at 10 and half at 20 become a half at 40 and a half at 80: what stands between goes with the next, what
    // stands above 20 is reached by nothing.
    float vFrom[256], vTo[256];
    for (int v = 0; v < 256; ++v) {
        vFrom[v] = v < 10 ? 0.0f : (v < 20 ? 0.5f : 1.0f);
        vTo[v] = v < 40 ? 0.0f : (v < 80 ? 0.5f : 1.0f);
    }
    uint8_t vTable[256];
    MatchHistogram(vFrom, vTo, vTable);
    const std::pair<int, int> vWant[] = {{0, 0}, {1, 40}, {10, 40}, {11, 80}, {20, 80}, {21, 0}, {255, 0}};
    for (const auto& [v, nMatch] : vWant) EXPECT_EQ(nMatch, vTable[v]) << v;

    vTo[39] = 0.25f;  // as near to 0 as to a half
    MatchHistogram(vFrom, vTo, vTable);
    EXPECT_EQ(40, vTable[10]);
    std::fill_n(vFrom, 256, 0.0f);
    std::fill_n(vTo, 256, 0.0f);
    MatchHistogram(vFrom, vTo, vTable);
    EXPECT_EQ(256, std::count(vTable, vTable + 256, 0));
}

}  // namespace vkr
