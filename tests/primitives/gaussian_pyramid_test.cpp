#include "primitives/gaussian_pyramid.h"

#include <gtest/gtest.h>

#include "support/random_image.h"

namespace vkr {

namespace {

using Pyramid = CGaussianPyramid2;

// A picture of one channel and what becomes of it, worked out by hand.
template <class T>
struct ByHand {
    const char* pWhat;
    bool (*pScale)(const T* pSrc, T* pDst, int w, int h);
    int w, h;
    std::vector<T> vSrc, vWant;

    void Expect() const
    {
        Guarded<T> dst(vWant.size());
        EXPECT_TRUE(pScale(vSrc.data(), dst.Data(), w, h));
        EXPECT_EQ(vWant, dst.Values()) << pWhat;
        EXPECT_TRUE(dst.Intact());
    }
};

bool HalveFast(const uint8_t* pSrc, uint8_t* pDst, int w, int h)
{
    return Pyramid::DownScaleImageFast(pSrc, pDst, w, h, 1);
}
bool HalveParallel(const int16_t* pSrc, int16_t* pDst, int w, int h)
{
    return Pyramid::DownScaleShortParallel(pSrc, pDst, w, h, 1);
}
bool DoubleParallel(const int16_t* pSrc, int16_t* pDst, int w, int h)
{
    return Pyramid::UpScaleShortParallel(pSrc, pDst, w, h, 1);
}
template <bool bDither>
bool Halve(const uint8_t* pSrc, uint8_t* pDst, int w, int h)
{
    return Pyramid::DownScaleImage(pSrc, pDst, w, h, 1, bDither);
}
template <bool bDither>
bool Halve(const int16_t* pSrc, int16_t* pDst, int w, int h)
{
    return Pyramid::DownScaleShort(pSrc, pDst, w, h, 1, bDither);
}
template <bool bDither>
bool HalveSerial(const int16_t* pSrc, int16_t* pDst, int w, int h)
{
    return Pyramid::DownScaleShortFast(pSrc, pDst, w, h, 1, bDither);
}
template <bool bDither>
bool Double(const int16_t* pSrc, int16_t* pDst, int w, int h)
{
    return Pyramid::UpScaleShort(pSrc, pDst, w, h, 1, bDither);
}

// A picture whose rows are all the same is scaled by 32 or 16 in the other direction.
TEST(GaussianPyramid, BytesByHand)
{
    // Two columns, eight rows: column sums over both are 16 times the sample, and rows 0 and 1 weigh 15 and 5 of 16 for
    // the first two outputs: 1920 = 7 * 256 + 128 and 640 = 2 * 256 + 128.
    const std::vector<uint8_t> vTwoRows = {8, 8, 8, 8, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0};
    const ByHand<uint8_t> vCases[] = {
        {"the last pair weighs 15 and 11", HalveFast, 4, 2, {0, 0, 64, 128, 0, 0, 64, 128}, {14, 74}},
        {"of rows too", HalveFast, 2, 4, {0, 0, 0, 0, 64, 64, 128, 128}, {14, 74}},
        {"fractions are dropped", Halve<false>, 2, 8, vTwoRows, {7, 2, 0, 0}},
        {"or carried across the ends of rows", Halve<true>, 2, 8, vTwoRows, {7, 3, 0, 0}},
    };
    for (const auto& byHand : vCases) byHand.Expect();
}

TEST(GaussianPyramid, SignedSamplesByHand)
{
    const std::vector<int16_t> vColumns = {320, 0, 320, 0}, vRows = {320, 320, 0, 0}, vOne = {-1, 0, 0, 0};
    const ByHand<int16_t> vCases[] = {
        {"a side of two is 21 : 11", HalveParallel, 2, 2, vColumns, {210}},
        {"of rows too", HalveParallel, 2, 2, vRows, {210}},
        {"16 : 16 on one thread", HalveSerial<true>, 2, 2, vColumns, {160}},
        {"of rows too", HalveSerial<true>, 2, 2, vRows, {160}},
        {"the parallel form floors", HalveParallel, 2, 2, vOne, {-1}},
        {"the serial one truncates", HalveSerial<false>, 2, 2, vOne, {0}},
        {"the filtered one too", Halve<false>, 2, 2, vOne, {0}},
        // Widened rows in Q1: -7 / 4 = -1, -1, 1 / 4 = 0, 0; sums -8 / 4 = -2, -2, 0, 0 in both rows, in fours.
        {"signed remainders are dropped", Double<false>, 2, 1, {-1, 0}, {0, 0, 0, 0, 0, 0, 0, 0}},
        {"or run on through both rows", Double<true>, 2, 1, {-1, 0}, {0, -1, 0, 0, 0, -1, 0, 0}},
        // 3000 * 16 = 48000 wraps to -17536, by 16 -1096; the end rows, 4 * 3000 / 4, do not wrap.
        {"twelve bits wrap", DoubleParallel, 1, 2, {3000, 3000}, {3000, 3000, -1096, -1096, -1096, -1096, 3000, 3000}},
    };
    for (const auto& byHand : vCases) byHand.Expect();
}

TEST(ExpandImage, RepeatsTheLastPixelAndRow)
{
    const std::vector<uint8_t> vSrc = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12};  // 3 x 2 pixels of 2 channels
    Guarded<uint8_t> dst(4 * 4 * 2);
    Pyramid::ExpandImage(vSrc.data(), dst.Data(), 3, 2, 4, 4, 2);
    EXPECT_EQ((std::vector<uint8_t>{1, 2, 3, 4,  5,  6,  5,  6,  7, 8, 9, 10, 11, 12, 11, 12,
                                    7, 8, 9, 10, 11, 12, 11, 12, 7, 8, 9, 10, 11, 12, 11, 12}),
              dst.Values());
    EXPECT_TRUE(dst.Intact());

    const std::vector<int16_t> vShort = {-300, 300};
    Guarded<int16_t> dst16(5);
    Pyramid::ExpandShort(vShort.data(), dst16.Data(), 2, 1, 5, 1, 1);
    EXPECT_EQ((std::vector<int16_t>{-300, 300, 300, 300, 300}), dst16.Values());
    EXPECT_TRUE(dst16.Intact());
}

}  // namespace

}  // namespace vkr
