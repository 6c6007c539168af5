#include "tone/global_stretch.h"

#include <gtest/gtest.h>

#include "support/for_threads.h"
#include "support/quiet_lines.h"
#include "support/random_image.h"

namespace vkr {
namespace {

ToneParams WithoutGamma()
{
    ToneParams params;
    params.bBrightnessPRSV = 0;
    return params;
}

// The picture without a gamma curve, pixel by pixel, from levels that are known.
std::vector<uint8_t> SlowStretch(const CShortImage& fused, const StretchLevels& levels)
{
    const int64_t nSpan = levels.m_nHighLevel - levels.m_nLowLevel;
    const int64_t nScale = nSpan == 0 ? 0 : 65280 / nSpan;
    const int64_t nHigh = nScale > 256 ? nScale : 256;
    std::vector<uint8_t> vOut;
    int64_t vRest[3] = {0, 0, 0};
    for (size_t i = 0; i < fused.Samples(); i += 6) {
        for (size_t c = 0; c < 3; ++c) {
            int64_t t = vRest[c] + nScale * (fused.pData[i + c] - levels.m_nLowLevel);
            t = t < 0 ? 0 : (t > 65280 ? 65280 : t);
            const int64_t u = t + nHigh * fused.pData[i + 3 + c];
            const int64_t q = u / 256;
            vRest[c] = u - q * 256;
            vOut.push_back(static_cast<uint8_t>(q < 0 ? 0 : (q > 255 ? 255 : q)));
        }
    }
    return vOut;
}

void FillFused(std::mt19937& rng, CShortImage& fused, int w, int h, int nLow, int nHigh)
{
    FillRandom(rng, fused, w, h, 6, nLow, nHigh);
    const auto vHigh = RandomRow<int16_t>(rng, fused.Samples(), -60, 60);
    for (size_t i = 0; i < fused.Samples(); ++i) {
        if (i % 6 >= 3) fused.pData[i] = vHigh[i];
    }
}

TEST(GlobalStretch, EqualsTheSlowWritingAtEverySizeFromAnyTeam)
{
    LinesScope lines;
    std::mt19937 rng(75);
    for (const int w : {1, 2, 3, 17, 40}) {
        for (const int h : {1, 2, 9}) {
            TestShortImage fused;
            FillFused(rng, fused, w, h, -20, 300);
            ForThreads([&](int) {
                StretchLevels levels;
                TestImage out;
                ASSERT_TRUE(GlobalStretch(fused, CImage{}, 0, WithoutGamma(), 0, levels, out));
                EXPECT_EQ(out.nDim, 3);
                EXPECT_EQ(Samples(out), SlowStretch(fused, levels)) << w << "x" << h;
            });
        }
    }
}

// Levels that meet, cross or lie one apart, and samples of the full 16 bits.
TEST(GlobalStretch, ServesEverySettingOfTheLevels)
{
    LinesScope lines;
    std::mt19937 rng(76);
    TestShortImage fused;
    FillRandom(rng, fused, 13, 5, 6, -32768, 32767);
    for (const int32_t nLow : {-255, 0, 100, 255}) {
        for (const int32_t nHigh : {0, 99, 100, 101, 255, 512}) {
            ToneParams params = WithoutGamma();
            params.nMinLowLevel = params.nMaxLowLevel = nLow;
            params.nMinHighLevel = params.nMaxHighLevel = nHigh;
            for (int nType = 0; nType < 5; ++nType) {
                params.nHistStatType = nType;
                StretchLevels levels;
                TestImage out;
                ASSERT_TRUE(GlobalStretch(fused, CImage{}, 0, params, 0, levels, out));
                EXPECT_EQ(levels.m_nLowLevel, nLow);
                EXPECT_EQ(levels.m_nHighLevel, nHigh);
                EXPECT_EQ(Samples(out), SlowStretch(fused, levels)) << nLow << " " << nHigh;
            }
        }
    }
}

TEST(GlobalStretch, PassesTheBaseThroughWithoutKeepDetail)
{
    LinesScope lines;
    std::mt19937 rng(77);
    TestShortImage fused;
    FillFused(rng, fused, 12, 7, 0, 255);
    ToneParams params;
    params.bKeepHighLightDetailEnable = params.bKeepDarkDetailEnable = 0;
    StretchLevels levels = {11, 222};
    TestImage out;
    ASSERT_TRUE(GlobalStretch(fused, CImage{}, 0, params, 0, levels, out));
    EXPECT_EQ(levels.m_nLowLevel, 11);
    for (size_t i = 0; i < out.Samples(); ++i) {
        const int n = fused.pData[i / 3 * 6 + i % 3] + fused.pData[i / 3 * 6 + 3 + i % 3];
        ASSERT_EQ(out.pData[i], n < 0 ? 0 : (n > 255 ? 255 : n));
    }
    EXPECT_FALSE(lines.Contains("LowLevel"));
    EXPECT_FALSE(lines.Contains("gamma"));
}

TEST(GlobalStretch, TellsItsStepsAndBringsTheMeanBack)
{
    LinesScope lines;
    TestShortImage fused;
    FillConstant(fused, 10, 10, 6, 0);
    for (size_t i = 0; i < fused.Samples(); ++i) fused.pData[i] = static_cast<int16_t>(i % 6 < 3 ? 100 : 0);
    ToneParams params;
    params.nMaxGamma = 200;
    StretchLevels levels;
    TestImage out;
    ASSERT_TRUE(GlobalStretch(fused, CImage{}, 0, params, 0, levels, out));
    // Black level 99 held at 32, white level 101 at 224: (100 - 32) * 340 / 256 = 90.
    EXPECT_EQ(LinesScope::Text(),
              "InMean=100\nLowLevel = 32, HighLevel=224, scale = 340\nOutMeanY bf=90\ngamma=1.112553\n");
    // 68 * 340 = 90 * 256 + 80: the carry makes every third or so a 91; through the curve 100 and 101.
    EXPECT_EQ(out.pData[0], 100);
    EXPECT_EQ(out.pData[3 * 3], 101);   // the fourth: 4 * 80 = 320
    EXPECT_EQ(out.pData[3 * 10], 100);  // row 1, pixel 10: 10 * 80 = 800, 880 after it: no step
    EXPECT_EQ(out.pData[3 * 12], 101);  // 12 * 80 = 960, 1040 after it: the step over 1024
}

TEST(GlobalStretch, ClipsTheBaseUnderTheMaskFirst)
{
    LinesScope lines;
    TestShortImage fused;
    TestImage mask, out;
    FillConstant(fused, 4, 4, 6, 300);
    FillConstant(mask, 4, 4, 1, 1);
    fused.pData[0] = 400;
    StretchLevels levels;
    ASSERT_TRUE(GlobalStretch(fused, mask, 1, WithoutGamma(), 0, levels, out));
    EXPECT_EQ(fused.pData[0], 300);
    EXPECT_TRUE(lines.Contains("MAX=[400,300,300]SaturatedY=306 PeakSaturatedY=300 "));
}

TEST(GlobalStretch, LeavesNothingOnFailure)
{
    LinesScope lines;
    TestShortImage fused;
    TestImage mask, out;
    FillConstant(fused, 4, 4, 6, 300);
    FillConstant(mask, 4, 5, 1, 1);
    FillConstant(out, 4, 4, 3, 9);
    StretchLevels levels;
    EXPECT_FALSE(GlobalStretch(fused, mask, 1, WithoutGamma(), 0, levels, out));
    EXPECT_TRUE(out.Empty());
    EXPECT_FALSE(GlobalStretch(fused, CImage{}, 1, WithoutGamma(), 0, levels, out));
    TestShortImage empty;
    EXPECT_FALSE(GlobalStretch(empty, mask, 0, WithoutGamma(), 0, levels, out));
    EXPECT_EQ(levels.m_nHighLevel, 255);
}

}  // namespace
}  // namespace vkr
