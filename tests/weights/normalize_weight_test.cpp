#include "weights/normalize_weight.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <random>
#include <vector>

#include "fusion/fusion_defaults.h"
#include "support/random_image.h"
#include "support/simd_targets.h"

namespace vkr {

namespace {

using Weights = std::vector<int>;

Weights Normalize(const std::vector<int32_t>& vRaw, const WeightParams& params = DefaultWeightParams())
{
    uint8_t vOut[kMaxExposures];
    NormalizeWeight(vRaw.data(), vOut, static_cast<int>(vRaw.size()), params);
    return Weights(vOut, vOut + vRaw.size());
}

// A second, slow writing: the picks are sought afterwards instead of on the way.
Weights SlowNormalize(const std::vector<int32_t>& vRaw, const WeightParams& params)
{
    const int n = static_cast<int>(vRaw.size());
    const int nSum = std::accumulate(vRaw.begin(), vRaw.end(), 0);
    Weights w(vRaw.begin(), vRaw.end());
    if (!params.bNormalizeWeightEnable) return w;
    for (int& v : w) v = nSum == 0 ? 0 : std::min((128 * v + nSum / 2) / nSum % 256, 128);

    std::vector<int> vLeaders;  // exposures heavier than all before them
    for (int k = 0; k < n; ++k) {
        if (std::all_of(w.begin(), w.begin() + k, [&](int v) { return v < w[k]; })) vLeaders.push_back(k);
    }
    const int nFirst = vLeaders.back();
    int nSecond = -1;
    for (int k = 0; k < n; ++k) {
        const auto itLeader = std::find(vLeaders.begin(), vLeaders.end(), k);
        if (itLeader != vLeaders.end()) {
            nSecond = itLeader == vLeaders.begin() ? -1 : *(itLeader - 1);
        } else if (w[k] > nSecond) {
            nSecond = k;
        }
    }
    if (w[nFirst] > params.nDominateWTh) {
        std::fill(w.begin(), w.end(), 0);
        w[nFirst] = 128;
    } else if (params.bMax2ExpWeightEnable && nSecond >= 0) {
        const int nPair = w[nFirst] + w[nSecond];
        const int nShare = nPair == 0 ? 0 : (128 * w[nSecond] + nPair / 2) / nPair;
        std::fill(w.begin(), w.end(), 0);
        w[nSecond] = nShare;
        w[nFirst] = 128 - nShare;
    } else {
        const int nOthers = std::accumulate(w.begin(), w.end(), 0) - w[nFirst];
        w[nFirst] = 128 - std::min(nOthers, 85);
    }
    return w;
}

WeightParams ParamsWith(int bNormalize, int bMax2, int nDominate)
{
    WeightParams params = DefaultWeightParams();
    params.bNormalizeWeightEnable = bNormalize;
    params.bMax2ExpWeightEnable = bMax2;
    params.nDominateWTh = nDominate;
    return params;
}

}  // namespace

TEST(NormalizeWeight, EqualsASecondWritingForAnyBurst)
{
    std::mt19937 rng(53);
    for (int nRound = 0; nRound < 100000; ++nRound) {
        const int nMost = nRound % 3 == 0 ? 3 : (nRound % 3 == 1 ? 128 : 255);
        const auto vRaw = RandomRow<int32_t>(rng, 1 + rng() % 8, 0, nMost);
        const WeightParams params = ParamsWith(rng() % 8 != 0, rng() % 2, static_cast<int>(rng() % 256));
        ASSERT_EQ(SlowNormalize(vRaw, params), Normalize(vRaw, params)) << testing::PrintToString(vRaw);
    }
}

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

class NormalizeWeightRunTest : public SimdTargetTest {
protected:
    // Runs of raw weights r0, r1 and every r2 of 0 .. nMost.
    static void ExpectScalarBytes(int r0, int r1, int nMost, const WeightParams& params)
    {
        uint8_t vRaw[3][kRunPixels];
        const uint8_t* const vPlanes[3] = {vRaw[0], vRaw[1], vRaw[2]};
        const int nCount = nMost + 1;
        std::fill_n(vRaw[0], nCount, static_cast<uint8_t>(r0));
        std::fill_n(vRaw[1], nCount, static_cast<uint8_t>(r1));
        std::iota(vRaw[2], vRaw[2] + nCount, uint8_t{0});
        uint8_t vGot[3 * kRunPixels], vWant[3 * kRunPixels];
        NormalizeWeightRun(vPlanes, vGot, nCount, 3, params);
        for (int r2 = 0; r2 < nCount; ++r2) {
            const int32_t vPixel[3] = {r0, r1, r2};
            NormalizeWeight(vPixel, vWant + 3 * r2, 3, params);
        }
        ASSERT_TRUE(std::equal(vWant, vWant + 3 * nCount, vGot)) << r0 << ' ' << r1;
    }
};

TEST_P(NormalizeWeightRunTest, EqualsScalarForEveryThreeRawWeights)
{
    for (const int bMax2 : {0, 1}) {
        for (int r0 = 0; r0 <= 128; ++r0) {
            for (int r1 = 0; r1 <= 128; ++r1) ExpectScalarBytes(r0, r1, 128, ParamsWith(1, bMax2, 80));
        }
    }
}

TEST_P(NormalizeWeightRunTest, EqualsScalarForBytesAndThresholdsBeyond)
{
    std::mt19937 rng(54);
    for (int nRound = 0; nRound < 2000; ++nRound) {
        const WeightParams params = ParamsWith(rng() % 8 != 0, rng() % 2, static_cast<int>(rng() % 256));
        ExpectScalarBytes(static_cast<int>(rng() % 256), static_cast<int>(rng() % 256), 255, params);
    }
    ExpectScalarBytes(255, 255, 255, ParamsWith(1, 1, 80));
}

TEST_P(NormalizeWeightRunTest, EqualsScalarForAnyExposuresAndLength)
{
    std::mt19937 rng(55);
    for (int nExposureNum = 1; nExposureNum <= kMaxExposures; ++nExposureNum) {
        for (int nCount = 0; nCount <= 70; ++nCount) {
            std::vector<std::vector<uint8_t>> vRaw(nExposureNum);
            const uint8_t* vPlanes[kMaxExposures];
            for (int k = 0; k < nExposureNum; ++k) {
                vRaw[k] = RandomRow<uint8_t>(rng, nCount, 1, 128);
                vPlanes[k] = vRaw[k].data();
            }
            Guarded<uint8_t> weights(static_cast<size_t>(nCount) * nExposureNum);
            NormalizeWeightRun(vPlanes, weights.Data(), nCount, nExposureNum, DefaultWeightParams());
            EXPECT_TRUE(weights.Intact());
            for (int x = 0; x < nCount; ++x) {
                int32_t vPixel[kMaxExposures];
                uint8_t vWant[kMaxExposures];
                for (int k = 0; k < nExposureNum; ++k) vPixel[k] = vRaw[k][x];
                NormalizeWeight(vPixel, vWant, nExposureNum, DefaultWeightParams());
                ASSERT_TRUE(std::equal(vWant, vWant + nExposureNum, weights.Data() + x * nExposureNum));
            }
        }
    }
}

INSTANTIATE_ON_ALL_TARGETS(NormalizeWeightRunTest);

}  // namespace vkr
