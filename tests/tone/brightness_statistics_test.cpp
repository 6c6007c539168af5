#include "tone/brightness_statistics.h"

#include <gtest/gtest.h>

#include "support/for_threads.h"
#include "support/random_image.h"

namespace vkr {
namespace {

ToneParams Limits(int32_t nMinLow, int32_t nMaxHigh, int32_t nType)
{
    ToneParams params;
    params.nMinLowLevel = nMinLow;
    params.nMaxHighLevel = nMaxHigh;
    params.nHistStatType = nType;
    return params;
}

TEST(PixelBrightness, FollowsItsType)
{
    EXPECT_EQ(PixelBrightness(-7, 300, 12, 0), 300);
    EXPECT_EQ(PixelBrightness(-7, 300, 12, 1), -7);
    EXPECT_EQ(PixelBrightness(10, 11, 13, 2), 11);   // 35 / 3
    EXPECT_EQ(PixelBrightness(-3, -2, -1, 2), -1);   // -5 / 3 toward zero
    EXPECT_EQ(PixelBrightness(10, 100, 50, 3), 73);  // 1178 / 16
    EXPECT_EQ(PixelBrightness(0, -3, 0, 3), -1);     // -19 / 16 toward zero
    EXPECT_EQ(PixelBrightness(1, 2, 3, 4), 2);
    EXPECT_EQ(PixelBrightness(1, 2, 3, 77), 2);
}

TEST(GetMeanBrightness, ClipsEveryPixelBeforeTheSum)
{
    TestShortImage image;
    FillConstant(image, 2, 2, 6, 0);
    image.pData[0] = 400;                        // 255
    image.pData[6] = -90;                        // the greatest of -90, 0, 0
    image.pData[13] = 7;                         // 7
    image.pData[18 + 3] = 99;                    // high frequencies do not count
    EXPECT_EQ(GetMeanBrightness(image, 0), 65);  // 262 / 4
    EXPECT_EQ(GetMeanBrightness(image, 1), 0);
}

TEST(GetMeanBrightness, MeasuresAPictureOfOneComponentByThat)
{
    TestShortImage image;
    FillConstant(image, 5, 3, 1, 41);
    for (int nType = 0; nType < 5; ++nType) EXPECT_EQ(GetMeanBrightness(image, nType), 41);
}

TEST(GetMeanBrightness, IsZeroForAnEmptyPicture)
{
    EXPECT_EQ(GetMeanBrightness(TestShortImage(), 0), 0);
}

TEST(GetBrightnessHistogram, PutsWhatLiesBeyondIntoTheEndBins)
{
    TestShortImage image;
    FillConstant(image, 4, 1, 6, 0);
    const int16_t vGreen[4] = {-3, -2, 5, 6};
    for (int x = 0; x < 4; ++x) image.pData[6 * x + 1] = vGreen[x];
    const ToneParams params = Limits(-2, 5, 4);
    ASSERT_EQ(BrightnessBins(params), 8);
    std::vector<int32_t> vHist(8, 0);
    ASSERT_TRUE(GetBrightnessHistogram(image, params, vHist.data()));
    EXPECT_EQ(vHist, (std::vector<int32_t>{2, 0, 0, 0, 0, 0, 0, 2}));
}

TEST(GetBrightnessHistogram, HasNoBinsForLimitsInWrongOrder)
{
    TestShortImage image;
    FillConstant(image, 3, 3, 6, 100);
    const ToneParams params = Limits(255, 0, 0);
    EXPECT_EQ(BrightnessBins(params), 0);
    EXPECT_EQ(BrightnessBins(Limits(1, 0, 0)), 0);
    EXPECT_TRUE(GetBrightnessHistogram(image, params, nullptr));
}

TEST(BrightnessStatistics, AreTheSameFromAnyTeam)
{
    std::mt19937 rng(71);
    TestShortImage image;
    for (const int h : {1, 2, 7, 31}) {
        FillRandom(rng, image, 37, h, 6, -40, 320);
        for (int nType = 0; nType < 5; ++nType) {
            const ToneParams params = Limits(-32, 287, nType);
            std::vector<int32_t> vWant(static_cast<size_t>(BrightnessBins(params)), 0);
            int64_t nSum = 0;
            for (size_t i = 0; i < image.Samples(); i += 6) {
                const int16_t* p = image.pData + i;
                const int32_t v = PixelBrightness(p[0], p[1], p[2], nType);
                nSum += std::min(std::max(v, 0), 255);
                ++vWant[static_cast<size_t>(std::min(std::max(v + 32, 0), 319))];
            }
            ForThreads([&](int) {
                std::vector<int32_t> vGot(vWant.size(), 0);
                ASSERT_TRUE(GetBrightnessHistogram(image, params, vGot.data()));
                EXPECT_EQ(vGot, vWant);
                EXPECT_EQ(GetMeanBrightness(image, nType), nSum / (37 * h));
            });
        }
    }
}

}  // namespace
}  // namespace vkr
