#include "foundation/colour.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "foundation/colour_rows.h"
#include "support/for_threads.h"
#include "support/random_image.h"

namespace vkr {
namespace {

using Bytes = std::vector<uint8_t>;

// A picture of one row.
void SetPixels(CImage& image, const Bytes& vSamples)
{
    ASSERT_TRUE(image.Allocate(static_cast<int>(vSamples.size() / 3), 1));
    std::copy(vSamples.begin(), vSamples.end(), image.pData);
}

Bytes Forward(const Bytes& vSamples, int nMode)
{
    TestImage image;
    SetPixels(image, vSamples);
    BGRToYCbCr(image, nMode);
    return Samples(image);
}

Bytes Back(const Bytes& vSamples, int nMode)
{
    TestImage image;
    SetPixels(image, vSamples);
    YCbCrToBGR(image, nMode);
    return Samples(image);
}

Bytes PlainForward(Bytes vSamples)
{
    BgrToYCbCrRowScalar(vSamples.data(), static_cast<int>(vSamples.size() / 3), false);
    return vSamples;
}

TEST(BGRToYCbCr, KnownColours)
{
    // Blue, green and red at full: 29 * 255 + 128 = 7523, and so on; 85 * 255 = 21675, / 256 = 84.7 toward zero.
    EXPECT_EQ(Forward({255, 0, 0, 0, 255, 0, 0, 0, 255}, 0), (Bytes{29, 255, 108, 149, 44, 22, 77, 86, 255}));
    EXPECT_EQ(Forward({255, 0, 0, 0, 255, 0, 0, 0, 255}, 1), (Bytes{29, 108, 255, 149, 22, 44, 77, 255, 86}));
    // One level of green takes 85 / 256 and 107 / 256 off: toward zero both vanish.
    EXPECT_EQ(Forward({0, 1, 0, 7, 7, 7}, 0), (Bytes{1, 128, 128, 7, 128, 128}));
}

TEST(BGRToYCbCr, ExtremeColoursStayWithin1To255)
{
    int nLowest = 255, nHighest = 0;
    for (int i = 0; i < 8; ++i) {
        const auto level = [&](int nBit) { return static_cast<uint8_t>(i & nBit ? 255 : 0); };
        const Bytes vOut = Forward({level(1), level(2), level(4)}, 0);
        nLowest = std::min({nLowest, int{vOut[1]}, int{vOut[2]}});
        nHighest = std::max({nHighest, int{vOut[1]}, int{vOut[2]}});
    }
    EXPECT_EQ(nLowest, 1);
    EXPECT_EQ(nHighest, 255);
}

TEST(BGRToYCbCr, ThreadsMakeNoDifference)
{
    std::mt19937 rng(1);
    TestImage source;
    FillRandom(rng, source, 37, 11, 3, 0, 255);
    ForThreads([&](int nThreads) {
        TestImage image;
        ASSERT_TRUE(image.CopyFrom(source));
        BGRToYCbCr(image, 0);
        EXPECT_EQ(Samples(image), PlainForward(Samples(source))) << nThreads;
    });
}

TEST(YCbCrToBGR, NeutralChromaCopiesTheLuma)
{
    EXPECT_EQ(Back({0, 128, 128, 200, 128, 128, 255, 128, 128}, 0), (Bytes{0, 0, 0, 200, 200, 200, 255, 255, 255}));
}

TEST(YCbCrToBGR, EqualPixelsDifferByTheCarry)
{
    // Cb = 129: blue 256 * 100 + 454 = 101 and 198 over; then 198 + 198 = 396 carries one. Green 25600 - 88: 99 and
    // 168 over, which carries from the second pixel on: 336 leaves 80, then 248, then 416.
    const Bytes vPixel = {100, 129, 128};
    Bytes vRow;
    for (int i = 0; i < 4; ++i) vRow.insert(vRow.end(), vPixel.begin(), vPixel.end());
    EXPECT_EQ(Back(vRow, 0), (Bytes{101, 99, 100, 102, 100, 100, 102, 99, 100, 102, 100, 100}));
}

TEST(YCbCrToBGR, SumsBelowZeroAndAbove255)
{
    // Cr = 0: red 256 * 10 - 359 * 128 < 0 gives 0 and drops nothing; green 2560 + 183 * 128 = 25984 = 101 and 128.
    // Cr = 255 at luma 255: red 65280 + 45593 = 433 and 25, cut to 255, of which only the 25 runs on.
    EXPECT_EQ(Back({10, 128, 0, 255, 128, 255, 0, 128, 129}, 0), (Bytes{10, 101, 0, 255, 164, 255, 0, 0, 1}));
    EXPECT_EQ(Back({10, 0, 128}, 1), (Bytes{10, 101, 0})) << "mode 1: the red difference comes first";
}

TEST(YCbCrToBGR, TheCarryRunsOnAcrossRows)
{
    std::mt19937 rng(3);
    for (const int w : {1, 5, 512, 513, 1100}) {
        TestImage image;
        FillRandom(rng, image, w, 7, 3, 0, 255);
        Bytes vWant = Samples(image);
        ColourCarry carry{};
        YCbCrToBgrRowScalar(vWant.data(), 7 * w, false, carry);
        YCbCrToBGR(image, 0);
        EXPECT_EQ(Samples(image), vWant) << w;
    }
}

TEST(Colour, OtherPicturesStayUntouched)
{
    TestImage gray, empty;
    FillConstant(gray, 4, 3, 1, 9);
    BGRToYCbCr(gray, 0);
    YCbCrToBGR(gray, 0);
    EXPECT_EQ(Samples(gray), Bytes(12, 9));
    BGRToYCbCr(empty, 0);
    YCbCrToBGR(empty, 0);
    EXPECT_EQ(empty.pData, nullptr);
}

}  // namespace
}  // namespace vkr
