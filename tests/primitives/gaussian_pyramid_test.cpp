#include "primitives/gaussian_pyramid.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <random>

#include "support/for_threads.h"
#include "support/random_image.h"
#include "support/reference_pyramid.h"

namespace vkr {

namespace {

using Pyramid = CGaussianPyramid2;

struct Size {
    int w, h;
};

// Small ones, where every output is an edge, odd ones, one more than the lanes of a vector, and one that is shared
// among a team.
constexpr Size kSizes[] = {{1, 1}, {1, 2}, {2, 1}, {2, 2},  {2, 4},   {4, 2},  {6, 4},
                           {5, 7}, {3, 2}, {1, 9}, {12, 1}, {34, 18}, {67, 5}, {130, 66}};
constexpr int kDims[] = {1, 2, 3, 8, 9};

// The nCount samples that op(pDst) writes; it must write nothing else.
template <class T, class Op>
Pixels<T> Written(size_t nCount, const Op& op)
{
    Guarded<T> dst(nCount);
    EXPECT_TRUE(op(dst.Data()));
    EXPECT_TRUE(dst.Intact());
    return dst.Values();
}

// Values worked out by hand. A picture whose rows are all the same is scaled by 32 or 16 in the other direction.

TEST(DownScaleImageFast, WeighsTheLastPairFifteenAndEleven)
{
    // Columns 0 0 64 128, every row: output 1 is (1 * 0 + 5 * 0 + 15 * 64 + 11 * 128) / 32 = 74.
    const Pixels<uint8_t> vRows = {0, 0, 64, 128, 0, 0, 64, 128};
    EXPECT_EQ(
        74, Written<uint8_t>(2, [&](uint8_t* p) { return Pyramid::DownScaleImageFast(vRows.data(), p, 4, 2, 1); })[1]);
    // The same picture turned.
    const Pixels<uint8_t> vColumns = {0, 0, 0, 0, 64, 64, 128, 128};
    EXPECT_EQ(74, Written<uint8_t>(
                      2, [&](uint8_t* p) { return Pyramid::DownScaleImageFast(vColumns.data(), p, 2, 4, 1); })[1]);
}

TEST(DownScaleShort, WeighsASideOfTwoByItsOwnRule)
{
    const Pixels<int16_t> vColumns = {320, 0, 320, 0}, vRows = {320, 320, 0, 0};
    const auto Parallel = [](const Pixels<int16_t>& v) {
        return Written<int16_t>(1,
                                [&](int16_t* p) { return Pyramid::DownScaleShortParallel(v.data(), p, 2, 2, 1); })[0];
    };
    const auto Serial = [](const Pixels<int16_t>& v) {
        return Written<int16_t>(1,
                                [&](int16_t* p) { return Pyramid::DownScaleShortFast(v.data(), p, 2, 2, 1, true); })[0];
    };
    EXPECT_EQ(210, Parallel(vColumns));  // 21 / 32
    EXPECT_EQ(210, Parallel(vRows));
    EXPECT_EQ(160, Serial(vColumns));  // 16 / 32
    EXPECT_EQ(160, Serial(vRows));
}

TEST(DownScaleShort, RoundsBelowZeroAsEachFormDoes)
{
    // One sample of -1: its weight over 1024 is less than one, so the floor gives -1 and truncation 0.
    const Pixels<int16_t> vSrc = {-1, 0, 0, 0};
    const auto At0 = [](const auto& op) { return Written<int16_t>(1, op)[0]; };
    EXPECT_EQ(-1, At0([&](int16_t* p) { return Pyramid::DownScaleShortParallel(vSrc.data(), p, 2, 2, 1); }));
    EXPECT_EQ(0, At0([&](int16_t* p) { return Pyramid::DownScaleShortFast(vSrc.data(), p, 2, 2, 1, false); }));
    EXPECT_EQ(0, At0([&](int16_t* p) { return Pyramid::DownScaleShort(vSrc.data(), p, 2, 2, 1, false); }));
}

TEST(DownScaleImage, CarriesAcrossTheEndsOfRows)
{
    // 2 columns, 8 rows: one output a row. Column sums of weight 16 over both columns (11 + 5): rows 0 and 1 of value 8
    // give fractions that only add up to a whole one when they run on from row to row.
    Pixels<uint8_t> vSrc(16, 0);
    std::fill(vSrc.begin(), vSrc.begin() + 4, uint8_t{8});
    // Row weights of rows 0 and 1 for the outputs: 11 + 4, 1 + 4, 0, 0, of 16: sums 15 * 16 * 8 = 1920 = 7 * 256 + 128
    // and 5 * 16 * 8 = 640 = 2 * 256 + 128.
    const auto Halve = [&](bool bDither) {
        return Written<uint8_t>(4,
                                [&](uint8_t* p) { return Pyramid::DownScaleImage(vSrc.data(), p, 2, 8, 1, bDither); });
    };
    EXPECT_EQ((Pixels<uint8_t>{7, 2, 0, 0}), Halve(false));
    EXPECT_EQ((Pixels<uint8_t>{7, 3, 0, 0}), Halve(true));
}

TEST(UpScaleShort, CarriesTheSignedRemainderThroughBothRows)
{
    // One pixel of -1, -1 against 0: widened rows in Q1 are -7 / 4 = -1 and -1, then 1 / 4 = 0 and 0.
    const Pixels<int16_t> vSrc = {-1, 0};
    const auto Double = [&](bool bDither) {
        return Written<int16_t>(8, [&](int16_t* p) { return Pyramid::UpScaleShort(vSrc.data(), p, 2, 1, 1, bDither); });
    };
    // Even row: sums -8 / 4 = -2, -2, 0, 0; odd row -2, -2, 0, 0. In fours with the carry: 0, -1, 0, 0, 0, -1, 0, 0.
    EXPECT_EQ((Pixels<int16_t>{0, 0, 0, 0, 0, 0, 0, 0}), Double(false));
    EXPECT_EQ((Pixels<int16_t>{0, -1, 0, 0, 0, -1, 0, 0}), Double(true));
}

TEST(UpScaleShortParallel, WrapsAboveTwelveBits)
{
    // 3000 * 16 = 48000 wraps to -17536, by 16 -1096; the end rows, 4 * 3000 / 4, do not wrap.
    const Pixels<int16_t> vSrc = {3000, 3000};
    const auto v =
        Written<int16_t>(8, [&](int16_t* p) { return Pyramid::UpScaleShortParallel(vSrc.data(), p, 1, 2, 1); });
    EXPECT_EQ((Pixels<int16_t>{3000, 3000, -1096, -1096, -1096, -1096, 3000, 3000}), v);
}

TEST(ExpandImage, RepeatsTheLastPixelAndRow)
{
    const Pixels<uint8_t> vSrc = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12};  // 3 x 2 pixels of 2 channels
    Guarded<uint8_t> dst(4 * 4 * 2);
    Pyramid::ExpandImage(vSrc.data(), dst.Data(), 3, 2, 4, 4, 2);
    EXPECT_EQ((Pixels<uint8_t>{1, 2, 3, 4,  5,  6,  5,  6,  7, 8, 9, 10, 11, 12, 11, 12,
                               7, 8, 9, 10, 11, 12, 11, 12, 7, 8, 9, 10, 11, 12, 11, 12}),
              dst.Values());
    EXPECT_TRUE(dst.Intact());

