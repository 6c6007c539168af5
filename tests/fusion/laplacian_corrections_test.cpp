#include "fusion/laplacian_corrections.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

#include "support/random_image.h"

namespace vkr {

namespace {

// A run of nCount random pixels, as SubtractUp leaves it.
void FillRun(std::mt19937& rng, int nCount, LaplacianRun& run)
{
    const auto vLevel = RandomRow<uint8_t>(rng, 3 * static_cast<size_t>(nCount), 0, 255);
    const auto vUp = RandomRow<uint8_t>(rng, 3 * static_cast<size_t>(nCount), 0, 255);
    SubtractUp(vLevel.data(), vUp.data(), nCount, run);
}

// Calls fn(c, x) for every sample.
template <class Fn>
void ForSamples(int nCount, const Fn& fn)
{
    for (int c = 0; c < 3; ++c) {
        for (int x = 0; x < nCount; ++x) fn(c, x);
    }
}

}  // namespace

TEST(FillSharpenTable, FollowsTheNodesAndEndsFlat)
{
    SharpenTable table;
    FillSharpenTable(table, FusionParams{});
    EXPECT_EQ(32, table.vGains[0]);
    EXPECT_EQ(32, table.vGains[16]);
    EXPECT_EQ(31, table.vGains[24]);  // 32 - 8 * 3 / 16 truncated
    EXPECT_EQ(29, table.vGains[32]);
    EXPECT_EQ(16, table.vGains[128]);
    EXPECT_EQ(16, table.vGains[511]);
}

TEST(FillDetailGains, ScalesByTheStrengthOfTheLevel)
{
    FusionParams params;
    SharpenTable table;
    DetailGains gains;
    FillSharpenTable(table, params);
    ASSERT_TRUE(FillDetailGains(gains, table, 0, params));
    EXPECT_EQ(32, gains.vByLuma[10]);
    ASSERT_TRUE(FillDetailGains(gains, table, 2, params));
    EXPECT_EQ(28, gains.vByLuma[10]);  // 16 + 12 * 16 / 16
    EXPECT_EQ(16, gains.vByLuma[200]);
    EXPECT_FALSE(FillDetailGains(gains, table, 6, params));
    EXPECT_FALSE(FillDetailGains(gains, table, 8, params));
    EXPECT_FALSE(FillDetailGains(gains, table, 15, params));

    std::fill_n(params.nSharpenYWList, 8, 1);  // (2 * (1 - 16)) >> 4 = -2, not -1
    params.nLevelSharpen[0] = 2;
    FillSharpenTable(table, params);
    ASSERT_TRUE(FillDetailGains(gains, table, 0, params));
    EXPECT_EQ(14, gains.vByLuma[0]);
    params.bShadowDetailEnhanceEnable = 0;
    EXPECT_FALSE(FillDetailGains(gains, table, 0, params));
}

TEST(FillHighlightGains, StartsAtOneAndBendsAtTheThreshold)
{
    HighlightGains gains;
    FusionParams params;
    FillHighlightGains(gains, 0, params);
    EXPECT_EQ(224, gains.nLowest);
    EXPECT_EQ(65536, gains.vBySmallest[224]);
    // (31 * 64 / 32 + 224) * 65536 / 255 = 286 * 65536 / 255
    EXPECT_EQ(73503, gains.vBySmallest[255]);
    params.nExtendHLSatuThre[7] = 100;
    FillHighlightGains(gains, 15, params);  // beyond the lists: the last entry
    EXPECT_EQ(100, gains.nLowest);
    params.nExtendHLSatuThre[7] = 0;
    params.nExtendHLSlope[7] = 1024;
    FillHighlightGains(gains, 7, params);
    EXPECT_EQ(0, gains.vBySmallest[0]);
    EXPECT_EQ(4 * 65536, gains.vBySmallest[255]);
}

TEST(ApplyExtendHL, LiftsBrightPixelsAloneAndFloors)
{
    HighlightGains gains;
    FillHighlightGains(gains, 0, FusionParams{});
    std::mt19937 rng(5);
    LaplacianRun run, before;
    ASSERT_NO_FATAL_FAILURE(FillRun(rng, kRunPixels, run));
    for (int x = 0; x < kRunPixels; ++x) {
        for (int c = 0; c < 3; ++c) run.vUp[c][x] = static_cast<uint8_t>(c == x % 3 ? 200 + x % 56 : 255);
    }
    before = run;
    ApplyExtendHL(gains, run);
    ForSamples(kRunPixels, [&](int c, int x) {
        const int m = 200 + x % 56, nBefore = before.vDetail[c][x];
        const int nLifted = ((m - 224) * 64 / 32 + 224) * 65536 / m * nBefore;
        const int nFloor = nLifted >= 0 ? nLifted / 65536 : -((-nLifted + 65535) / 65536);
        ASSERT_EQ(m < 224 ? nBefore : nFloor, run.vDetail[c][x]) << m;
    });
    gains.nLowest = 0;  // from black on, where the gain is 0
    gains.vBySmallest[0] = 0;
    run.vUp[0][0] = 0;
    ApplyExtendHL(gains, run);
    EXPECT_EQ(0, run.vDetail[1][0]);
}

}  // namespace vkr
