#include "foundation/yuv_convert.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "support/for_threads.h"
#include "support/random_image.h"

namespace vkr {
namespace {

using Bytes = std::vector<uint8_t>;

void FillRandomYuv(std::mt19937& rng, CYuvImage& yuv, int w, int h)
{
    ASSERT_TRUE(yuv.Allocate(w, h));
    const Bytes vBytes = RandomRow<uint8_t>(rng, static_cast<size_t>(yuv.nWidth) * yuv.nHeight / 2 * 3, 0, 255);
    std::copy(vBytes.begin(), vBytes.end(), yuv.pBuffer);
}

// Four times the interpolated chroma component c at column x of chroma row k.
int WideChroma(const CYuvImage& yuv, int x, int k, int c)
{
    const int nNear = x / 2, nFar = std::clamp(x % 2 == 0 ? nNear - 1 : nNear + 1, 0, yuv.nWidth / 2 - 1);
    return 3 * yuv.RowUV(k)[2 * nNear + c] + yuv.RowUV(k)[2 * nFar + c];
}

Bytes SlowFiltered(const CYuvImage& yuv)
{
    Bytes vOut;
    for (int y = 0; y < yuv.nHeight; ++y) {
        const bool bEdge = y == 0 || y == yuv.nHeight - 1;
        const int nNear = y / 2, nFar = y % 2 == 0 ? nNear - 1 : nNear + 1;
        for (int x = 0; x < yuv.nWidth; ++x) {
            vOut.push_back(yuv.RowY(y)[x]);
            for (int c = 0; c < 2; ++c) {
                const int nWide = WideChroma(yuv, x, nNear, c);
                vOut.push_back(
                    static_cast<uint8_t>(bEdge ? nWide >> 2 : (3 * nWide + WideChroma(yuv, x, nFar, c) + 8) >> 4));
            }
        }
    }
    return vOut;
}

TEST(ConvertYuvToImage, FilteredByHand)
{
    // 4 x 4 with chroma pairs (0, 255), (10, 255) above (101, 255), (2, 254).
    TestYuvImage yuv;
    ASSERT_TRUE(yuv.Allocate(4, 4));
    std::fill(yuv.pY, yuv.pY + 16, uint8_t{77});
    const Bytes vChroma = {0, 255, 10, 255, 101, 255, 2, 254};
    std::copy(vChroma.begin(), vChroma.end(), yuv.pUV);
    TestImage image;
    ASSERT_TRUE(ConvertYuvToImage(yuv, image, 0));
    ASSERT_EQ(image.nDim, 3);
    // Lines of the first component: 0 10 30 40 and 404 305 107 8.
    const int vWant[4][4] = {{0, 2, 7, 10}, {25, 21, 12, 8}, {76, 58, 22, 4}, {101, 76, 26, 2}};
    for (int y = 0; y < 4; ++y) {
        for (int x = 0; x < 4; ++x) {
            EXPECT_EQ(image.Row(y)[3 * x], 77);
            EXPECT_EQ(image.Row(y)[3 * x + 1], vWant[y][x]) << x << ", " << y;
        }
    }
    EXPECT_EQ(image.Row(3)[5], 254) << "1019 >> 2, truncated";
    EXPECT_EQ(image.Row(2)[5], 255) << "(3 * 1019 + 1020 + 8) >> 4, rounded";
}

TEST(ConvertYuvToImage, EqualsTheSlowFormOnAnyTeam)
{
    std::mt19937 rng(4);
    for (const int w : {2, 4, 6, 18, 130}) {
        for (const int h : {2, 4, 6, 8, 26}) {
            TestYuvImage yuv;
            FillRandomYuv(rng, yuv, w, h);
            const Bytes vWant = SlowFiltered(yuv);
            ForThreads([&](int nThreads) {
                TestImage image;
                ASSERT_TRUE(ConvertYuvToImage(yuv, image, 0));
                EXPECT_EQ(Samples(image), vWant) << w << " x " << h << ", " << nThreads;
            });
        }
    }
}

TEST(ConvertYuvToImage, ReplicationRepeatsEachPair)
{
    std::mt19937 rng(5);
    TestYuvImage yuv;
    FillRandomYuv(rng, yuv, 10, 6);
    ForThreads([&](int) {
        TestImage image;
        ASSERT_TRUE(ConvertYuvToImage(yuv, image, 2));
        for (int y = 0; y < 6; ++y) {
            for (int x = 0; x < 10; ++x) {
                const uint8_t *pGot = image.Row(y) + 3 * x, *pPair = yuv.RowUV(y / 2) + x / 2 * 2;
                EXPECT_EQ(Bytes(pGot, pGot + 3), (Bytes{yuv.RowY(y)[x], pPair[0], pPair[1]}));
            }
        }
    });
}

TEST(ConvertImageToYuv, TheRemainderRunsOnToTheNextBlock)
{
    // 4 x 4: blocks with chroma sums 401, 403 | 402, 402 and 1, 1 | 1, 1.
    TestImage image;
    FillConstant(image, 4, 4, 3, 100);
    for (int y = 0; y < 4; ++y) {
        for (int x = 0; x < 4; ++x) {
            image.Row(y)[3 * x] = static_cast<uint8_t>(16 * y + x);
            image.Row(y)[3 * x + 2] = 0;
        }
    }
    image.Row(1)[3 * 1 + 1] = 101;                            // first block: 401
    image.Row(0)[3 * 2 + 1] = image.Row(1)[3 * 3 + 1] = 101;  // second: 402, and 1 from before
    image.Row(0)[3 * 3 + 1] = 101;                            // 403
    for (const int x : {0, 2}) image.Row(0)[3 * x + 2] = image.Row(2)[3 * x + 2] = 1;
    TestYuvImage yuv;
    ASSERT_TRUE(ConvertImageToYuv(yuv, image));
    EXPECT_EQ(Bytes(yuv.pUV, yuv.pUV + 8), (Bytes{100, 0, 101, 0, 100, 0, 100, 1}));
    for (int y = 0; y < 4; ++y) {
        for (int x = 0; x < 4; ++x) EXPECT_EQ(yuv.RowY(y)[x], 16 * y + x);
    }
}

// Over the whole picture the carry loses less than one level, which no rounding of single blocks would do.
TEST(ConvertImageToYuv, KeepsTheSumOfTheChroma)
{
    std::mt19937 rng(6);
    TestImage image;
    FillRandom(rng, image, 38, 22, 3, 0, 255);
    TestYuvImage yuv;
    ASSERT_TRUE(ConvertImageToYuv(yuv, image));
    for (int c = 0; c < 2; ++c) {
        int nBefore = 0, nAfter = 0;
        for (int i = 0; i < 38 * 22; ++i) nBefore += image.pData[3 * i + 1 + c];
        for (int i = 0; i < 19 * 11; ++i) nAfter += yuv.pUV[2 * i + c];
        EXPECT_EQ(nBefore / 4, nAfter);
    }
}

TEST(ConvertImageToYuv, OddPicturesLoseTheirLastColumnAndRow)
{
    std::mt19937 rng(8);
    TestImage odd, even;
    FillRandom(rng, odd, 7, 5, 3, 0, 255);
    ASSERT_TRUE(even.Allocate(6, 4));
    for (int y = 0; y < 4; ++y) std::copy(odd.Row(y), odd.Row(y) + 18, even.Row(y));
    TestYuvImage fromOdd, fromEven;
    ASSERT_TRUE(ConvertImageToYuv(fromOdd, odd));
    ASSERT_TRUE(ConvertImageToYuv(fromEven, even));
    EXPECT_EQ(Samples(fromOdd), Samples(fromEven));
}

TEST(YuvConvert, EmptyInEmptyOut)
{
    TestImage image, gray;
    TestYuvImage yuv, none;
    ASSERT_TRUE(image.Allocate(4, 4) && yuv.Allocate(4, 4) && gray.AllocateGray(4, 4));
    EXPECT_FALSE(ConvertYuvToImage(none, image, 0));
    EXPECT_EQ(image.pData, nullptr);
    EXPECT_FALSE(ConvertImageToYuv(yuv, gray));
    EXPECT_EQ(yuv.pBuffer, nullptr);
    EXPECT_FALSE(ConvertImageToYuv(yuv, image));
}

}  // namespace
}  // namespace vkr
