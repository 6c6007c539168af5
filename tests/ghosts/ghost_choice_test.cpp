#include "ghosts/ghost_choice.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "primitives/regions.h"
#include "support/random_image.h"

namespace vkr {

namespace {

// A region of 1000 pixels with an edge of 100, mean weights as listed, edge and all.
RegionStats StatsOf(const std::vector<int>& vMeans, const std::vector<int>& vEdgeMeans = {})
{
    RegionStats stats = {};
    stats.nArea = 1000;
    stats.nEdgeLen = 100;
    for (size_t k = 0; k < vMeans.size(); ++k) {
        stats.vWeightSum[k] = 1000 * vMeans[k] + 999;  // the mean truncates
        stats.vEdgeWeightSum[k] = 100 * (vEdgeMeans.empty() ? vMeans[k] : vEdgeMeans[k]) + 99;
    }
    return stats;
}

int Choose(const RegionStats& stats, int n, const GhostEmbedParams& params)
{
    return ChooseExposure(stats, n, params, 0, 0);
}

}  // namespace

TEST(ChooseExposure, StartsFromTheLargestMeanOrTheOneNearest128)
{
    GhostEmbedParams params;
    EXPECT_EQ(2, Choose(StatsOf({20, 40, 60}), 3, params));
    EXPECT_EQ(1, Choose(StatsOf({20, 60, 60}), 3, params));  // the darker one on a tie
    EXPECT_EQ(2, Choose(StatsOf({0, 120, 150}), 3, params));
    params.bMaxMeanWeightFill = 0;
    EXPECT_EQ(1, Choose(StatsOf({0, 120, 150}), 3, params));
    EXPECT_EQ(0, Choose(StatsOf({120, 136, 0}), 3, params));

    params.bMaxMeanWeightFill = 1;
    params.nRegionEdgeWeightW = 9;  // 16ths: the edges outweigh the insides
    EXPECT_EQ(0, Choose(StatsOf({40, 60, 0}, {60, 40, 0}), 3, params));
    params.nRegionEdgeWeightW = 8;
    EXPECT_EQ(0, Choose(StatsOf({40, 60, 0}, {60, 40, 0}), 3, params));
    EXPECT_EQ(0, Choose(StatsOf({59, 60, 0}, {60, 60, 0}), 3, params));  // 59.5 is as good as 60
    params.nRegionEdgeWeightW = 7;
    EXPECT_EQ(1, Choose(StatsOf({40, 60, 0}, {60, 40, 0}), 3, params));
    EXPECT_EQ(0, Choose(RegionStats{}, 3, params));  // no area, no edge
}

TEST(ChooseExposure, GoesDarkerWhileTooMuchIsBlownOut)
{
    GhostEmbedParams params;
    params.nMaxDecrease = 2;
    RegionStats stats = StatsOf({0, 0, 0, 60});
    stats.vSaturated[3] = 347;  // 1000 * 5700 / 16384 = 347.9
    EXPECT_EQ(3, Choose(stats, 4, params));
    stats.vSaturated[3] = 348;
    EXPECT_EQ(2, Choose(stats, 4, params));
    stats.vEdgeSaturated[2] = 19;  // 100 * 3200 / 16384 = 19.5
    EXPECT_EQ(2, Choose(stats, 4, params));
    stats.vEdgeSaturated[2] = 20;
    EXPECT_EQ(1, Choose(stats, 4, params));
    stats.vSaturated[1] = 1000;
    EXPECT_EQ(1, Choose(stats, 4, params));  // two at most
    params.nMaxDecrease = 10;
    EXPECT_EQ(0, Choose(stats, 4, params));
    stats.vSaturated[0] = 1000;
    EXPECT_EQ(0, Choose(stats, 4, params));
    params.nMaxDecrease = 0;
    EXPECT_EQ(3, Choose(stats, 4, params));
}

TEST(MeasureRegions, SumsWeightsAndBlownOutPixels)
{
    TestImage ghost, weights, vFrames[2];
    FillConstant(ghost, 7, 5, 1, 0);
    for (int y = 1; y < 4; ++y) std::fill_n(ghost.Row(y) + 1, 3, uint8_t{255});  // 3 x 3, its middle is no edge
    ghost.Row(0)[6] = 255;  // a region of its own, the first in the raster
    Owned<CLabelImage> labels, edges;
    CRegionLabels regions;
    ASSERT_TRUE(regions.Label(ghost, labels, edges, 64));
    FillConstant(weights, 7, 5, 2, 1);
    FillConstant(vFrames[0], 7, 5, 3, 240);
    FillConstant(vFrames[1], 7, 5, 3, 0);
    weights.Row(2)[2 * 2 + 1] = 100;  // in the middle
    weights.Row(1)[2 * 1 + 1] = 50;   // on the edge
    std::fill_n(vFrames[1].Row(2) + 6, 3, uint8_t{241});
    vFrames[1].Row(1)[3 + 1] = 241;  // one channel

    for (const int bLargest : {0, 1}) {
        GhostEmbedParams params;
        params.bSaturationMethod = bLargest;
        RegionStats vStats[2] = {};
        MeasureRegions(labels, edges, weights, vFrames, 2, params, vStats);
        const RegionStats& stats = vStats[1];
        EXPECT_EQ(9, stats.vWeightSum[0]);
        EXPECT_EQ(7 + 150, stats.vWeightSum[1]);
        EXPECT_EQ(7 + 50, stats.vEdgeWeightSum[1]);
        EXPECT_EQ(0, stats.vSaturated[0]);  // 240 is not above the threshold
        EXPECT_EQ(bLargest ? 2 : 1, stats.vSaturated[1]);
        EXPECT_EQ(bLargest ? 1 : 0, stats.vEdgeSaturated[1]);
        EXPECT_EQ(1, vStats[0].vWeightSum[1]);
    }
}

}  // namespace vkr
