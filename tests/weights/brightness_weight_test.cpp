#include "weights/brightness_weight.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

#include "support/random_image.h"

namespace vkr {

namespace {

int WeightAt(int k, int nBrightness, int nExposureNum, int nReference, const WeightParams& params,
             const FaceAim& face = {})
{
    int32_t vBrightness[kMaxExposures], vWeights[kMaxExposures];
    std::fill_n(vBrightness, kMaxExposures, nBrightness);
    BrightnessWeightOfPixel(vBrightness, vWeights, nExposureNum, nReference, params, face);
    return vWeights[k];
}

FaceAim FaceAt(int nIntensity)
{
    FaceAim face;
    face.bAIMask = 1;
    face.m_FaceIntensity = nIntensity;
    return face;
}

}  // namespace

TEST(BrightnessDiffToWeight, InterpolatesBetweenTheNodes)
{
    const WeightParams params{};
    EXPECT_EQ(128, BrightnessDiffToWeight(0, false, params));
    EXPECT_EQ(128, BrightnessDiffToWeight(256, false, params));
    EXPECT_EQ(112, BrightnessDiffToWeight(512, false, params));  // 128 - 256 * 48 / 768
    EXPECT_EQ(128, BrightnessDiffToWeight(260, false, params));  // -4 * 48 / 768 truncates to 0
    EXPECT_EQ(80, BrightnessDiffToWeight(1024, false, params));
    EXPECT_EQ(1, BrightnessDiffToWeight(16384, false, params));
    EXPECT_EQ(1, BrightnessDiffToWeight(65025, false, params));
    EXPECT_EQ(96, BrightnessDiffToWeight(6400, true, params));
    EXPECT_EQ(16, BrightnessDiffToWeight(6400, false, params));
}

TEST(BrightnessDiffToWeight, StaysInsideTheLimits)
{
    WeightParams params;
    std::fill_n(params.pBrightnessWList, 8, 0);
    EXPECT_EQ(1, BrightnessDiffToWeight(500, false, params));
    std::reverse(params.pBrightnessDiffList, params.pBrightnessDiffList + 8);  // descending: the last value
    params.pBrightnessWList[7] = 99;
    EXPECT_EQ(99, BrightnessDiffToWeight(500, false, params));
}

TEST(BrightnessWeightOfPixel, ForgivesTheEndsOfTheBurst)
{
    const WeightParams params{};
    EXPECT_EQ(128, WeightAt(0, 255, 3, 1, params));  // the darkest may be too bright
    EXPECT_EQ(1, WeightAt(0, 0, 3, 1, params));
    EXPECT_EQ(2, WeightAt(2, 255, 3, 1, params));  // 127 squared: 4 - 3585 * 3 / 3840
    EXPECT_EQ(128, WeightAt(2, 0, 3, 1, params));  // the brightest too dark
    EXPECT_EQ(1, WeightAt(1, 0, 3, 1, params));
    EXPECT_EQ(1, WeightAt(1, 0, 3, 0, params));
    EXPECT_EQ(128, WeightAt(0, 255, 1, 0, params));  // alone, it is both
    EXPECT_EQ(128, WeightAt(0, 0, 1, 0, params));
}

TEST(BrightnessWeightOfPixel, AimsAtTheTargetOfTheExposure)
{
    WeightParams params;
    EXPECT_EQ(80, WeightAt(1, 128 + 32, 4, 0, params));   // 1024 on the plain list
    EXPECT_EQ(128, WeightAt(1, 128 + 32, 4, 1, params));  // and on that of the reference
    params.bRefDifferentWeightEnable = 0;
    EXPECT_EQ(80, WeightAt(1, 128 + 32, 4, 1, params));
    params.bConstantBrightnessTargetEnable = 0;
    EXPECT_EQ(80, WeightAt(0, 176 - 32, 4, 1, params));
    EXPECT_EQ(80, WeightAt(2, 80 + 32, 4, 1, params));
}

// Face at 60, window 20 below and 5 above, target 128 with the reference list.
TEST(BrightnessWeightOfPixel, AimsAtTheFaceInsideItsWindow)
{
    const WeightParams params{};
    const auto Weight = [&](int v) { return WeightAt(1, v, 3, 1, params, FaceAt(60)); };
    const auto Ordinary = [&](int v) { return WeightAt(1, v, 3, 1, params); };
    EXPECT_EQ(128, Weight(60));
    EXPECT_EQ(Ordinary(40), Weight(40));  // the ends are outside
    EXPECT_EQ(Ordinary(65), Weight(65));
    // v = 50: distance 78 to the target, 6084 -> 128 - 1988 * 32 / 2304 = 101; a = 512; (101 * 512 + 128 * 512) >> 10.
    EXPECT_EQ(101, Ordinary(50));
    EXPECT_EQ(114, Weight(50));
    // v = 62: 66, 4356 -> 125; a = 409; (125 * 409 + 128 * 615) >> 10 = 126.
    EXPECT_EQ(126, Weight(62));
    EXPECT_EQ(Ordinary(0), Weight(0));
    EXPECT_EQ(Ordinary(255), Weight(255));
    EXPECT_EQ(WeightAt(0, 50, 3, 1, params), WeightAt(0, 50, 3, 1, params, FaceAt(60)));  // the reference alone
    // A window of 40: 95 from the target, 9025 -> 82; a = 27 * 1024 / 40 = 691; (82 * 691 + 128 * 333) >> 10.
    WeightParams wide = params;
    wide.nFaceIntensityRefRange[0] = 40;
    EXPECT_EQ(96, WeightAt(1, 33, 3, 1, wide, FaceAt(60)));
}

TEST(BrightnessWeightOfPixel, ClosesASideOfTheWindowOfWidthZero)
{
    WeightParams params;
    params.nFaceIntensityRefRange[0] = params.nFaceIntensityRefRange[1] = 0;
    for (const int v : {58, 59, 61, 62})
        EXPECT_EQ(WeightAt(1, v, 3, 1, params), WeightAt(1, v, 3, 1, params, FaceAt(60)));
    EXPECT_EQ(128, WeightAt(1, 60, 3, 1, params, FaceAt(60)));
    // A face on the target changes nothing, not even where the list does not start at the full weight.
    params.nFaceIntensityRefRange[0] = 20;
    EXPECT_EQ(WeightAt(1, 120, 3, 1, params), WeightAt(1, 120, 3, 1, params, FaceAt(128)));
}

TEST(FillBrightnessTable, HasARowForEveryExposure)
{
    const WeightParams params{};
    BrightnessTable table;
    FillBrightnessTable(table, 8, 6, params, FaceAt(60));
    for (int k = 0; k < 8; ++k) {
        for (int g = 0; g < 256; ++g) ASSERT_EQ(WeightAt(k, g, 8, 6, params, FaceAt(60)), table.vRows[k][g]);
    }
}

TEST(BrightnessRun, ReducesByTheSelection)
{
    std::mt19937 rng(2);
    for (const int nCount : {1, 15, 64, 255, kRunPixels}) {
        const auto vBgr = RandomRow<uint8_t>(rng, 3 * static_cast<size_t>(nCount), 0, 255);
        for (int nSelect = 0; nSelect < 4; ++nSelect) {
            Guarded<uint8_t> run(nCount);
            BrightnessRun(nSelect, vBgr.data(), run.Data(), nCount);
            EXPECT_TRUE(run.Intact());
            for (int x = 0; x < nCount; ++x) {
                const int b = vBgr[3 * x], g = vBgr[3 * x + 1], r = vBgr[3 * x + 2];
                const int vWant[4] = {(9 * g + 2 * b + 5 * r + 8) / 16, std::max({b, g, r}), std::min({b, g, r}),
                                      std::min({b, g, r})};
                ASSERT_EQ(vWant[nSelect], run.Data()[x]);
            }
        }
    }
}

}  // namespace vkr
