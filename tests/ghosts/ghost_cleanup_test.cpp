#include "ghosts/ghost_cleanup.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <random>
#include <string>

#include "primitives/smooth.h"
#include "support/quiet_lines.h"
#include "support/random_image.h"

namespace vkr {

namespace {

const GhostDumps kNoDumps(false, 0);

void FillRect(CImage& image, int x1, int y1, int x2, int y2, int nValue)
{
    for (int y = y1; y < y2; ++y) std::fill(image.Row(y) + x1, image.Row(y) + x2, static_cast<uint8_t>(nValue));
}

int CountOf(const CImage& image, int nValue)
{
    return static_cast<int>(std::count(image.pData, image.pData + image.Samples(), nValue));
}

// A level whose pictures are flat and of one brightness, and a mask on it. Nothing is prepared unless the test asks.
struct RefineCase {
    RefineCase(int w, int h, int nDark, int nBright)
    {
        FillConstant(ghost, w, h, 1, 0);
        FillConstant(dark, w, h, 3, nDark);
        FillConstant(bright, w, h, 3, nBright);
        FillConstant(edgesDark, w, h, 3, 0);
        FillConstant(edgesBright, w, h, 3, 0);
        params.bCloseBfRefine = 0;
        params.nCheckThre[0] = params.nCheckThre[1] = 1;
        params.nMaxCheckThreIt = 16;
    }
    bool Refine(int nMaxIt)
    {
        return RefineGhost(ghost, {dark, edgesDark}, {bright, edgesBright}, nMaxIt, params, kNoDumps);
    }

