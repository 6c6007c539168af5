#include "weights/normalize_weight.h"

#include <gtest/gtest.h>

#include <vector>

namespace vkr {

namespace {

using Weights = std::vector<int>;

Weights Normalize(const std::vector<int32_t>& vRaw, const WeightParams& params = WeightParams{})
{
    uint8_t vOut[kMaxExposures];
    NormalizeWeight(vRaw.data(), vOut, static_cast<int>(vRaw.size()), params);
    return Weights(vOut, vOut + vRaw.size());
}

WeightParams ParamsWith(int bNormalize, int bMax2, int nDominate)
{
    WeightParams params;
    params.bNormalizeWeightEnable = bNormalize;
    params.bMax2ExpWeightEnable = bMax2;
    params.nDominateWTh = nDominate;
    return params;
}

}  // namespace

// Worked out by hand.
TEST(NormalizeWeight, TwoPicksShareThePixel)
{
    EXPECT_EQ((Weights{64, 0, 64}), Normalize({128, 128, 128}));  // the last is the second pick: 43 > index 1
    EXPECT_EQ((Weights{0, 83, 45}), Normalize({10, 100, 55}));    // 8, 78, 43: 128 * 43 / 121
    EXPECT_EQ((Weights{79, 49, 0}), Normalize({80, 50, 0}, ParamsWith(1, 1, 100)));  // 0 does not exceed index 1
    EXPECT_EQ((Weights{0, 0, 128}), Normalize({1, 1, 128}));                         // dominates
    EXPECT_EQ((Weights{64, 64}), Normalize({7, 7}));
}

// The second pick gives way to a lighter exposure whose weight exceeds its index.
TEST(NormalizeWeight, ComparesWithTheIndexOfTheSecondPick)
{
    EXPECT_EQ((Weights{119, 0, 9}), Normalize({80, 70, 6}));
    EXPECT_EQ((Weights{0, 0, 0, 64, 0, 0, 0, 64}), Normalize({0, 0, 0, 100, 0, 0, 0, 100}));
    // A weight of 2 does not exceed the index 2, a weight of 3 does.
    EXPECT_EQ((Weights{66, 0, 62, 0}), Normalize({64, 0, 60, 2}, ParamsWith(1, 1, 100)));
    EXPECT_EQ((Weights{122, 0, 0, 6}), Normalize({64, 0, 60, 3}, ParamsWith(1, 1, 100)));
}

TEST(NormalizeWeight, OthersKeepEightyFiveAtMost)
{
    const WeightParams params = ParamsWith(1, 0, 80);
    EXPECT_EQ((Weights{43, 43, 43}), Normalize({128, 128, 128}, params));  // 86 are cut to 85
    EXPECT_EQ((Weights{44, 42, 42}), Normalize({66, 64, 64}, params));     // 84 stand
    EXPECT_EQ((Weights{43, 16, 16, 16, 16, 16, 16, 16}), Normalize(std::vector<int32_t>(8, 9), params));
}

TEST(NormalizeWeight, SumsTo128ForEveryThreeRawWeights)
{
    for (int a = 1; a <= 128; a += 3) {
        for (int b = 1; b <= 128; ++b) {
            for (int c = 1; c <= 128; c += 2) {
                const Weights w = Normalize({a, b, c});
                ASSERT_EQ(128, w[0] + w[1] + w[2]) << a << ' ' << b << ' ' << c;
            }
        }
    }
}

TEST(NormalizeWeight, TakesNoWeightAtAllAndASingleExposure)
{
    EXPECT_EQ((Weights{128, 0, 0}), Normalize({0, 0, 0}));
    EXPECT_EQ((Weights{128}), Normalize({77}));
    EXPECT_EQ((Weights{128}), Normalize({77}, ParamsWith(1, 1, 255)));
    EXPECT_EQ((Weights{1, 0, 255}), Normalize({257, 256, -1}, ParamsWith(0, 1, 80)));  // low bytes
}

}  // namespace vkr
