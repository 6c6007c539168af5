#include "foundation/colour.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "foundation/colour_rows.h"
#include "support/for_threads.h"
#include "support/random_image.h"
#include "support/simd_targets.h"

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

// The formulas once more, one pixel after the other.
Bytes SlowForward(const Bytes& vSrc)
{
    Bytes vDst(vSrc.size());
    for (size_t i = 0; i < vSrc.size(); i += 3) {
        const int b = vSrc[i], g = vSrc[i + 1], r = vSrc[i + 2];
        vDst[i] = static_cast<uint8_t>((29 * b + 150 * g + 77 * r + 128) >> 8);
        vDst[i + 1] = static_cast<uint8_t>((128 * b - 85 * g - 43 * r) / 256 + 128);
        vDst[i + 2] = static_cast<uint8_t>((128 * r - 107 * g - 21 * b) / 256 + 128);
    }
    return vDst;
}

Bytes SlowBack(const Bytes& vSrc, ColourCarry* pCarry = nullptr)
{
    Bytes vDst(vSrc.size());
    int vCarry[3] = {};
    for (int c = 0; c < 3 && pCarry != nullptr; ++c) vCarry[c] = pCarry->vDropped[c];
    for (size_t i = 0; i < vSrc.size(); i += 3) {
        const int y = vSrc[i] * 256, cb = vSrc[i + 1] - 128, cr = vSrc[i + 2] - 128;
        const int vSum[3] = {y + 454 * cb, y - 183 * cr - 88 * cb, 359 * cr + y};
        for (size_t c = 0; c < 3; ++c) {
            const int nTotal = std::max(vSum[c], 0) + vCarry[c];
            vDst[i + c] = static_cast<uint8_t>(std::min(nTotal >> 8, 255));
            vCarry[c] = nTotal & 255;
        }
    }
    for (int c = 0; c < 3 && pCarry != nullptr; ++c) pCarry->vDropped[c] = static_cast<uint8_t>(vCarry[c]);
    return vDst;
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
        EXPECT_EQ(Samples(image), SlowForward(Samples(source))) << nThreads;
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
        const Bytes vWant = SlowBack(Samples(image));
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

class ColourRowsTest : public SimdTargetTest {};

// Order of channels 1 and 2 reversed.
Bytes Reversed(Bytes vSamples)
{
    for (size_t i = 0; i < vSamples.size(); i += 3) std::swap(vSamples[i + 1], vSamples[i + 2]);
    return vSamples;
}

TEST_P(ColourRowsTest, EqualTheSlowFormsAtEverySize)
{
    std::mt19937 rng(7);
    for (int n : {0, 1, 2, 3, 7, 8, 15, 16, 17, 31, 33, 64, 100, 511, 512, 513, 528, 1025}) {
        SCOPED_TRACE(n);
        const Bytes vSource = RandomRow<uint8_t>(rng, 3 * static_cast<size_t>(n), 0, 255);
        Guarded<uint8_t> row(vSource.size());
        std::copy(vSource.begin(), vSource.end(), row.Data());
        BgrToYCbCrRow(row.Data(), n, true);
        EXPECT_EQ(Reversed(row.Values()), SlowForward(vSource));

        ColourCarry carry = {{255, 1, 128}}, wantCarry = carry;
        std::copy(vSource.begin(), vSource.end(), row.Data());
        YCbCrToBgrRow(row.Data(), n, true, carry);
        EXPECT_EQ(row.Values(), SlowBack(Reversed(vSource), &wantCarry));
        for (int c = 0; c < 3; ++c) EXPECT_EQ(carry.vDropped[c], wantCarry.vDropped[c]);
        EXPECT_TRUE(row.Intact());
    }
}

// Every pair of channels over all its values, the third at its ends and its middle.
TEST_P(ColourRowsTest, EqualTheSlowFormsForAllColours)
{
    for (int nFixed = 0; nFixed < 9; ++nFixed) {
        Bytes vSource;
        for (int i = 0; i < 65536; ++i) {
            uint8_t vPixel[3] = {static_cast<uint8_t>(i), static_cast<uint8_t>(i >> 8),
                                 static_cast<uint8_t>(nFixed % 3 * 255 / 2)};
            std::swap(vPixel[2], vPixel[nFixed / 3]);
            vSource.insert(vSource.end(), vPixel, vPixel + 3);
        }
        Bytes vRow = vSource;
        BgrToYCbCrRow(vRow.data(), 65536, false);
        ASSERT_EQ(vRow, SlowForward(vSource)) << nFixed;
        vRow = vSource;
        ColourCarry carry = {};
        YCbCrToBgrRow(vRow.data(), 65536, false, carry);
        ASSERT_EQ(vRow, SlowBack(vSource)) << nFixed;
    }
}
INSTANTIATE_ON_ALL_TARGETS(ColourRowsTest);

}  // namespace
}  // namespace vkr
