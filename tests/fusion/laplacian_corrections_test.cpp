#include "fusion/laplacian_corrections.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

#include "fusion/fusion_defaults.h"
#include "support/random_image.h"
#include "support/simd_targets.h"

namespace vkr {

namespace {

// A run of nCount random pixels, as SubtractUp leaves it.
void FillRun(std::mt19937& rng, int nCount, LaplacianRun& run)
{
    const auto vLevel = RandomRow<uint8_t>(rng, 3 * static_cast<size_t>(nCount), 0, 255);
    const auto vUp = RandomRow<uint8_t>(rng, 3 * static_cast<size_t>(nCount), 0, 255);
    SubtractUp(vLevel.data(), vUp.data(), nCount, run);
    for (int x = 0; x < nCount; ++x) {
        for (int c = 0; c < 3; ++c) {
            ASSERT_EQ(vUp[3 * x + c], run.vUp[c][x]);
            ASSERT_EQ(vLevel[3 * x + c] - vUp[3 * x + c], run.vDetail[c][x]);
        }
    }
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
    FillSharpenTable(table, DefaultFusionParams());
    EXPECT_EQ(32, table.vGains[0]);
    EXPECT_EQ(32, table.vGains[16]);
    EXPECT_EQ(31, table.vGains[24]);  // 32 - 8 * 3 / 16 truncated
    EXPECT_EQ(29, table.vGains[32]);
    EXPECT_EQ(16, table.vGains[128]);
    EXPECT_EQ(16, table.vGains[511]);
}

TEST(FillDetailGains, ScalesByTheStrengthOfTheLevel)
{
    FusionParams params = DefaultFusionParams();
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

class LaplacianCorrectionsTest : public SimdTargetTest {};

TEST_P(LaplacianCorrectionsTest, BoostTruncatesTowardZero)
{
    DetailGains gains;
    for (int i = 0; i < 256; ++i) gains.vByLuma[i] = static_cast<int16_t>(i / 2 + (i == 255));  // 0 .. 128
    std::mt19937 rng(3);
    for (int nCount = 1; nCount <= kRunPixels; nCount += nCount < 40 ? 1 : 27) {
        LaplacianRun run, before;
        ASSERT_NO_FATAL_FAILURE(FillRun(rng, nCount, run));
        before = run;
        ApplyShadowDetailBoost(gains, run);
        ForSamples(nCount, [&](int c, int x) {
            const int nLuma = (9 * run.vUp[1][x] + 2 * run.vUp[0][x] + 5 * run.vUp[2][x] + 8) >> 4;
            ASSERT_EQ(gains.vByLuma[nLuma] * before.vDetail[c][x] / 16, run.vDetail[c][x]);
        });
    }
}

TEST_P(LaplacianCorrectionsTest, BoostHoldsTheLargestProducts)
{
    for (const int nUp : {0, 255}) {
        const std::vector<uint8_t> vUp(3, static_cast<uint8_t>(nUp)), vLevel(3, static_cast<uint8_t>(255 - nUp));
        DetailGains gains;
        std::fill_n(gains.vByLuma, 256, int16_t{128});
        LaplacianRun run;
        SubtractUp(vLevel.data(), vUp.data(), 1, run);
        ApplyShadowDetailBoost(gains, run);
        EXPECT_EQ(nUp == 0 ? 2040 : -2040, run.vDetail[0][0]);
    }
}

TEST_P(LaplacianCorrectionsTest, CompensationTruncatesTowardZeroAndWraps)
{
    std::mt19937 rng(4);
    for (const int nStep : {1, 3, 8}) {
        for (const int nCount : {1, 17, 100, kRunPixels}) {
            const auto vCoefs = RandomRow<int16_t>(rng, static_cast<size_t>(nCount) * nStep, -32768, 32767);
            LaplacianRun run, before;
            ASSERT_NO_FATAL_FAILURE(FillRun(rng, nCount, run));
            before = run;
            ApplyEdgeCompensation(vCoefs.data(), nStep, run);
            ForSamples(nCount, [&](int c, int x) {
                const int nWant = vCoefs[x * nStep] * before.vDetail[c][x] / 128;
                ASSERT_EQ(static_cast<int16_t>(nWant), run.vDetail[c][x]);
            });
        }
    }
}

INSTANTIATE_ON_ALL_TARGETS(LaplacianCorrectionsTest);

TEST(FillHighlightGains, StartsAtOneAndBendsAtTheThreshold)
{
    HighlightGains gains;
    FusionParams params = DefaultFusionParams();
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
    FillHighlightGains(gains, 0, DefaultFusionParams());
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
}

}  // namespace vkr