    const Pixels<int16_t> vShort = {-300, 300};
    Guarded<int16_t> dst16(5);
    Pyramid::ExpandShort(vShort.data(), dst16.Data(), 2, 1, 5, 1, 1);
    EXPECT_EQ((Pixels<int16_t>{-300, 300, 300, 300, 300}), dst16.Values());
    EXPECT_TRUE(dst16.Intact());
}

TEST(SubtractAndAdd, TakeTheWiderRowsOfTheDoubledLevel)
{
    std::mt19937 rng(5);
    for (const Size& size : kSizes) {
        for (const int nDim : kDims) {
            const int w = size.w, h = size.h, nWide = w + 1;
            SCOPED_TRACE(testing::Message() << w << " x " << h << " x " << nDim);
            const size_t nCount = static_cast<size_t>(w) * h * nDim, nWideCount = static_cast<size_t>(nWide) * h * nDim;
            const auto vA = RandomRow<uint8_t>(rng, nCount, 0, 255), vB = RandomRow<uint8_t>(rng, nWideCount, 0, 255);
            const auto vBase = RandomRow<int16_t>(rng, nWideCount, -32768, 32767);
            const auto vDetail = RandomRow<int16_t>(rng, nCount, -32768, 32767);
            Pixels<int16_t> vDifference, vSum;
            for (size_t i = 0; i < nCount; ++i) {
                const size_t nAt = i + i / (static_cast<size_t>(w) * nDim) * nDim;  // one pixel more a row
                vDifference.push_back(static_cast<int16_t>(vA[i] - vB[nAt]));
                vSum.push_back(static_cast<int16_t>(vBase[nAt] + vDetail[i]));  // wraps
            }
            ForThreads([&](int) {
                Guarded<int16_t> difference(nCount), sum(nCount);
                Pyramid::SubtractImage(vA.data(), vB.data(), difference.Data(), w, h, nWide, nDim);
                Pyramid::AddShort(vBase.data(), vDetail.data(), sum.Data(), w, h, nWide, nDim);
                EXPECT_EQ(vDifference, difference.Values());
                EXPECT_EQ(vSum, sum.Values());
                EXPECT_TRUE(difference.Intact() && sum.Intact());
            });
        }
    }
}

}  // namespace

}  // namespace vkr
