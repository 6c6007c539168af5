#include "primitives/regions.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "support/random_image.h"

namespace vkr {

namespace {

using Labels = std::vector<int32_t>;

struct TestLabels : CLabelImage {
    TestLabels() : CLabelImage{} {}
    ~TestLabels() { Release(); }
    Labels All() const { return Labels(pData, pData + Samples()); }
};

// The slow writing: regions filled one after the other from their first pixels.
Labels ReferenceLabels(const CImage& src, int nThreshold)
{
    const int w = src.nWidth, h = src.nHeight;
    Labels vLabels(src.Samples(), 0);
    int32_t nLabel = 0;
    for (int i = 0; i < w * h; ++i) {
        if (src.pData[i] <= nThreshold || vLabels[i] != 0) continue;
        std::vector<int> vOpen = {i};
        vLabels[i] = ++nLabel;
        while (!vOpen.empty()) {
            const int nAt = vOpen.back();
            vOpen.pop_back();
            for (int k = 0; k < 9; ++k) {
                const int x = nAt % w + k % 3 - 1, y = nAt / w + k / 3 - 1;
                if (x < 0 || y < 0 || x >= w || y >= h) continue;
                if (src.pData[y * w + x] <= nThreshold || vLabels[y * w + x] != 0) continue;
                vLabels[y * w + x] = nLabel;
                vOpen.push_back(y * w + x);
            }
        }
    }
    return vLabels;
}

// The labels of the pixels that have background among the pixels around them.
Labels ReferenceEdges(const Labels& vLabels, int w, int h)
{
    Labels vEdges(vLabels.size(), 0);
    for (int i = 0; i < 9 * w * h; ++i) {
        const int nAt = i / 9, x = nAt % w + i % 3 - 1, y = nAt / w + i % 9 / 3 - 1;
        const bool bInside = x >= 0 && y >= 0 && x < w && y < h;
        if (bInside && vLabels[y * w + x] == 0) vEdges[nAt] = vLabels[nAt];
    }
    return vEdges;
}

TEST(RegionLabels, EqualAFloodFillInNoiseOfAnyDensity)
{
    std::mt19937 rng(3);
    CRegionLabels regions;  // reused, as are the images: nothing of the picture before may show
    TestLabels labels, edges;
    const int vSizes[][2] = {{60, 43}, {1, 1}, {1, 30}, {30, 1}, {2, 9}, {41, 64}};
    for (const auto& size : vSizes) {
        for (const int nThreshold : {-1, 60, 120, 150, 200, 255}) {
            SCOPED_TRACE(testing::Message() << size[0] << " x " << size[1] << ", above " << nThreshold);
            TestImage src;
            FillRandom(rng, src, size[0], size[1], 1, 0, 255);
            const Labels vLabels = ReferenceLabels(src, nThreshold);
            const Labels vEdges = ReferenceEdges(vLabels, size[0], size[1]);
            ASSERT_TRUE(regions.Label(src, labels, edges, nThreshold));
            EXPECT_EQ(*std::max_element(vLabels.begin(), vLabels.end()) + 1, regions.nTotalRegionNum);
            EXPECT_EQ(vLabels, labels.All());
            EXPECT_EQ(vEdges, edges.All());
            EXPECT_EQ(std::count_if(vLabels.begin(), vLabels.end(), [](int n) { return n > 0; }), regions.nTotalArea);
            for (int i = 1; i < regions.nTotalRegionNum; ++i) {
                ASSERT_EQ(std::count(vLabels.begin(), vLabels.end(), i), regions.Area(i)) << i;
                ASSERT_EQ(std::count(vEdges.begin(), vEdges.end(), i), regions.EdgeLen(i)) << i;
            }
        }
    }
}

TEST(RegionLabels, DropsSmallRegions)
{
    TestImage src;
    TestLabels labels, edges;
    CRegionLabels regions;
    const std::string sPicture = "#.####..#####.#####.....";
    ASSERT_TRUE(src.AllocateGray(6, 4));
    std::transform(sPicture.begin(), sPicture.end(), src.pData, [](char c) { return c == '#' ? 65 : 64; });
    ASSERT_TRUE(regions.Label(src, labels, edges, 64));
    EXPECT_EQ(2, regions.CountAbove(1));
    EXPECT_EQ(1, regions.CountAbove(2));
    ASSERT_TRUE(regions.KeepAbove(1, labels, edges));
    EXPECT_EQ(3, regions.nTotalRegionNum);
    EXPECT_EQ(15, regions.nTotalArea);
    EXPECT_TRUE(regions.Area(1) == 12 && regions.EdgeLen(1) == 6 && regions.Area(2) == 2 && regions.EdgeLen(2) == 2);
    EXPECT_EQ((Labels{0, 0, 1, 1, 1, 1, 0, 0, 1, 1, 1, 1, 2, 0, 1, 1, 1, 1, 2, 0, 0, 0, 0, 0}), labels.All());
    EXPECT_EQ((Labels{0, 0, 1, 0, 0, 0, 0, 0, 1, 0, 0, 0, 2, 0, 1, 1, 1, 1, 2, 0, 0, 0, 0, 0}), edges.All());
    ASSERT_TRUE(regions.KeepAbove(12, labels, edges));
    EXPECT_EQ(1, regions.nTotalRegionNum);
    EXPECT_EQ(Labels(24, 0), labels.All());
}

// Single pixels one apart: the most regions that a picture can hold.
TEST(RegionLabels, HoldMoreRegionsThan16BitsCount)
{
    const int w = 1201, h = 801, nMost = 601 * 401;
    TestImage dots;
    FillConstant(dots, w, h, 1, 0);
    for (int i = 0; i < nMost; ++i) dots.Row(i / 601 * 2)[i % 601 * 2] = 255;
    TestLabels labels, edges;
    CRegionLabels regions;
    ASSERT_TRUE(regions.Label(dots, labels, edges, 0));
    EXPECT_TRUE(regions.nTotalRegionNum == nMost + 1 && regions.CountAbove(0) == nMost && regions.CountAbove(1) == 0);
    EXPECT_EQ(nMost, labels.Row(h - 1)[w - 1]);
}

TEST(RegionLabels, CountNothingWithoutAPicture)
{
    TestImage none, three, black;
    TestLabels labels, edges;
    CRegionLabels regions;
    FillConstant(black, 5, 5, 1, 64);
    ASSERT_TRUE(regions.Label(black, labels, edges, 64));
    EXPECT_TRUE(regions.nTotalRegionNum == 1 && regions.nTotalArea == 0);
    EXPECT_EQ(Labels(25, 0), edges.All());
    FillConstant(three, 5, 5, 3, 64);
    EXPECT_FALSE(regions.Label(three, labels, edges, 0));
    EXPECT_EQ(0, regions.nTotalRegionNum);
    EXPECT_TRUE(regions.Label(none, labels, edges, 0));
    EXPECT_TRUE(regions.nTotalRegionNum == 0 && labels.Empty());
}

}  // namespace

}  // namespace vkr
