#include "weights/build_weight.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <random>
#include <thread>
#include <vector>

#include "primitives/smooth.h"
#include "support/for_threads.h"
#include "support/pyramid_with.h"
#include "support/quiet_lines.h"
#include "support/random_image.h"
#include "weights/brightness_weight.h"
#include "weights/normalize_weight.h"

namespace vkr {

namespace {

// The frames of a burst and its weight levels.
struct WeightBurst {
    WeightBurst(int w, int h, int n, int nSeed = 12) : nExposureNum(n)
    {
        std::mt19937 rng(nSeed);
        for (int k = 0; k < n; ++k) FillRandom(rng, static_cast<CImage&>(vFrames[k]), w, h, 3, 20 * k, 80 + 20 * k);
    }
    ~WeightBurst()
    {
        for (CImage& frame : vFrames) frame.Release();
        for (CImage& level : vWeights) level.Release();
    }
    int Build(const PyramidParams& pyramid = PyramidWith(1))
    {
        LinesScope quiet;
        ReadyFlags flags;
        for (int k = 0; k < nExposureNum; ++k) flags.SetReady(k);
        return BuildWeight({vFrames, nExposureNum, nExposureNum / 2}, params, FaceAim{}, pyramid, flags, vWeights);
    }
    int Rebuild(const PyramidParams& pyramid = PyramidWith(1))
    {
        LinesScope quiet;
        return RebuildWeight({vFrames, nExposureNum, nExposureNum / 2}, params, FaceAim{}, pyramid, vWeights);
    }
    int nExposureNum;
    WeightParams params;
    CImage vFrames[kMaxExposures] = {};
    CImage vWeights[kMaxLevels] = {};
};

// Level 0 pixel by pixel, from frames that were smoothed as one block.
std::vector<uint8_t> SlowLevel0(const WeightBurst& burst, bool bTable)
{
    ThreadsScope one(1);
    const int n = burst.nExposureNum;
    TestImage vSmoothed[kMaxExposures];
    for (int k = 0; k < n; ++k) CSmoothFilter5x5::SmoothImage8(burst.vFrames[k], vSmoothed[k], true);
    std::vector<uint8_t> vWeights;
    for (size_t i = 0; i < burst.vFrames[0].Samples(); i += 3) {
        int32_t vRaw[kMaxExposures];
        for (int k = 0; k < n; ++k) {
            const uint8_t* p = vSmoothed[k].pData + i;
            const int nSelect = burst.params.nFusionWeightSelect;
            const int g = nSelect == 0 ? (9 * p[1] + 2 * p[0] + 5 * p[2] + 8) / 16
                                       : (nSelect == 1 ? std::max({p[0], p[1], p[2]}) : std::min({p[0], p[1], p[2]}));
            int32_t vSame[kMaxExposures], vTable[kMaxExposures];
            std::fill_n(vSame, kMaxExposures, g);
            BrightnessWeightOfPixel(vSame, vTable, n, n / 2, burst.params, FaceAim{});
            vRaw[k] = bTable ? vTable[k] : g;
        }
        uint8_t vPixel[kMaxExposures];
        NormalizeWeight(vRaw, vPixel, n, burst.params);
        vWeights.insert(vWeights.end(), vPixel, vPixel + n);
    }
    return vWeights;
}

}  // namespace

TEST(BuildWeight, WeighsSmoothedBrightnessThroughTheTable)
{
    ThreadsScope one(1);
    for (int n = 1; n <= kMaxExposures; ++n) {
        for (int nSelect = 0; nSelect < 3; ++nSelect) {
            SCOPED_TRACE(testing::Message() << n << " exposures, select " << nSelect);
            WeightBurst burst(19, 13, n);
            burst.params.nFusionWeightSelect = nSelect;
            ASSERT_GT(burst.Build(), 0);
            EXPECT_EQ(SlowLevel0(burst, true), Samples(burst.vWeights[0]));
        }
    }
}

// The table is left out for luma and smallest sample, in the second build alone.
TEST(RebuildWeight, TakesPlainBrightnessButForTheLargestSample)
{
    for (const int n : {2, 3, 8}) {
        for (int nSelect = 0; nSelect < 3; ++nSelect) {
            WeightBurst burst(300, 9, n);
            burst.params.nFusionWeightSelect = nSelect;
            const auto vWant = SlowLevel0(burst, nSelect == 1);
            ForThreads([&](int nThreads) {
                SCOPED_TRACE(testing::Message() << n << " exposures, select " << nSelect << ", threads " << nThreads);
                ASSERT_GT(burst.Rebuild(), 0);
                EXPECT_EQ(vWant, Samples(burst.vWeights[0]));
            });
        }
    }
}

TEST(BuildWeight, SumsTo128AtLevel0AndNearlyBelow)
{
    WeightBurst burst(100, 75, 3);
    ASSERT_EQ(7, burst.Build());  // 100 50 25 13 7 4 2
    for (int i = 0; i < 7; ++i) {
        const CImage& level = burst.vWeights[i];
        for (size_t p = 0; p < level.Samples(); p += 3) {
            const int nSum = level.pData[p] + level.pData[p + 1] + level.pData[p + 2];
            ASSERT_LE(nSum, 128);
            ASSERT_GE(nSum, i == 0 ? 128 : 128 - 3 * i);  // a halving drops less than one of each exposure
        }
    }
}

TEST(BuildWeight, EndsByTheWidthAlone)
{
    const struct {
        int w, h, nTopLevel, nLevels, nLastWidth, nLastHeight;
    } vCases[] = {{40, 3, 1, 6, 2, 1},  {3, 40, 1, 2, 2, 20}, {2, 9, 1, 1, 2, 9},   {33, 20, 0, 7, 1, 1},
                  {33, 20, 4, 3, 9, 5}, {1, 1, 0, 1, 1, 1},   {16, 5, 4, 1, 16, 5}, {500, 2, 10, 1, 500, 2}};
    for (const auto& wanted : vCases) {
        for (const int bFilter : {0, 1}) {
            SCOPED_TRACE(testing::Message() << wanted.w << " x " << wanted.h << ", filter " << bFilter);
            WeightBurst burst(wanted.w, wanted.h, 3);
            ASSERT_EQ(wanted.nLevels, burst.Build(PyramidWith(wanted.nTopLevel, bFilter)));
            const CImage& last = burst.vWeights[wanted.nLevels - 1];
            EXPECT_EQ(wanted.nLastWidth, last.nWidth);
            EXPECT_EQ(wanted.nLastHeight, last.nHeight);
            EXPECT_EQ(3, last.nDim);
            ASSERT_EQ(wanted.nLevels, burst.Rebuild(PyramidWith(wanted.nTopLevel, bFilter)));
        }
    }
}

TEST(BuildWeight, PassesTheDitherOfOtherPicturesDown)
{
    WeightBurst plain(64, 48, 3), dithered(64, 48, 3);
    PyramidParams pyramid = PyramidWith(1, 1);
    ASSERT_GT(plain.Build(pyramid), 0);
    pyramid.bDownScaleImageDither = pyramid.bUpScaleOtherDither = 1;  // those are not for it
    ASSERT_GT(dithered.Build(pyramid), 0);
    EXPECT_EQ(Samples(plain.vWeights[1]), Samples(dithered.vWeights[1]));
    pyramid.bDownScaleOtherDither = 1;
    ASSERT_GT(dithered.Build(pyramid), 0);
    EXPECT_NE(Samples(plain.vWeights[1]), Samples(dithered.vWeights[1]));
}

TEST(BuildWeight, WaitsUntilEveryExposureIsReady)
{
    WeightBurst burst(24, 16, 3);
    ThreadsScope one(1);
    const auto vWant = SlowLevel0(burst, true);
    LinesScope quiet;
    ReadyFlags flags;
    flags.Reset();
    int nLevels = 0;
    std::thread builder([&] {
        omp_set_num_threads(1);
        nLevels = BuildWeight({burst.vFrames, 3, 1}, burst.params, FaceAim{}, PyramidWith(1), flags, burst.vWeights);
    });
    for (const int k : {2, 0, 1}) {
        std::this_thread::sleep_for(std::chrono::milliseconds(8));
        flags.SetReady(k);
    }
    builder.join();
    EXPECT_EQ(5, nLevels);
    EXPECT_EQ(vWant, Samples(burst.vWeights[0]));
}

TEST(BuildWeight, RefusesFramesThatDoNotFit)
{
    WeightBurst burst(24, 16, 3);
    ASSERT_TRUE(burst.vFrames[2].Allocate(24, 15));
    EXPECT_EQ(0, burst.Build());
    EXPECT_EQ(0, burst.Rebuild());
    burst.vFrames[2].Release();
    EXPECT_EQ(0, burst.Build());
    EXPECT_EQ(0, burst.Rebuild());
    burst.nExposureNum = 0;
    EXPECT_EQ(0, burst.Build());
    EXPECT_EQ(0, burst.Rebuild());
}

}  // namespace vkr
