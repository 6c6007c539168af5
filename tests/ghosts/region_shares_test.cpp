#include "ghosts/region_shares.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

#include "primitives/regions.h"
#include "primitives/smooth.h"
#include "support/random_image.h"

namespace vkr {

namespace {

// Every map as a picture of its own, as large as the labels.
std::vector<int16_t> SlowShares(const CLabelImage& labels, const std::vector<int32_t>& vChosen, int n, int nIter)
{
    std::vector<int16_t> vShares(labels.Samples() * n, 0);
    for (size_t r = 0; r < vChosen.size(); ++r) {
        TestShortImage hard, map;
        FillConstant(hard, labels.nWidth, labels.nHeight, 1, 0);
        for (size_t i = 0; i < labels.Samples(); ++i) {
            if (labels.pData[i] == static_cast<int>(r) + 1) hard.pData[i] = 128;
        }
        EXPECT_TRUE(map.CopyDimFrom(hard));
        for (int i = 0; i < nIter; ++i) {
            EXPECT_TRUE(CSmoothFilter5x5::SmoothImage16(map, map, true));
            std::transform(hard.pData, hard.pData + hard.Samples(), map.pData, map.pData,
                           [](int16_t a, int16_t b) { return std::max(a, b); });
        }
        for (size_t i = 0; i < labels.Samples(); ++i) vShares[i * n + vChosen[r]] += map.pData[i];
    }
    return vShares;
}

}  // namespace

TEST(ShareRegions, EqualsMapsOfTheWholePicture)
{
    std::mt19937 rng(9);
    for (const auto& [w, h, nOneIn] : {std::tuple{1, 1, 1}, {3, 2, 2}, {41, 29, 30}, {60, 33, 90}, {9, 40, 8}}) {
        TestImage ghost;
        FillConstant(ghost, w, h, 1, 0);
        for (size_t i = 0; i < ghost.Samples(); ++i) ghost.pData[i] = rng() % nOneIn == 0 ? 255 : 0;
        Owned<CLabelImage> labels, edges;
        CRegionLabels regions;
        ASSERT_TRUE(regions.Label(ghost, labels, edges, 64));
        for (const int nIter : {0, 1, 2, 5}) {
            SCOPED_TRACE(testing::Message() << w << "x" << h << ", rounds " << nIter);
            const int nRegions = regions.nTotalRegionNum - 1, n = 1 + nIter;
            const auto vChosen = RandomRow<int32_t>(rng, nRegions, 0, n - 1);
            TestShortImage shares;
            ASSERT_TRUE(ShareRegions(labels, vChosen.data(), nRegions, n, nIter, 0, shares));
            EXPECT_EQ(SlowShares(labels, vChosen, n, nIter), Samples(shares));
        }
    }
}

}  // namespace vkr
