#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "foundation/log.h"
#include "ghosts/ghost_process_filter.h"
#include "support/for_threads.h"
#include "support/quiet_lines.h"
#include "support/random_image.h"

namespace vkr {

namespace {

// Exposures of a slope with fine stripes, each twice as bright as the one before, with noise; where the burst is not
// still a brighter disc moves by its diameter a frame.
struct DrawnBurst {
    DrawnBurst(int w, int h, int nExposures, bool bStill) : nExposureNum(nExposures), nRadius(std::min(w, h) / 6)
    {
        std::mt19937 rng(511);
        std::normal_distribution<float> noise(0.0f, 1.5f);
        for (int k = 0; k < nExposures; ++k) {
            FillConstant(vFrames[k], w, h, 3, 0);
            FillConstant(vMasks[k], w, h, 1, 255);
            for (int y = 0; y < h; ++y) {
                for (int x = 0; x < w; ++x) {
                    const int nLight = !bStill && InDisc(x, y, k) ? 60 + (x & 4) : 24 + 20 * x / w + (y & 8);
                    for (int c = 0; c < 3; ++c) {
                        const int v = (nLight << k) + static_cast<int>(noise(rng));
                        vFrames[k].Row(y)[3 * x + c] = static_cast<uint8_t>(std::clamp(v, 0, 255));
                    }
                }
            }
        }
    }
    bool InDisc(int x, int y, int k, int nMargin = 0) const
    {
        const int dx = x - vFrames[0].nWidth / 4 - 2 * k * nRadius, dy = y - vFrames[0].nHeight / 2;
        return dx * dx + dy * dy < (nRadius + nMargin) * (nRadius + nMargin);
    }
    bool Detect(int nReference, const PyramidParams& pyramid = {})
    {
        LinesScope lines;
        return filter.DetectGhost({vFrames, nExposureNum, nReference}, vMasks, pyramid, {}, map);
    }
    // Share of the pixels that the map marks, of those inside any disc or of those well outside of all.
    double ShareMarked(bool bInside) const
    {
        int nAll = 0, nMarked = 0;
        for (int y = 0; y < map.nHeight; ++y) {
            for (int x = 0; x < map.nWidth; ++x) {
                bool bDisc = false;
                for (int k = 0; k < nExposureNum; ++k) bDisc |= InDisc(x, y, k, bInside ? 0 : 16);
                nAll += bDisc == bInside;
                nMarked += bDisc == bInside && map.Row(y)[x] > 64;
            }
        }
        return static_cast<double>(nMarked) / nAll;
    }

