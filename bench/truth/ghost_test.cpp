#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

#include "foundation/mem_pool.h"
#include "truth/ghost_table.h"

namespace vkr::truth {
namespace {

class GhostTruthTest : public ::testing::Test {
protected:
    void SetUp() override { PoolInit(0); }
    void TearDown() override { PoolRelease(); }
};

constexpr unsigned kMoving[] = {1, 2, 4};

// The largest luma difference between frames k and k + 1, for both k, in the four pixels of a working pixel.
int LargestDifference(const GhostBurst& burst, int x, int y)
{
    int nLargest = 0;
    for (int i = 0; i < 8; ++i) {
        const int nX = 2 * x + i % 2, nY = 2 * y + i / 2 % 2;
        const CYuvImage &dark = burst.Frame(i / 4), &bright = burst.Frame(i / 4 + 1);
        nLargest = std::max(nLargest, std::abs(dark.RowY(nY)[nX] - bright.RowY(nY)[nX]));
    }
    return nLargest;
}

// Without noise and at one exposure the frames themselves tell what moved.
TEST_F(GhostTruthTest, IsWhereTheFramesDiffer)
{
    Exposing exposing;
    exposing.fStops = exposing.fNoise = 0;
    for (uint32_t nSeed = 0; nSeed < 4; ++nSeed) {
        const GhostScene scene({320, 240, nSeed, 0});
        GhostBurst burst;
        ASSERT_TRUE(burst.Draw(scene, kMoving, exposing));
        const std::vector<GhostTruth> vTruth = FindGhostTruth(scene, exposing);
        int vCount[3] = {};
        for (int i = 0; i < 160 * 120; ++i) {
            const GhostTruth truth = vTruth[static_cast<size_t>(i)];
            ++vCount[static_cast<int>(truth)];
            const int x = i % 160, y = i / 160, nDifference = LargestDifference(burst, x, y);
            const bool bRim =
                std::any_of(vTruth.begin() + std::max(0, i - 161), vTruth.begin() + std::min(160 * 120, i + 162),
                            [](GhostTruth t) { return t != GhostTruth::kStill; });
            const bool bStill = truth == GhostTruth::kStill && !bRim, bGhost = truth == GhostTruth::kGhost;
            ASSERT_TRUE(!bStill || nDifference == 0) << nSeed << ": " << x << ", " << y;
            ASSERT_TRUE(!bGhost || nDifference > 12) << nSeed << ": " << x << ", " << y;
        }
        const double fDisc = 3.14159 * scene.Radius() * scene.Radius() / 4;
        EXPECT_GT(vCount[2], fDisc) << nSeed;
        EXPECT_LT(vCount[1] + vCount[2], 3.1 * fDisc) << nSeed;
    }
}

TEST_F(GhostTruthTest, PresenceTellsWhereTheDiscStands)
{
    const unsigned vNone[] = {0, 0, 0}, vAll[] = {7, 7, 7};
    const GhostScene scene({320, 240, 5, 1.0F});
    Exposing exposing;
    exposing.fStops = 0;
    GhostBurst moving, nowhere, everywhere;
    ASSERT_TRUE(moving.Draw(scene, kMoving, exposing) && nowhere.Draw(scene, vNone, exposing) &&
                everywhere.Draw(scene, vAll, exposing));
    const CYuvImage &none = nowhere.Frame(0), &all = everywhere.Frame(0);
    for (int k = 0; k < GhostBurst::kExposures; ++k) {
        const DiscPresence presence = MeasurePresence(scene, moving.Frame(k), none, all);
        for (int i = 0; i < GhostBurst::kExposures; ++i) EXPECT_NEAR(i == k ? 1 : 0, presence.vOf[i], 0.05);
        EXPECT_TRUE(presence.IsOnePlace() && presence.LargestTrace() < 0.05) << k;
    }
    EXPECT_FALSE(MeasurePresence(scene, none, none, all).IsOnePlace());
    EXPECT_FALSE(MeasurePresence(scene, all, none, all).IsOnePlace());
    CYuvImage mean{};
    ASSERT_TRUE(mean.CopyFrom(moving.Frame(0)));
    for (int i = 0; i < 320 * 240; ++i) mean.pY[i] = static_cast<uint8_t>((mean.pY[i] + moving.Frame(1).pY[i]) / 2);
    const DiscPresence twice = MeasurePresence(scene, mean, none, all);
    mean.Release();
    EXPECT_FALSE(twice.IsOnePlace());
    EXPECT_NEAR(0.5, twice.LargestTrace(), 0.05);
}

TEST_F(GhostTruthTest, AMapIsScoredByGhostsAndStillPictureApart)
{
    using T = GhostTruth;
    CImage map{};
    ASSERT_TRUE(map.AllocateGray(4, 3));  // one column and row more than the truth
    const uint8_t vMap[] = {65, 64, 0, 128, 128, 0, 65, 128, 128, 128, 128, 128};
    std::copy(std::begin(vMap), std::end(vMap), map.pData);
    const std::vector<T> vTruth{T::kGhost, T::kGhost, T::kStill, T::kPassing, T::kStill, T::kStill};
    const MapScore score = ScoreMap(map, vTruth, 3, 64);
    EXPECT_DOUBLE_EQ(0.5, score.fCovered);
    EXPECT_DOUBLE_EQ(1.0 / 3, score.fMarked);
    map.Release();
    EXPECT_EQ(0, ScoreMap(map, vTruth, 3, 64).fCovered);
}

}  // namespace
}  // namespace vkr::truth
