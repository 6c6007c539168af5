#include "foundation/image.h"

#include <gtest/gtest.h>

#include "foundation/image_scope.h"
#include "support/random_image.h"

namespace vkr {
namespace {

constexpr int kHuge = 2147483647;

template <class Image>
void ExpectEmpty(const Image& image)
{
    EXPECT_EQ(image.nWidth, 0);
    EXPECT_EQ(image.nHeight, 0);
    EXPECT_EQ(image.nCapacity, 0);
    EXPECT_TRUE(image.Empty());
}

TEST(Image, CapacityIsTheSamplesAndTheMargin)
{
    TestImage image;
    ASSERT_TRUE(image.Allocate(10, 7));
    EXPECT_EQ(image.nCapacity, 10U * 7U * 3U + 128U);
    TestImage gray;
    ASSERT_TRUE(gray.AllocateGray(10, 7));
    EXPECT_EQ(gray.nCapacity, 70U + 128U);
    TestShortImage levels;
    ASSERT_TRUE(levels.AllocateDim(5, 3, 6));
    EXPECT_EQ(levels.nCapacity, 5U * 3U * 6U * 2U + 128U);
}

TEST(Image, ABufferIsReusedWhileItSuffices)
{
    TestImage image;
    FillConstant(image, 20, 10, 3, 42);
    uint8_t* const pData = image.pData;
    ASSERT_TRUE(image.AllocateGray(30, 20));
    EXPECT_EQ(image.pData, pData);
    EXPECT_EQ(image.nCapacity, 728U);
    EXPECT_EQ(image.nDim, 1);
    EXPECT_EQ(image.pData[599], 42) << "contents stay";
    ASSERT_TRUE(image.AllocateGray(601, 1));
    EXPECT_EQ(image.nCapacity, 729U);
}

TEST(Image, SizesThatDoNotFitLeaveTheRecordEmpty)
{
    const int vSizes[][3] = {{-1, 5, 3},    {5, -1, 3},         {5, 5, -1},       {kHuge, kHuge, 3},
                             {kHuge, 1, 3}, {1000000000, 1, 3}, {65536, 65536, 1}};
    for (const auto& vSize : vSizes) {
        TestImage image;
        TestShortImage levels;
        ASSERT_TRUE(image.Allocate(4, 4) && levels.AllocateDim(4, 4, 3));
        EXPECT_FALSE(image.AllocateDim(vSize[0], vSize[1], vSize[2]));
        EXPECT_FALSE(levels.AllocateDim(vSize[0], vSize[1], vSize[2]));
        ExpectEmpty(image);
        ExpectEmpty(levels);
    }
    TestYuvImage yuv;
    ASSERT_TRUE(yuv.Allocate(4, 4));
    EXPECT_FALSE(yuv.Allocate(-2, 4));
    ExpectEmpty(yuv);
    EXPECT_FALSE(yuv.Allocate(kHuge, kHuge));
    EXPECT_FALSE(yuv.Allocate(40000, 40000));
    ExpectEmpty(yuv);
}

TEST(Image, RowsOutsideAreTheNearestEdgeRow)
{
    TestShortImage levels;
    ASSERT_TRUE(levels.AllocateDim(3, 4, 2));
    EXPECT_EQ(levels.Row(-5), levels.pData);
    EXPECT_EQ(levels.Row(2), levels.pData + 12);
    EXPECT_EQ(levels.Row(4), levels.pData + 18);
    TestYuvImage yuv;
    ASSERT_TRUE(yuv.Allocate(6, 4));
    EXPECT_EQ(yuv.RowY(9), yuv.pY + 18);
    EXPECT_EQ(yuv.RowUV(2), yuv.pUV + 6);
    EXPECT_EQ(yuv.RowUV(-1), yuv.pUV);
}

TEST(Image, CopiesAreEqualAndApart)
{
    std::mt19937 rng(1);
    TestImage source, copy;
    FillRandom(rng, source, 9, 5, 3, 0, 255);
    EXPECT_FALSE(copy.CopyGrayFrom(source));
    ASSERT_TRUE(copy.CopyFrom(source));
    EXPECT_EQ(Samples(copy), Samples(source));
    EXPECT_NE(copy.pData, source.pData);
    TestShortImage levels, levelsCopy;
    FillRandom(rng, levels, 9, 5, 6, -300, 300);
    levels.nRangeMax = 255;
    levels.nRangeMin = -1;
    ASSERT_TRUE(levelsCopy.CopyDimFrom(levels));
    EXPECT_EQ(Samples(levelsCopy), Samples(levels));
    EXPECT_EQ(levelsCopy.nRangeMax, 255);
    EXPECT_EQ(levelsCopy.nRangeMin, -1);
}

TEST(Image, SwapExchangesWholeRecords)
{
    TestImage a, b;
    FillConstant(a, 4, 3, 3, 1);
    FillConstant(b, 8, 2, 1, 2);
    uint8_t *const pA = a.pData, *const pB = b.pData;
    a.Swap(b);
    EXPECT_EQ(a.pData, pB);
    EXPECT_EQ(a.nDim, 1);
    EXPECT_EQ(a.nCapacity, 16U + 128U);
    EXPECT_EQ(b.pData, pA);
    EXPECT_EQ(b.nWidth, 4);
    a.Swap(a);
    EXPECT_EQ(a.pData, pB);
}

TEST(YuvImage, OddSizesLoseAColumnAndARow)
{
    TestYuvImage yuv;
    ASSERT_TRUE(yuv.Allocate(101, 51));
    EXPECT_EQ(yuv.nWidth, 100);
    EXPECT_EQ(yuv.nHeight, 50);
    EXPECT_EQ(yuv.nCapacity, 7500);
    EXPECT_EQ(yuv.pY, yuv.pBuffer);
    EXPECT_EQ(yuv.pUV, yuv.pBuffer + 5000);
    uint8_t* const pBuffer = yuv.pBuffer;
    ASSERT_TRUE(yuv.Allocate(20, 10));
    EXPECT_EQ(yuv.pBuffer, pBuffer);
    EXPECT_EQ(yuv.nCapacity, 7500);
    EXPECT_EQ(yuv.pUV, pBuffer + 200);
}

TEST(YuvImage, CopiesBothPlanes)
{
    TestYuvImage source, copy;
    ASSERT_TRUE(source.Allocate(6, 4));
    for (int i = 0; i < 36; ++i) source.pBuffer[i] = static_cast<uint8_t>(i);
    ASSERT_TRUE(copy.CopyFrom(source));
    EXPECT_EQ(Samples(copy), Samples(source));
    EXPECT_NE(copy.pBuffer, source.pBuffer);
}

TEST(ImageScope, ReleasesRecordsAndArrays)
{
    CImage single{}, vMany[3] = {};
    {
        ImageScope<CImage> scope(single);
        ImageScope<CImage[3]> manyScope(vMany);
        ASSERT_TRUE(single.Allocate(4, 4) && vMany[2].Allocate(4, 4));
    }
    ExpectEmpty(single);
    ExpectEmpty(vMany[2]);
}

}  // namespace
}  // namespace vkr