    TestImage ghost, dark, bright;
    TestShortImage edgesDark, edgesBright;
    CGhostProcessFilter params;
};

// Blocks of nSide pixels, each of one random value.
void FillBlocks(std::mt19937& rng, CImage& image, int nSide, int lo, int hi)
{
    const int nCols = image.nWidth / nSide + 1;
    const auto vValues = RandomRow<uint8_t>(rng, static_cast<size_t>(nCols) * (image.nHeight / nSide + 1), lo, hi);
    for (int y = 0; y < image.nHeight; ++y) {
        for (int i = 0; i < image.RowSamples(); ++i) {
            image.Row(y)[i] = vValues[y / nSide * nCols + i / image.nDim / nSide];
        }
    }
}

// The shrinking alone, pixel by pixel; the number of rounds.
int SlowShrink(CImage& ghost, const RefineCase& c, int nMaxIt)
{
    TestImage vBlurs[2];
    EXPECT_TRUE(vBlurs[0].CopyFrom(c.dark) && vBlurs[1].CopyFrom(c.bright));
    for (TestImage& blur : vBlurs) EXPECT_TRUE(CSmoothFilter5x5::SmoothImage8(blur, blur, true));
    const int w = ghost.nWidth, h = ghost.nHeight;
    const auto Inside = [&](int x, int y) { return x >= 0 && x < w && y >= 0 && y < h && ghost.Row(y)[x] > 64; };
    int nRounds = 0;
    for (bool bChanged = true; bChanged && nRounds <= nMaxIt; ++nRounds) {
        bChanged = false;
        for (int i = 0; i < 2 * w * h; ++i) {
            const bool bForward = i < w * h;
            const int nPixel = bForward ? i : 2 * w * h - 1 - i, x = nPixel % w, y = nPixel / w, d = bForward ? 1 : -1;
            const bool bPassed = Inside(x - d, y) || Inside(x - 1, y - d) || Inside(x, y - d) || Inside(x + 1, y - d);
            if (!Inside(x, y) || bPassed) continue;
            int nFlat = 0, vBright[2] = {};
            for (int k = 3 * nPixel; k < 3 * nPixel + 3; ++k) {
                nFlat += (std::abs(c.edgesDark.pData[k]) < 8) + (std::abs(c.edgesBright.pData[k]) < 8);
                for (int n = 0; n < 2; ++n) vBright[n] += vBlurs[n].pData[k] > 220;
            }
            const bool bGo = bForward && y == 0 ? nFlat > 0 && vBright[0] + vBright[1] > 0
                                                : nFlat == 6 && (vBright[0] == 3 || vBright[1] == 3);
            if (bGo) ghost.Row(y)[x] = 0;
            bChanged |= bGo;
        }
    }
    return nRounds;
}

}  // namespace

TEST(CheckThre, KeepsWeakGhostsOnlyBesideStrongOnes)
{
    LinesScope lines;
    const CGhostProcessFilter params{};
    TestImage ghost;
    FillConstant(ghost, 60, 40, 1, 20);
    FillRect(ghost, 5, 5, 30, 30, 40);  // weak, with a seed of 9 x 9 inside
    FillRect(ghost, 10, 10, 19, 19, 120);
    FillRect(ghost, 35, 5, 55, 25, 50);  // weak, with a seed that is one row too low
    FillRect(ghost, 40, 10, 49, 18, 128);
    ASSERT_TRUE(CheckThre(ghost, 32, 120, params, kNoDumps));
    EXPECT_EQ(81, CountOf(ghost, 120));
    EXPECT_EQ(25 * 25 - 81, CountOf(ghost, 40));
    EXPECT_EQ(60 * 40 - 25 * 25, CountOf(ghost, 0));
    EXPECT_TRUE(lines.Contains("CheckThre Iteration=2 \n"));
    ASSERT_TRUE(CheckThre(ghost, 32, 121, params, kNoDumps));
    EXPECT_EQ(60 * 40, CountOf(ghost, 0));
}

// A path one pixel wide leaves the seed at its right end and winds; each of its turns against a scan costs a round.
TEST(CheckThre, GrowsAlongTheScansAndStopsAtTheRounds)
{
    LinesScope lines;
    CGhostProcessFilter params;
    for (const int nRounds : {1, 2, 3}) {
        SCOPED_TRACE(nRounds);
        TestImage ghost;
        FillConstant(ghost, 40, 40, 1, 0);
        FillRect(ghost, 0, 20, 20, 40, 128);
        FillRect(ghost, 20, 30, 31, 31, 40);  // right: forward
        FillRect(ghost, 30, 10, 31, 30, 41);  // up: backward
        FillRect(ghost, 30, 10, 40, 11, 42);  // right: forward
        FillRect(ghost, 39, 0, 40, 10, 43);   // up: backward
        FillRect(ghost, 0, 0, 39, 1, 44);     // left: backward
        FillRect(ghost, 0, 2, 1, 10, 45);     // one row apart from the path: never
        params.nMaxCheckThreIt = nRounds;
        ASSERT_TRUE(CheckThre(ghost, 32, 120, params, kNoDumps));
        EXPECT_EQ(400, CountOf(ghost, 128));
        EXPECT_EQ(11, CountOf(ghost, 40));
        EXPECT_EQ(19, CountOf(ghost, 41));
        EXPECT_EQ(nRounds > 1 ? 10 : 2, CountOf(ghost, 42));
        EXPECT_EQ(nRounds > 1 ? 10 : 0, CountOf(ghost, 43));
        EXPECT_EQ(nRounds > 1 ? 39 : 0, CountOf(ghost, 44));
        EXPECT_EQ(0, CountOf(ghost, 45));
    }
}

TEST(RefineGhost, FadesSaturatedPlacesAndChecksSizes)
{
    LinesScope lines;
    for (const auto& [nLuma, nWant] : {std::pair{220, 128}, {221, 124}, {251, 4}, {252, 0}, {255, 0}}) {
        RefineCase c(24, 24, 0, nLuma);
        // More blue: the luma has a half in its fraction, which is dropped.
        for (size_t i = 0; i < c.bright.Samples(); i += 3)
            c.bright.pData[i] = static_cast<uint8_t>(std::min(nLuma + 4, 255));
        FillRect(c.ghost, 0, 0, 24, 24, 128);
        c.params.bSaturateNoGhostEnable = 1;
        c.params.nRefineGhostBrTh = 255;
        ASSERT_TRUE(c.Refine(0));
        EXPECT_EQ(24 * 24, CountOf(c.ghost, nWant)) << nLuma;
    }
    RefineCase c(8, 8, 0, 0);
    FillConstant(c.edgesDark, 8, 7, 3, 0);
    EXPECT_FALSE(c.Refine(0));
}

TEST(RefineGhost, EqualsASlowWritingAtAnySize)
{
    std::mt19937 rng(57);
    for (const auto& [w, h] : {std::pair{1, 1}, {1, 9}, {9, 1}, {2, 7}, {3, 3}, {40, 31}, {31, 40}}) {
        for (const int nMaxIt : {-1, 0, 1, 16}) {
            SCOPED_TRACE(testing::Message() << w << "x" << h << " rounds " << nMaxIt);
            RefineCase c(w, h, 0, 0);
            FillBlocks(rng, c.ghost, 12, 62, 67);  // beside the limit of 64
            FillBlocks(rng, c.dark, 6, 215, 255);
            FillBlocks(rng, c.bright, 6, 215, 255);
            FillRandom(rng, c.edgesDark, w, h, 3, -8, 7);
            FillRandom(rng, c.edgesBright, w, h, 3, -7, 8);
            TestImage want;
            LinesScope lines;
            ASSERT_TRUE(c.Refine(-1));  // as prepared
            ASSERT_TRUE(want.CopyGrayFrom(c.ghost));
            const int nRounds = SlowShrink(want, c, nMaxIt);
            LinesScope::Text().clear();
            ASSERT_TRUE(c.Refine(nMaxIt));
            EXPECT_EQ(Samples(want), Samples(c.ghost));
            EXPECT_TRUE(lines.Contains("RefineGhostIteration=" + std::to_string(nRounds) + "\n"));
        }
    }
}

}  // namespace vkr
