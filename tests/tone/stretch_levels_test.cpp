#include "tone/stretch_levels.h"

#include <gtest/gtest.h>

namespace vkr {
namespace {

// Brightness -2 .. 5 in eight bins, ten pixels.
constexpr int32_t kHist[8] = {1, 2, 0, 4, 0, 1, 1, 1};

ToneParams Wide()
{
    ToneParams params;
    params.nMinLowLevel = -2;
    params.nMaxLowLevel = 5;
    params.nMinHighLevel = -10;
    params.nMaxHighLevel = 5;
    return params;
}

StretchLevels After(const ToneParams& params, const int32_t* pHist = kHist, StretchLevels levels = {})
{
    GetStretchLevels(pHist, 10, params, levels);
    return levels;
}

// Shares of n of the ten pixels.
int32_t Share(int n)
{
    return (65536 * n + 9) / 10;
}

TEST(GetStretchLevels, FindsTheLastDarkBinWithinTheShare)
{
    ToneParams params = Wide();
    const int32_t vLevelByPixels[11] = {-2, -2, -2, 0, 0, 0, 0, 2, 3, 4, 5};  // bin - 2; bin -1 is held at -2
    for (int n = 0; n <= 10; ++n) {
        params.nDarkPercetage = Share(n);
        EXPECT_EQ(After(params).m_nLowLevel, vLevelByPixels[n]) << n;
    }
}

TEST(GetStretchLevels, FindsTheFirstBrightBinBeyondTheShare)
{
    ToneParams params = Wide();
    const int32_t vLevelByPixels[11] = {5, 5, 4, 2, 2, 2, 2, 0, 0, -1, -2};  // bin + 1 - 2; bin -1 last
    for (int n = 0; n <= 10; ++n) {
        params.nHLPercetage = Share(n);
        EXPECT_EQ(After(params).m_nHighLevel, vLevelByPixels[n]) << n;
    }
}

TEST(GetStretchLevels, TakesTheBinBeforeTheOnlyValueOfAFlatPicture)
{
    const int32_t vFlat[8] = {0, 0, 0, 0, 10, 0, 0, 0};  // all 2
    const StretchLevels levels = After(Wide(), vFlat);
    EXPECT_EQ(levels.m_nLowLevel, 1);
    EXPECT_EQ(levels.m_nHighLevel, 3);
}

TEST(GetStretchLevels, HoldsTheTargetsWithinTheirLimits)
{
    ToneParams params = Wide();
    params.nDarkPercetage = Share(9);
    params.nMaxLowLevel = 1;
    params.nHLPercetage = Share(9);
    params.nMinHighLevel = 3;
    EXPECT_EQ(After(params).m_nLowLevel, 1);
    EXPECT_EQ(After(params).m_nHighLevel, 3);
}

TEST(GetStretchLevels, AimsAtTheFullRangeWithoutKeepDetail)
{
    ToneParams params = Wide();
    params.bKeepDarkDetailEnable = 0;
    EXPECT_EQ(After(params, kHist, {77, 99}).m_nLowLevel, 0);
    EXPECT_EQ(After(params, kHist, {77, 99}).m_nHighLevel, 5);
    params.bKeepHighLightDetailEnable = 0;
    EXPECT_EQ(After(params, kHist, {77, 99}).m_nHighLevel, 255);
}

TEST(GetStretchLevels, ApproachesByStepsOfASixteenthRoundedByAShift)
{
    ToneParams params = Wide();  // targets -2 and 5
    params.nLowLevelStep = 8;
    params.nHighLevelStep = 8;
    const StretchLevels half = After(params);
    EXPECT_EQ(half.m_nLowLevel, -1);    // (8 * -2 + 8) >> 4 = -1
    EXPECT_EQ(half.m_nHighLevel, 130);  // 255 + ((8 * -250 + 8) >> 4) = 255 - 125, -124.5 floored
    params.nLowLevelStep = 3;
    EXPECT_EQ(After(params, kHist, {3, 255}).m_nLowLevel, 2);  // (3 * -5 + 8) >> 4 = -1, where / gives 0
    params.nLowLevelStep = params.nHighLevelStep = 0;
    EXPECT_EQ(After(params, kHist, {17, 201}).m_nLowLevel, 17);
    EXPECT_EQ(After(params, kHist, {17, 201}).m_nHighLevel, 201);
}

TEST(GetStretchLevels, NeedsNoBinsForLimitsInWrongOrder)
{
    ToneParams params = Wide();
    params.nMinLowLevel = 255;
    params.nMaxLowLevel = 255;
    params.nMinHighLevel = 0;
    params.nMaxHighLevel = 0;
    const StretchLevels levels = After(params, nullptr);
    EXPECT_EQ(levels.m_nLowLevel, 255);  // bin -1
    EXPECT_EQ(levels.m_nHighLevel, 0);   // 255 - 255 + 1, held at 0
    params.nMinHighLevel = -5;
    params.nMaxHighLevel = 3;
    EXPECT_EQ(After(params, nullptr).m_nHighLevel, 3);
}

TEST(GetStretchLevels, CountsSharesOfHugePicturesIn64Bits)
{
    ToneParams params = Wide();
    params.nDarkPercetage = 65536;
    params.nHLPercetage = 65536;
    const int32_t vHist[8] = {1 << 30, 1 << 30, 1 << 30, 1 << 30, 0, 0, 0, 0};
    StretchLevels levels;
    GetStretchLevels(vHist, int64_t{1} << 32, params, levels);
    EXPECT_EQ(levels.m_nLowLevel, 5);
    EXPECT_EQ(levels.m_nHighLevel, -2);
}

}  // namespace
}  // namespace vkr
