#include "primitives/smooth.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

#include "support/for_threads.h"
#include "support/random_image.h"
#include "support/reference_pyramid.h"
#include "support/simd_targets.h"

namespace vkr {

namespace {

struct Size {
    int w, h;
};

constexpr Size kSizes[] = {{1, 1}, {2, 1}, {1, 2}, {2, 3}, {3, 4}, {5, 5}, {16, 6}, {33, 21}, {130, 31}};

class SmoothFilter5x5 : public SimdTargetTest {};
INSTANTIATE_ON_ALL_TARGETS(SmoothFilter5x5);

struct SmoothCase {
    Size size;
    int nDim;
    bool bDither;
    std::vector<uint8_t> vSrc, vWant;
};

// Pictures below 16384 samples are never shared; those above have the fewest rows and columns, and odd ones.
const std::vector<SmoothCase>& EightBitCases()
{
    static const std::vector<SmoothCase> vCases = [] {
        std::vector<SmoothCase> v;
        std::mt19937 rng(3);
        const auto Add = [&](Size size, int nDim) {
            const auto vSrc = RandomRow<uint8_t>(rng, static_cast<size_t>(size.w) * size.h * nDim, 0, 255);
            for (const bool bDither : {false, true}) {
                v.push_back({size, nDim, bDither, vSrc, ReferenceSmooth5(vSrc, size.w, size.h, nDim, bDither)});
            }
        };
        for (const Size& size : kSizes) {
            for (const int nDim : {1, 2, 3, 9}) Add(size, nDim);
        }
        for (const Size& size : {Size{1, 16400}, {2, 8300}, {3, 5500}, {5, 3301}, {5600, 3}, {3303, 5}, {127, 131}}) {
            Add(size, 1);
        }
        for (int nDim = 2; nDim <= 8; ++nDim) Add({16400 / nDim / 11, 13}, nDim);
        return v;
    }();
    return vCases;
}

TEST_P(SmoothFilter5x5, EightBitsFollowTheFormulaWithAnyTeam)
{
    ForThreads(
        [](int nThreads) {
            for (const SmoothCase& each : EightBitCases()) {
                SCOPED_TRACE(testing::Message() << each.size.w << " x " << each.size.h << " x " << each.nDim
                                                << ", dither " << each.bDither << ", " << nThreads << " threads");
                TestImage src, dst;
                ASSERT_TRUE(src.AllocateDim(each.size.w, each.size.h, each.nDim));
                std::copy(each.vSrc.begin(), each.vSrc.end(), src.pData);
                ASSERT_TRUE(CSmoothFilter5x5::SmoothImage8(src, dst, each.bDither));
                EXPECT_EQ(each.nDim, dst.nDim);
                EXPECT_TRUE(each.vWant == Samples(dst));
                ASSERT_TRUE(CSmoothFilter5x5::SmoothImage8(src, src, each.bDither));
                EXPECT_TRUE(each.vWant == Samples(src));
            }
        },
        kManyTeams);
}

TEST_P(SmoothFilter5x5, SixteenBitsFollowTheFormulaInAndOutOfPlace)
{
    std::mt19937 rng(5);
    for (const Size& size : kSizes) {
        for (const int nDim : {1, 4, 11}) {
            for (const bool bDither : {false, true}) {
                SCOPED_TRACE(testing::Message()
                             << size.w << " x " << size.h << " x " << nDim << ", dither " << bDither);
                TestShortImage src, dst;
                FillRandom(rng, src, size.w, size.h, nDim, -32768, 32767);
                src.nRangeMax = 255;
                src.nRangeMin = -3;
                const auto vWant = ReferenceSmooth5(Samples(src), size.w, size.h, nDim, bDither);
                ASSERT_TRUE(CSmoothFilter5x5::SmoothImage16(src, dst, bDither));
                EXPECT_EQ(vWant, Samples(dst));
                EXPECT_EQ(255, dst.nRangeMax);
                EXPECT_EQ(-3, dst.nRangeMin);
                ASSERT_TRUE(CSmoothFilter5x5::SmoothImage16(src, src, bDither));
                EXPECT_EQ(vWant, Samples(src));
            }
        }
    }
}

TEST_P(SmoothFilter5x5, KeepsAConstantPicture)
{
    for (const bool bDither : {false, true}) {
        for (const int nValue : {0, 1, 128, 255, -1, -255}) {
            TestImage src, dst;
            FillConstant(src, 19, 7, 3, nValue & 255);
            ASSERT_TRUE(CSmoothFilter5x5::SmoothImage8(src, dst, bDither));
            EXPECT_EQ(Samples(src), Samples(dst));
            TestShortImage src16, dst16;
            FillConstant(src16, 19, 7, 2, nValue * 100);
            ASSERT_TRUE(CSmoothFilter5x5::SmoothImage16(src16, dst16, bDither));
            EXPECT_EQ(Samples(src16), Samples(dst16));
        }
    }
}

// One bright pixel among 5 x 5: the kernel itself, 36 of 256 in the middle, 1 in the corners.
TEST(SmoothImage8, SpreadsOnePixelByTheTaps)
{
    TestImage src, dst;
    FillConstant(src, 5, 5, 1, 0);
    src.pData[12] = 128;
    ASSERT_TRUE(CSmoothFilter5x5::SmoothImage8(src, dst, false));
    // Sums 128 * (1, 4, 6, 16, 24, 36), with 128 added, by 256.
    EXPECT_EQ((Pixels<uint8_t>{1, 2, 3, 2, 1, 2, 8, 12, 8, 2, 3, 12, 18, 12, 3, 2, 8, 12, 8, 2, 1, 2, 3, 2, 1}),
              Samples(dst));
}

// The same below 0: a shift floors, so that -128 * 1 + 128 is 0 by 256, -512 + 128 is -2, and what is carried of a sum
// is never below 0.
TEST(SmoothImage16, FloorsBelowZero)
{
    TestShortImage src, dst;
    FillConstant(src, 5, 5, 1, 0);
    src.pData[12] = -128;
    ASSERT_TRUE(CSmoothFilter5x5::SmoothImage16(src, dst, false));
    // Sums -128 * (1, 4, 6, 16, 24, 36), with 128 added, by 256.
    EXPECT_EQ((Pixels<int16_t>{0,   -2, -3, -2, 0,   -2, -8, -12, -8, -2, -3, -12, -18,
                               -12, -3, -2, -8, -12, -8, -2, 0,   -2, -3, -2, 0}),
              Samples(dst));
    ASSERT_TRUE(CSmoothFilter5x5::SmoothImage16(src, dst, true));
    // -128, remainder 128; -512 + 128 = -384: -2, 128; -768 + 128 = -640: -3, 128; -2, 128; -128 + 128 = 0.
    const Pixels<int16_t> vRow(dst.pData, dst.pData + 5);
    EXPECT_EQ((Pixels<int16_t>{-1, -2, -3, -2, 0}), vRow);
}

}  // namespace

}  // namespace vkr
