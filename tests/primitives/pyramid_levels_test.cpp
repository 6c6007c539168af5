#include "primitives/pyramid_levels.h"

#include <gtest/gtest.h>

#include <random>

#include "primitives/gaussian_pyramid.h"
#include "support/random_image.h"
#include "support/reference_pyramid.h"

namespace vkr {

namespace {

// The picture with its last column and row repeated to even sizes.
template <class Image>
auto PaddedToEven(const Image& image)
{
    decltype(Samples(image)) vOut;
    for (int y = 0; y < (image.nHeight + 1) / 2 * 2; ++y) {
        const auto* pRow = image.Row(y);  // clamped
        vOut.insert(vOut.end(), pRow, pRow + image.RowSamples());
        if (image.nWidth % 2 != 0)
            vOut.insert(vOut.end(), pRow + image.RowSamples() - image.nDim, pRow + image.RowSamples());
    }
    return vOut;
}

TEST(HalveImage, PadsOddSidesAndChoosesTheKernel)
{
    std::mt19937 rng(9);
    for (const int w : {1, 2, 7, 10, 33}) {
        for (const int h : {1, 2, 5, 8}) {
            TestImage src, dst;
            FillRandom(rng, src, w, h, 3, 0, 255);
            const auto vEven = PaddedToEven(src);
            const int w2 = (w + 1) / 2, h2 = (h + 1) / 2;
            for (const bool bDither : {false, true}) {
                SCOPED_TRACE(testing::Message() << w << " x " << h << ", dither " << bDither);
                ASSERT_TRUE(HalveImage(src, dst, true, bDither));
                EXPECT_TRUE(dst.nWidth == w2 && dst.nHeight == h2 && dst.nDim == 3);
                const Rest rest = bDither ? Rest::kCarry : Rest::kFloor;
                EXPECT_EQ(ReferenceHalve5(vEven, 2 * w2, 2 * h2, 3, rest), Samples(dst));
                ASSERT_TRUE(HalveImage(src, dst, false, bDither));
                EXPECT_EQ(ReferenceHalve6(vEven, 2 * w2, 2 * h2, 3, false, Rest::kFloor), Samples(dst));
            }
        }
    }
}

TEST(HalveShort, PadsOddSidesAndChoosesAmongThreeForms)
{
    std::mt19937 rng(12);
    for (const int w : {1, 2, 7, 10, 33}) {
        for (const int h : {1, 2, 5, 8}) {
            SCOPED_TRACE(testing::Message() << w << " x " << h);
            TestShortImage src, dst;
            FillRandom(rng, src, w, h, 3, -32768, 32767);
            src.nRangeMax = 128;
            const auto vEven = PaddedToEven(src);
            const int w2 = (w + 1) / 2, h2 = (h + 1) / 2;
            ASSERT_TRUE(HalveShort(src, dst, true, false));
            EXPECT_TRUE(dst.nWidth == w2 && dst.nHeight == h2 && dst.nDim == 3 && dst.nRangeMax == 128);
            EXPECT_EQ(ReferenceHalve5(vEven, 2 * w2, 2 * h2, 3, Rest::kTruncate), Samples(dst));
            ASSERT_TRUE(HalveShort(src, dst, true, true));
            EXPECT_EQ(ReferenceHalve5(vEven, 2 * w2, 2 * h2, 3, Rest::kCarry), Samples(dst));
            ASSERT_TRUE(HalveShort(src, dst, false, true));
            EXPECT_EQ(ReferenceHalve6(vEven, 2 * w2, 2 * h2, 3, true, Rest::kCarry), Samples(dst));
            ASSERT_TRUE(HalveShort(src, dst, false, false));
            EXPECT_EQ(ReferenceHalve6(vEven, 2 * w2, 2 * h2, 3, false, Rest::kFloor), Samples(dst));
        }
    }
}

TEST(DoubleImage, ChoosesTheKernelAndClearsWhatASingleRowLeaves)
{
    std::mt19937 rng(10);
    for (const int h : {1, 2, 5}) {
        TestImage src, dst;
        FillRandom(rng, src, 7, h, 3, 0, 255);
        for (const bool bDither : {false, true}) {
            SCOPED_TRACE(testing::Message() << h << " rows, dither " << bDither);
            ASSERT_TRUE(DoubleImage(src, dst, true, bDither));
            EXPECT_EQ(ReferenceDouble161(Samples(src), 7, h, 3, bDither), Samples(dst));
            ASSERT_TRUE(DoubleImage(src, dst, false, bDither));
            EXPECT_TRUE(dst.nWidth == 14 && dst.nHeight == 2 * h && dst.nDim == 3);
            EXPECT_EQ(h == 1 ? Pixels<uint8_t>(dst.Samples(), 0) : ReferenceDouble31(Samples(src), 7, h, 3),
                      Samples(dst));
        }
    }
}

TEST(DoubleShort, ChoosesAmongThreeForms)
{
    std::mt19937 rng(11);
    for (const int h : {1, 2, 5}) {
        SCOPED_TRACE(testing::Message() << h << " rows");
        TestShortImage src, dst;
        FillRandom(rng, src, 7, h, 3, -2000, 2000);
        src.nRangeMax = 255;
        const auto vSrc = Samples(src);
        ASSERT_TRUE(DoubleShort(src, dst, true, false));
        EXPECT_EQ(ReferenceDouble161(vSrc, 7, h, 3, false), Samples(dst));
        ASSERT_TRUE(DoubleShort(src, dst, true, true));
        EXPECT_EQ(ReferenceDouble161(vSrc, 7, h, 3, true), Samples(dst));
        ASSERT_TRUE(DoubleShort(src, dst, false, true));
        EXPECT_EQ(ReferenceDouble31Serial(vSrc, 7, h, 3, true), Samples(dst));
        ASSERT_TRUE(DoubleShort(src, dst, false, false));
        EXPECT_EQ(h == 1 ? Pixels<int16_t>(dst.Samples(), 0) : ReferenceDouble31Wrap(vSrc, 7, h, 3), Samples(dst));
        EXPECT_EQ(255, dst.nRangeMax);
    }
}

TEST(PyramidLevels, RefuseAnEmptySource)
{
    TestImage src, dst;
    TestShortImage srcShort, dstShort;
    EXPECT_FALSE(HalveImage(src, dst, false, false));
    EXPECT_FALSE(HalveShort(srcShort, dstShort, false, false));
    EXPECT_FALSE(DoubleImage(src, dst, true, false));
    EXPECT_FALSE(DoubleShort(srcShort, dstShort, false, true));
}

}  // namespace

}  // namespace vkr