    int nExposureNum, nRadius;
    TestImage vFrames[8], vMasks[8], map;
    CGhostProcessFilter filter;
};

}  // namespace

TEST(DetectGhost, FindsAMovedDiscAndNothingInAStillBurst)
{
    for (const int nReference : {0, 1, 2}) {
        SCOPED_TRACE(nReference);
        DrawnBurst moving(320, 240, 3, false), still(320, 240, 3, true);
        for (DrawnBurst* pBurst : {&moving, &still}) {
            pBurst->filter.nGhostPyramidStartLevel = 3;
            pBurst->filter.nMinGhostLevel = 1;
            pBurst->filter.nGrayCloseItAtGhostStartLevel = 1;
            pBurst->filter.nGhostCloseIter = 4;
        }
        ASSERT_TRUE(moving.Detect(nReference) && still.Detect(nReference));
        EXPECT_EQ(320, moving.map.nWidth);
        EXPECT_EQ(240, moving.map.nHeight);
        EXPECT_EQ(1, moving.map.nDim);
        EXPECT_GT(moving.ShareMarked(true), 0.95);
        EXPECT_LT(moving.ShareMarked(false), 0.05);
        EXPECT_EQ(0.0, still.ShareMarked(true) + still.ShareMarked(false));
    }
}

TEST(DetectGhost, GivesTheSameBytesFromAnyTeam)
{
    for (const int bFilter : {0, 1}) {
        PyramidParams pyramid;
        pyramid.bPyramidFilter = bFilter;
        pyramid.bUpScaleImageDither = pyramid.bDownScaleImageDither = pyramid.bUpScaleOtherDither = 1;
        DrawnBurst burst(201, 133, 5, false);
        burst.filter.nMinGhostLevel = 0;
        burst.filter.nGhostDilationIt = 1;
        std::vector<uint8_t> vWant;
        ForThreads([&](int nThreads) {
            SCOPED_TRACE(nThreads);
            ASSERT_TRUE(burst.Detect(2, pyramid));
            EXPECT_EQ(202, burst.map.nWidth);
            EXPECT_EQ(134, burst.map.nHeight);
            if (vWant.empty()) vWant = Samples(burst.map);
            EXPECT_GT(*std::max_element(vWant.begin(), vWant.end()), 64);
            EXPECT_EQ(vWant, Samples(burst.map));
        });
    }
}

TEST(DetectGhost, TakesTheMaskAtItsOwnWidth)
{
    DrawnBurst burst(160, 120, 2, false);
    ASSERT_TRUE(burst.Detect(0));
    const std::vector<uint8_t> vWant = Samples(burst.map);
    FillConstant(burst.vMasks[0], 320, 250, 1, 1);  // 1 is covered, too
    FillConstant(burst.vMasks[1], 3, 5, 1, 0);      // not the reference's
    ASSERT_TRUE(burst.Detect(0));
    EXPECT_EQ(vWant, Samples(burst.map));
    for (const int nSide : {0, 40}) {
        FillConstant(burst.vMasks[0], nSide, nSide, 1, 0);  // covers nothing: the darker exposure is mapped to black
        ASSERT_TRUE(burst.Detect(0));
        EXPECT_NE(vWant, Samples(burst.map));
    }
}

TEST(DetectGhost, IsSafeAtAnySizeAndLevelSetting)
{
    const ThreadsScope scope(1);
    for (const auto& [w, h] : {std::pair{1, 1}, {1, 6}, {7, 1}, {2, 2}, {5, 3}, {33, 18}}) {
        for (const int nStart : {0, 2, 8}) {
            for (const int nFinest : {0, 1, 4, 8}) {
                for (int nFlags = 0; nFlags < 8; ++nFlags) {
                    SCOPED_TRACE(testing::Message() << w << "x" << h << " levels " << nStart << " " << nFinest);
                    DrawnBurst burst(w, h, 1 + nFlags % 3, false);
                    burst.filter.nGhostPyramidStartLevel = nStart;
                    burst.filter.nMinGhostLevel = nFinest;
                    burst.filter.bRefineGhostAtMinGhostLevel = nFlags & 1;
                    burst.filter.bRefineGhostAtFullRes = nFlags >> 1 & 1;
                    burst.filter.bSaturateNoGhostEnable = burst.filter.nGhostDilationIt = nFlags >> 2;
                    PyramidParams pyramid;
                    pyramid.bPyramidFilter = nFlags >> 2;
                    ASSERT_TRUE(burst.Detect(burst.nExposureNum - 1, pyramid));
                    EXPECT_EQ((w + 1) / 2 * 2, burst.map.nWidth);
                    EXPECT_EQ((h + 1) / 2 * 2, burst.map.nHeight);
                    if (burst.nExposureNum == 1 || (nStart < nFinest && nFlags & 1)) {
                        EXPECT_EQ(0, *std::max_element(burst.map.pData, burst.map.pData + burst.map.Samples()));
                    }
                }
            }
        }
    }
}

TEST(DetectGhost, CrossedLevelsAreLogged)
{
    DrawnBurst burst(33, 18, 2, false);
    burst.filter.nGhostPyramidStartLevel = 1;
    burst.filter.nMinGhostLevel = 2;
    burst.filter.bRefineGhostAtMinGhostLevel = 1;
    g_bLogEnable = 1;
    testing::internal::CaptureStderr();
    EXPECT_TRUE(burst.Detect(0));
    g_bLogEnable = 0;
    EXPECT_NE(std::string::npos, testing::internal::GetCapturedStderr().find(
                                     "nGhostPyramidStartLevel=1 is finer than nMinGhostLevel=2, no ghost is found\n"));
}

TEST(DetectGhost, RefusesABurstThatIsNone)
{
    DrawnBurst burst(32, 32, 2, false);
    EXPECT_FALSE(burst.Detect(2));
    EXPECT_FALSE(burst.Detect(-1));
    FillConstant(burst.vFrames[1], 32, 30, 3, 9);
    EXPECT_FALSE(burst.Detect(0));
    burst.nExposureNum = 9;
    EXPECT_FALSE(burst.Detect(0));
}

}  // namespace vkr
