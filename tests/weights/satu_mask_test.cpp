#include "weights/satu_mask.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "support/for_threads.h"
#include "support/random_image.h"

namespace vkr {

namespace {

// Degree of a pixel whose smallest sample is nSmallest and stands in channel nSmallestAt.
int DegreeOf(int nSmallest, int nSmallestAt, int nThre)
{
    TestImage picture, mask;
    FillConstant(picture, 1, 1, 3, 255);
    picture.pData[nSmallestAt] = static_cast<uint8_t>(nSmallest);
    EXPECT_TRUE(GenerateSatuMask(picture, nThre, mask));
    return mask.pData[0];
}

}  // namespace

TEST(GenerateSatuMask, KeepsDegreesFromTheThresholdOn)
{
    for (int c = 0; c < 3; ++c) {
        EXPECT_EQ(0, DegreeOf(246, c, 8));
        EXPECT_EQ(8, DegreeOf(247, c, 8));
        EXPECT_EQ(16, DegreeOf(255, c, 8));
        EXPECT_EQ(0, DegreeOf(0, c, 0));
        EXPECT_EQ(0, DegreeOf(238, c, 0));
        EXPECT_EQ(0, DegreeOf(239, c, 0));
        EXPECT_EQ(1, DegreeOf(240, c, 0));
        EXPECT_EQ(16, DegreeOf(255, c, 16));
        EXPECT_EQ(0, DegreeOf(254, c, 16));
        EXPECT_EQ(0, DegreeOf(255, c, 17));
    }
}

TEST(GenerateSatuMask, MarksEveryPixelOfAnySizeFromAnyTeam)
{
    std::mt19937 rng(52);
    for (const int w : {1, 3, 255, 256, 257, 600}) {
        TestImage picture;
        FillRandom(rng, picture, w, 7, 3, 225, 255);
        std::vector<uint8_t> vWant;
        for (size_t i = 0; i < picture.Samples(); i += 3) {
            const int m = std::min({picture.pData[i], picture.pData[i + 1], picture.pData[i + 2]});
            vWant.push_back(static_cast<uint8_t>(m - 239 >= 3 ? m - 239 : 0));
        }
        ForThreads([&](int nThreads) {
            SCOPED_TRACE(nThreads);
            TestImage mask;
            ASSERT_TRUE(GenerateSatuMask(picture, 3, mask));
            EXPECT_EQ(1, mask.nDim);
            EXPECT_EQ(vWant, Samples(mask));
        });
    }
}

TEST(GenerateSatuMask, RefusesAPictureThatIsNone)
{
    TestImage empty, gray, mask;
    FillConstant(gray, 4, 4, 1, 250);
    EXPECT_FALSE(GenerateSatuMask(empty, 8, mask));
    EXPECT_FALSE(GenerateSatuMask(gray, 8, mask));
}

}  // namespace vkr
