#include "fusion/blend_weighted.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

#include "support/random_image.h"
#include "support/simd_targets.h"

namespace vkr {

// Worked out by hand: toward zero, sums of 0, and what the 16-bit accumulator of other counts than three loses.
TEST(BlendWeightedPixel, TruncatesTowardZeroAndWraps)
{
    const auto Blend = [](std::vector<int16_t> vSamples, std::vector<uint8_t> vWeights) {
        return BlendWeightedPixel(vSamples.data(), vWeights.data(), static_cast<int>(vSamples.size()));
    };
    EXPECT_EQ(2, Blend({3, 2, 2}, {127, 0, 1}));
    EXPECT_EQ(-2, Blend({-3, -2, -2}, {127, 0, 1}));
    EXPECT_EQ(0, Blend({9, 9, 9}, {0, 0, 0}));
    EXPECT_EQ(30000, Blend({30000, 30000, 30000}, {255, 255, 255}));
    EXPECT_EQ(100, Blend({200, 0}, {64, 64}));
    EXPECT_EQ(-64, Blend({448, 448}, {64, 64}));  // 57344 is read as -8192
    EXPECT_EQ(0, Blend({9}, {0}));
}

class BlendWeightedTest : public SimdTargetTest {
protected:
    static void ExpectPixelByPixel(int nCount, int nExposureNum, int nLowest, int nHighest, int nMostWeight)
    {
        std::mt19937 rng(nCount * 8 + nExposureNum);
        const auto vWeights = RandomRow<uint8_t>(rng, static_cast<size_t>(nCount) * nExposureNum, 0, nMostWeight);
        std::vector<std::vector<int16_t>> vSamples;
        const int16_t* vPlanes[kMaxExposures];
        for (int k = 0; k < nExposureNum; ++k) {
            vSamples.push_back(RandomRow<int16_t>(rng, nCount, nLowest, nHighest));
        }
        for (int k = 0; k < nExposureNum; ++k) vPlanes[k] = vSamples[k].data();
        BlendWeights weights;
        TakeWeights(vWeights.data(), nCount, nExposureNum, weights);
        Guarded<int16_t> blend(nCount);
        BlendWeightedRun(weights, vPlanes, blend.Data());
        EXPECT_TRUE(blend.Intact());
        for (int x = 0; x < nCount; ++x) {
            int16_t vPixel[kMaxExposures];
            for (int k = 0; k < nExposureNum; ++k) vPixel[k] = vSamples[k][x];
            ASSERT_EQ(BlendWeightedPixel(vPixel, vWeights.data() + x * nExposureNum, nExposureNum), blend.Data()[x]);
        }
    }
};

TEST_P(BlendWeightedTest, EqualsThePixelFormAtEveryLength)
{
    for (int nExposureNum = 1; nExposureNum <= kMaxExposures; ++nExposureNum) {
        for (int nCount = 0; nCount <= kRunPixels; nCount += nCount < 40 ? 1 : 27) {
            SCOPED_TRACE(testing::Message() << nExposureNum << " exposures, " << nCount << " pixels");
            ExpectPixelByPixel(nCount, nExposureNum, -255, 255, 128);
            ExpectPixelByPixel(nCount, nExposureNum, -32768, 32767, 255);
            ExpectPixelByPixel(nCount, nExposureNum, -32768, 32767, 1);  // sums of 0 and 1
        }
    }
}

// Sums beyond 2^24 are not exact in the estimate of the quotient, which then misses beside whole quotients: multiples
// of the divisor, one more and one less.
TEST_P(BlendWeightedTest, IsExactBesideEveryWholeQuotient)
{
    for (int nQuotient = -32767; nQuotient <= 32766; nQuotient += 7) {
        int16_t vSamples[3][3];  // all alike; one more in the exposure of weight 1; one less in it
        for (auto& vPlane : vSamples) std::fill_n(vPlane, 3, static_cast<int16_t>(nQuotient));
        ++vSamples[2][1];
        --vSamples[2][2];
        const uint8_t nSecond = static_cast<uint8_t>(255 - (nQuotient & 31));
        const uint8_t vWeights[9] = {255, nSecond, 1, 255, nSecond, 1, 255, nSecond, 1};
        BlendWeights weights;
        TakeWeights(vWeights, 3, 3, weights);
        const int16_t* const vPlanes[3] = {vSamples[0], vSamples[1], vSamples[2]};
        int16_t vBlend[3];
        BlendWeightedRun(weights, vPlanes, vBlend);
        for (int x = 0; x < 3; ++x) {
            const int16_t vPixel[3] = {vSamples[0][x], vSamples[1][x], vSamples[2][x]};
            ASSERT_EQ(BlendWeightedPixel(vPixel, vWeights, 3), vBlend[x]) << nQuotient << ' ' << x;
        }
    }
}

INSTANTIATE_ON_ALL_TARGETS(BlendWeightedTest);

}  // namespace vkr
