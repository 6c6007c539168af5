#include "primitives/morphology.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "foundation/parallel_rows.h"
#include "support/for_threads.h"
#include "support/random_image.h"

namespace vkr {

namespace {

using Morphology = CMorphologyFilter;
using Bytes = std::vector<uint8_t>;

struct Size {
    int w, h;
};

// The last one is large enough to be shared among a team.
constexpr Size kSizes[] = {{1, 1}, {1, 7}, {7, 1}, {2, 2}, {2, 5}, {3, 3}, {17, 4}, {33, 21}, {67, 9}, {211, 103}};

enum Op { kMin, kMax, kAnd, kOr };

uint8_t Join(Op op, uint8_t a, uint8_t b)
{
    if (op == kMin) return std::min(a, b);
    if (op == kMax) return std::max(a, b);
    return static_cast<uint8_t>(op == kAnd ? a & b : a | b);
}

// The slow writing: every sample of the window that lies inside the picture.
Bytes Reference(const Bytes& vSrc, const Size& size, bool bSquare, Op op)
{
    Bytes vOut = vSrc;
    for (int i = 0; i < 9 * size.w * size.h; ++i) {
        const int nAt = i / 9, dx = i % 3 - 1, dy = i % 9 / 3 - 1;
        const int x = nAt % size.w + dx, y = nAt / size.w + dy;
        const bool bInside = x >= 0 && x < size.w && y >= 0 && y < size.h;
        if (bInside && (bSquare || dx == 0 || dy == 0)) vOut[nAt] = Join(op, vOut[nAt], vSrc[y * size.w + x]);
    }
    return vOut;
}

using Unary = bool (*)(const CImage&, CImage&);

// An operation, as squares and then crosses of one kind.
struct Case {
    const char* szName;
    Unary pRun;
    Op nOp;
    int nSquares, nCrosses;
};
#define CASE(name, op, squares, crosses)              \
    {                                                 \
#name, Morphology::name, op, squares, crosses \
    }
const Case kCases[] = {
    CASE(ErodeBinarySquare, kAnd, 1, 0),    CASE(ErodeBinarySquareFast, kAnd, 1, 0),
    CASE(DilateBinarySquare, kOr, 1, 0),    CASE(ErodeGraySquare, kMin, 1, 0),
    CASE(ErodeGraySquareFast, kMin, 1, 0),  CASE(DilateGraySquare, kMax, 1, 0),
    CASE(DilateGraySquareFast, kMax, 1, 0), CASE(ErodeBinaryCross, kAnd, 0, 1),
    CASE(ErodeBinaryCrossFast, kAnd, 0, 1), CASE(DilateBinaryCross, kOr, 0, 1),
    CASE(ErodeGrayCross, kMin, 0, 1),       CASE(ErodeGrayCrossFast, kMin, 0, 1),
    CASE(DilateGrayCross, kMax, 0, 1),      CASE(DilateGrayCrossFast, kMax, 0, 1),
    CASE(ErodeBinaryOctagon2, kAnd, 1, 1),  CASE(ErodeBinaryOctagon3, kAnd, 1, 2),
    CASE(ErodeBinaryOctagon4, kAnd, 2, 2),  CASE(ErodeGrayOctagon3, kMin, 1, 2),
    CASE(ErodeGrayOctagon4, kMin, 2, 2),    CASE(DilateBinaryOctagon2, kOr, 1, 1),
    CASE(DilateBinaryOctagon3, kOr, 1, 2),  CASE(DilateBinaryOctagon4, kOr, 2, 2),
    CASE(DilateGrayOctagon2, kMax, 1, 1),   CASE(DilateGrayOctagon3, kMax, 1, 2),
    CASE(DilateGrayOctagon4, kMax, 2, 2),
};

TEST(MorphologyFilter, WindowsFollowTheFormulaInAndOutOfPlaceFromAnyTeam)
{
    std::mt19937 rng(5);
    for (const Size& size : kSizes) {
        TestImage src;
        FillRandom(rng, src, size.w, size.h, 1, 0, 255);
        for (const Case& test : kCases) {
            Bytes vWant = Samples(src);
            for (int i = 0; i < test.nSquares; ++i) vWant = Reference(vWant, size, true, test.nOp);
            for (int i = 0; i < test.nCrosses; ++i) vWant = Reference(vWant, size, false, test.nOp);
            ForThreads([&](int nThreads) {
                SCOPED_TRACE(testing::Message() << test.szName << " " << size.w << " x " << size.h << ", " << nThreads);
                TestImage dst, inPlace;
                FillRandom(rng, dst, 5, 40, 3, 0, 255);
                ASSERT_TRUE(test.pRun(src, dst));
                EXPECT_TRUE(dst.nWidth == size.w && dst.nHeight == size.h && dst.nDim == 1);
                EXPECT_EQ(vWant, Samples(dst));
                ASSERT_TRUE(inPlace.CopyGrayFrom(src) && test.pRun(inPlace, inPlace));
                EXPECT_EQ(vWant, Samples(inPlace));
            });
        }
    }
}

// The defined oddity of one of the octagons.
TEST(ErodeGrayOctagon2, ErodesWhatTheDestinationHolds)
{
    std::mt19937 rng(6);
    TestImage src, dst;
    FillRandom(rng, src, 4, 4, 1, 0, 255);
    FillRandom(rng, dst, 33, 21, 1, 0, 255);
    const Bytes vWant = Reference(Reference(Samples(dst), {33, 21}, true, kMin), {33, 21}, false, kMin);
    ASSERT_TRUE(Morphology::ErodeGrayOctagon2(src, dst));
    EXPECT_EQ(vWant, Samples(dst));
}

TEST(MorphologyFilter, ThresholdsIncludeTheirEnds)
{
    std::mt19937 rng(7);
    TestImage src, dst;
    FillRandom(rng, src, 37, 11, 1, 0, 255);
    const auto Check = [&](const auto& run, const auto& bWhite) {
        Bytes vWant = Samples(src);
        for (uint8_t& v : vWant) v = bWhite(v) ? 255 : 0;
        ASSERT_TRUE(run(src, dst));
        EXPECT_EQ(vWant, Samples(dst));
        ASSERT_TRUE(dst.CopyGrayFrom(src) && run(dst, dst));
        EXPECT_EQ(vWant, Samples(dst));
    };
    for (const int a : {-1000, -1, 0, 1, 100, 254, 255, 256, 1 << 30}) {
        SCOPED_TRACE(a);
        Check([=](const CImage& s, CImage& d) { return Morphology::ThresholdAbove(s, d, a); },
              [=](int v) { return !(v < a); });
        Check([=](const CImage& s, CImage& d) { return Morphology::ThresholdBelow(s, d, a); },
              [=](int v) { return !(v > a); });
        for (const int b : {-5, 0, 99, 100, 200, 255, 300}) {
            Check([=](const CImage& s, CImage& d) { return Morphology::ThresholdRange(s, d, a, b); },
                  [=](int v) { return a <= v && v <= b; });
        }
    }
}

TEST(MorphologyFilter, BitLogicMayWriteEitherSource)
{
    std::mt19937 rng(8);
    TestImage a, b, dst;
    FillRandom(rng, a, 37, 11, 1, 0, 255);
    FillRandom(rng, b, 37, 11, 1, 0, 255);
    const Bytes vA = Samples(a), vB = Samples(b);
    const auto Expect = [&](const CImage& image, const auto& op) {
        for (size_t i = 0; i < vA.size(); ++i) ASSERT_EQ(op(vA[i], vB[i]) & 255, image.pData[i]) << i;
    };
    ASSERT_TRUE(Morphology::BitAnd(a, b, dst));
    Expect(dst, [](int p, int q) { return p & q; });
    ASSERT_TRUE(Morphology::BitOr(a, b, dst));
    Expect(dst, [](int p, int q) { return p | q; });
    ASSERT_TRUE(Morphology::BitXor(a, b, b));
    Expect(b, [](int p, int q) { return p ^ q; });
    ASSERT_TRUE(Morphology::BitXor(a, b, a) && Morphology::BitNot(a, dst) && Morphology::BitNot(a, a));
    Expect(a, [](int, int q) { return ~q; });  // a ^ (a ^ b) is b
    EXPECT_EQ(Samples(a), Samples(dst));
}

TEST(MorphologyFilterErrors, LeaveTheDestinationAsItWas)
{
    TestImage a, b, three, dst, none;
    FillConstant(a, 4, 3, 1, 7);
    FillConstant(b, 3, 4, 1, 7);
    FillConstant(three, 4, 3, 3, 7);
    FillConstant(dst, 2, 2, 1, 9);
    EXPECT_FALSE(Morphology::BitAnd(a, b, dst) || Morphology::BitOr(a, three, dst) || Morphology::BitXor(b, a, dst));
    EXPECT_FALSE(Morphology::ErodeGraySquare(three, dst) || Morphology::ThresholdAbove(three, dst, 3));
    EXPECT_EQ((Bytes{9, 9, 9, 9}), Samples(dst));
    EXPECT_TRUE(Morphology::DilateGrayCrossFast(none, dst) && Morphology::BitNot(none, none));
    EXPECT_TRUE(dst.Empty());
}

}  // namespace

}  // namespace vkr
