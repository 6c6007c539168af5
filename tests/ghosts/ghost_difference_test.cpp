#include "ghosts/ghost_difference.h"

#include <gtest/gtest.h>

#include <cstring>
#include <random>

#include <algorithm>
#include <array>
#include <vector>

#include "primitives/morphology.h"
#include "primitives/smooth.h"
#include "support/random_image.h"

namespace vkr {

namespace {

// Both sides of a level, the same in every channel and pixel.
struct Sides {
    Sides(int w, int h, int nEdgeDark, int nEdgeBright, int nDark, int nBright)
    {
        FillConstant(edgesDark, w, h, 3, nEdgeDark);
        FillConstant(edgesBright, w, h, 3, nEdgeBright);
        FillConstant(dark, w, h, 3, nDark);
        FillConstant(bright, w, h, 3, nBright);
    }
    GhostSide Dark() const { return {dark, edgesDark}; }
    GhostSide Bright() const { return {bright, edgesBright}; }

    TestImage dark, bright;
    TestShortImage edgesDark, edgesBright;
};

struct Filter : CGhostProcessFilter {
    explicit Filter(bool bFiltered) { bDiffHVFilterEnable = bDiffFinalFilterEnable = bErodeDiffEnable = bFiltered; }
};

int DiffOf(const Sides& sides, const Filter& params, int nList = 0)
{
    TestImage diff;
    EXPECT_TRUE(BuildDiffImage(sides.Dark(), sides.Bright(), params, nList, diff));
    return diff.pData[0];
}

std::array<uint8_t, 256> ThresholdTable(int t0, int t1, int t2)
{
    TestImage values, ghost;
    FillConstant(values, 256, 1, 1, 0);
    for (int v = 0; v < 256; ++v) values.pData[v] = static_cast<uint8_t>(v);
    const int32_t vThre[3] = {t0, t1, t2};
    EXPECT_TRUE(ApplyGhostThre(values, vThre, ghost));
    std::array<uint8_t, 256> table;
    std::copy_n(ghost.pData, 256, table.begin());
    return table;
}

}  // namespace

TEST(BuildDiffImage, WeighsStructureAgainstItsStrength)
{
    Filter params(false);
    EXPECT_EQ(0, DiffOf({1, 1, 4, -4, 90, 90}, params));     // cored away
    EXPECT_EQ(100, DiffOf({1, 1, 10, -3, 90, 90}, params));  // 18 * 128 / (8 + 15): the strength is of uncored values
    EXPECT_EQ(100, DiffOf({1, 1, -10, 3, 90, 90}, params));
    EXPECT_EQ(133, DiffOf({1, 1, 11, -3, 90, 90}, params));     // (49 + 1) / 2 * 128 / (8 + 16)
    EXPECT_EQ(128, DiffOf({1, 1, 255, -255, 90, 90}, params));  // 32767 * 128 / 32520: both terms have a limit
    Sides mixed(1, 1, 0, 0, 90, 90);
    mixed.edgesDark.pData[0] = -3;  // weighs -6 / 16, which is 0
    params.nEdgeTh[1] = 0;
    EXPECT_EQ(0, DiffOf(mixed, params, 1));
    params.nDiffEThre2[7] = 30;
    EXPECT_EQ(70, DiffOf({1, 1, 10, -3, 90, 90}, params, 7));
    EXPECT_EQ(100, DiffOf({1, 1, 10, -3, 90, 90}, params, 6));
}

TEST(BuildDiffImage, WeighsBrightnessAroundMidGrey)
{
    Filter params(false);
    EXPECT_EQ(0, DiffOf({1, 1, 0, 0, 100, 107}, params));    // inside the dead zone
    EXPECT_EQ(116, DiffOf({1, 1, 0, 0, 100, 140}, params));  // 4 * ((128 - 12) * (40 - 8) >> 7)
    EXPECT_EQ(116, DiffOf({1, 1, 0, 0, 140, 100}, params));
    EXPECT_EQ(4, DiffOf({1, 1, 0, 0, 0, 20}, params));  // 4 * (20 * 12 >> 7)
    params.nDiffBrThre2[0] = 16;
    EXPECT_EQ(100, DiffOf({1, 1, 0, 0, 100, 140}, params));
}

// What is the same everywhere passes every filter but for the bits that the erosion compares, here with themselves.
TEST(BuildDiffImage, FiltersKeepAConstantPictureAndDropASpeck)
{
    for (const int bSquare : {0, 1}) {
        Filter params(true);
        params.bErodeSqaureEnable = bSquare;
        Sides sides(20, 13, 10, -3, 90, 90);
        TestImage diff;
        ASSERT_TRUE(BuildDiffImage(sides.Dark(), sides.Bright(), params, 0, diff));
        EXPECT_EQ(std::vector<uint8_t>(20 * 13, 100), Samples(diff));
        FillConstant(sides.edgesBright, 20, 13, 3, 10);
        for (int c = 0; c < 3; ++c) sides.bright.Row(6)[30 + c] = 110;  // alone, 40: the smoothing leaves it little
        ASSERT_TRUE(BuildDiffImage(sides.Dark(), sides.Bright(), params, 0, diff));
        EXPECT_LT(*std::max_element(diff.pData, diff.pData + diff.Samples()), 4);
    }
    Sides sides(4, 4, 0, 0, 0, 0);
    TestImage diff;
    FillConstant(sides.edgesDark, 4, 3, 3, 0);
    EXPECT_FALSE(BuildDiffImage(sides.Dark(), sides.Bright(), Filter(true), 0, diff));
}

TEST(ApplyGhostThre, RisesInTwoSegmentsWithATruncatedSlope)
{
    const auto table = ThresholdTable(32, 64, 96);
    const std::pair<int, int> vWant[] = {{0, 0},   {31, 0},  {32, 0},   {33, 2},   {48, 32},  {63, 62},
                                         {64, 64}, {65, 66}, {95, 126}, {96, 128}, {255, 128}};
    for (const auto& [v, nGhost] : vWant) EXPECT_EQ(nGhost, table[v]) << v;
    EXPECT_EQ(42, ThresholdTable(10, 13, 16)[12]);  // (2 * 64 + 1) * 21845 >> 16; an exact third gives 43
    EXPECT_EQ(55, ThresholdTable(10, 17, 24)[16]);  // (6 * 64 + 3) * 9362 >> 16, 54 without the rounding
}

TEST(ApplyGhostThre, LeavesOutSegmentsWithoutALength)
{
    const auto noFirst = ThresholdTable(64, 64, 96), noSecond = ThresholdTable(32, 64, 64),
               step = ThresholdTable(9, 9, 9);
    EXPECT_EQ(0, noFirst[63]);
    EXPECT_EQ(64, noFirst[64]);
    EXPECT_EQ(62, noSecond[63]);
    EXPECT_EQ(128, noSecond[64]);
    EXPECT_EQ(0, step[8]);
    EXPECT_EQ(128, step[9]);
    const auto reversed = ThresholdTable(200, 100, 50);
    EXPECT_EQ(0, reversed[199]);
    EXPECT_EQ(128, reversed[200]);
}

// Sparse spots against a closing that works on all of the picture.
void ExpectGhostCloseAsOnTheWholePicture()
{
    std::mt19937 rng(5);
    for (int nRun = 0; nRun < 60; ++nRun) {
        const int w = 1 + static_cast<int>(rng() % 40), h = 1 + static_cast<int>(rng() % 40), nRounds = 1 + nRun % 4;
        TestImage ghost, wide;
        FillConstant(ghost, w, h, 1, 0);
        FillConstant(wide, w + 4 * nRounds, h + 4 * nRounds, 1, 0);
        for (uint32_t i = rng() % 9; i > 0; --i) {
            const int x = static_cast<int>(rng() % w), y = static_cast<int>(rng() % h);
            ghost.Row(y)[x] = wide.Row(y + 2 * nRounds)[x + 2 * nRounds] = static_cast<uint8_t>(1 + rng() % 128);
        }
        for (int i = 0; i < nRounds; ++i) {
            CMorphologyFilter::DilateGraySquareFast(wide, wide);
            CMorphologyFilter::DilateGrayCrossFast(wide, wide);
        }
        for (int i = 0; i < nRounds; ++i) {
            CMorphologyFilter::ErodeGraySquareFast(wide, wide);
            CMorphologyFilter::ErodeGrayCrossFast(wide, wide);
        }
        ASSERT_TRUE(GhostClose(ghost, nRounds));
        for (int y = 0; y < h; ++y) {
            ASSERT_EQ(0, std::memcmp(ghost.Row(y), wide.Row(y + 2 * nRounds) + 2 * nRounds, static_cast<size_t>(w)));
        }
    }
}

TEST(GhostClose, JoinsWhatItsRoundsReachAndGrowsNothingAtTheBorder)
{
    for (const int nRounds : {0, 1, 3}) {
        SCOPED_TRACE(nRounds);
        // Bars over the full height with gaps of 4 and 5 pixels a round, the first at the left border.
        const int nGap = 4 * nRounds, xGap = 10, xFar = xGap + nGap + 10, w = xFar + nGap + 1 + 10, h = 41;
        TestImage ghost;
        FillConstant(ghost, w, h, 1, 90);
        for (int y = 0; y < h; ++y) {
            std::fill_n(ghost.Row(y) + xGap, nGap, uint8_t{7});
            std::fill_n(ghost.Row(y) + xFar, nGap + 1, uint8_t{7});
        }
        ASSERT_TRUE(GhostClose(ghost, nRounds));
        for (int x = 0; x < w; ++x) EXPECT_EQ(x < xFar || x > xFar + nGap ? 90 : 7, ghost.Row(h / 2)[x]) << x;
    }
    ExpectGhostCloseAsOnTheWholePicture();
    TestImage corner;
    FillConstant(corner, 20, 12, 1, 0);
    for (int y = 0; y < 3; ++y) std::fill_n(corner.Row(y), 3, uint8_t{128});
    const std::vector<uint8_t> vBefore = Samples(corner);
    ASSERT_TRUE(GhostClose(corner, 8));
    EXPECT_EQ(vBefore, Samples(corner));
}

}  // namespace vkr
