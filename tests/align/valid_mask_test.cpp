#include "align/valid_mask.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <vector>

#include "support/for_threads.h"
#include "support/random_image.h"

namespace vkr {
namespace {

constexpr int kW = 61, kH = 43;

struct Cut {
    TestImage mask, reference;
    bool bDone = false;

    explicit Cut(const CMatrix& homography, int nReferenceWidth = 2 * kW, int nReferenceHeight = 2 * kH)
    {
        FillConstant(reference, nReferenceWidth, nReferenceHeight, 1, 255);
        bDone = CutValidRegion(kW, kH, homography, mask, reference);
    }
    int At(int x, int y) const { return mask.Row(y)[x]; }
    // The reference is 0 where the mask is and 255 everywhere else.
    bool ReferenceFollows() const
    {
        bool bFollows = true;
        for (int i = 0; i < 4 * kW * kH; ++i) {
            const int x = i % (2 * kW), y = i / (2 * kW);
            bFollows = bFollows && reference.pData[i] == (x < kW && y < kH ? At(x, y) : 255);
        }
        return bFollows;
    }
    int ValidSamples() const { return static_cast<int>(std::count(mask.pData, mask.pData + mask.Samples(), 255)); }
};

CMatrix Affine(double a, double b, double c, double d, double dx, double dy)
{
    CMatrix matrix = IdentityHomography();
    const double vTop[6] = {a, b, dx, c, d, dy};
    for (int i = 0; i < 6; ++i) matrix.At(i / 3, i % 3) = vTop[i];
    return matrix;
}

TEST(CutValidRegion, WholeShiftsEndOnTheEdgeAndBeginAfterIt)
{
    EXPECT_EQ(kW * kH, Cut(IdentityHomography()).ValidSamples());
    const Cut right(Affine(1, 0, 0, 1, 3, 2)), left(Affine(1, 0, 0, 1, -3, -2));
    for (int y = 0; y < kH; ++y) {
        for (int x = 0; x < kW; ++x) {
            EXPECT_EQ(x >= 4 && y >= 2 ? 255 : 0, right.At(x, y)) << x << ' ' << y;
            EXPECT_EQ(x <= kW - 4 && y <= kH - 3 ? 255 : 0, left.At(x, y)) << x << ' ' << y;
        }
    }
    EXPECT_TRUE(right.ReferenceFollows());
    EXPECT_EQ(std::vector<uint8_t>(4 * 20, 0), Samples(Cut(Affine(1, 0, 0, 1, 3, 50), 4, 20).reference));
}

// The projected outline in double, and where a pixel lies to it.
struct Outline {
    double vX[4], vY[4];

    explicit Outline(const CMatrix& matrix)
    {
        for (int i = 0; i < 4; ++i) {
            const double x = i == 1 || i == 2 ? kW - 1 : 0, y = i >= 2 ? kH - 1 : 0;
            const double w = matrix.At(2, 0) * x + matrix.At(2, 1) * y + 1;
            vX[i] = (matrix.At(0, 0) * x + matrix.At(0, 1) * y + matrix.At(0, 2)) / w;
            vY[i] = (matrix.At(1, 0) * x + matrix.At(1, 1) * y + matrix.At(1, 2)) / w;
        }
    }
    // Inside all four half planes by so much; negative beyond one of them. In pixels.
    double Depth(int x, int y) const
    {
        double fDepth = 1e9;
        for (int i = 0, k = 1; i < 4; ++i, k = (k + 1) % 4) {
            const double dx = vX[k] - vX[i], dy = vY[k] - vY[i];
            fDepth = std::min(fDepth, (dx * (y - vY[i]) - dy * (x - vX[i])) / std::hypot(dx, dy));
        }
        return fDepth;
    }
};

CMatrix RandomTilt(std::mt19937& rng)
{
    std::uniform_real_distribution<double> pick(-1, 1);
    const double fAngle = 3.1 * pick(rng), fScale = 1 + 0.4 * pick(rng);
    const double fCos = fScale * std::cos(fAngle), fSin = fScale * std::sin(fAngle);
    CMatrix matrix = Affine(fCos, -fSin, fSin, fCos, kW / 2.0 + 40 * pick(rng), kH / 2.0 + 40 * pick(rng));
    matrix.At(2, 0) = 2e-3 * pick(rng);
    matrix.At(2, 1) = 2e-3 * pick(rng);
    return matrix;
}

// Every pixel but those nearer to the outline than floats can tell.
TEST(CutValidRegion, IsTheInsideOfTheQuadrilateral)
{
    std::mt19937 rng(41);
    constexpr int kRuns = 60;
    int nNear = 0, nInside = 0;
    for (int nRun = 0; nRun < kRuns; ++nRun) {
        const ThreadsScope threads(1 + nRun * 5 / kRuns);
        const CMatrix matrix = RandomTilt(rng);
        const Outline outline(matrix);
        const Cut cut(matrix);
        ASSERT_TRUE(cut.bDone && cut.ReferenceFollows());
        for (int i = 0; i < kW * kH; ++i) {
            const double fDepth = outline.Depth(i % kW, i / kW);
            nNear += std::fabs(fDepth) < 1e-3 ? 1 : 0;
            nInside += fDepth > 0 ? 1 : 0;
            if (std::fabs(fDepth) < 1e-3) continue;
            ASSERT_EQ(fDepth > 0 ? 255 : 0, cut.mask.pData[i]) << nRun << ": " << i % kW << ' ' << i / kW;
        }
    }
    EXPECT_LT(nNear, kRuns * kW * kH / 500);
    EXPECT_GT(nInside, kRuns * kW * kH / 10);
}

TEST(CutValidRegion, DegenerateHomographiesLeaveNothingOrWhatTheirQuotientsEnclose)
{
    const double fInf = std::numeric_limits<double>::infinity();
    CMatrix horizon = IdentityHomography(), behind = IdentityHomography(), huge = Affine(1e37, 0, 0, 1e37, -1e38, 0);
    horizon.At(2, 0) = -1.0 / (kW - 1);  // the right corners are infinitely far
    behind.At(2, 0) = -0.02;             // the right corners lie behind the plane
    EXPECT_EQ(0, Cut(horizon).ValidSamples());
    EXPECT_EQ(0, Cut(Affine(1, 0, 0, 1, fInf, 0)).ValidSamples());
    EXPECT_EQ(0, Cut(Affine(-1, 0, 0, 1, kW - 1, 0)).ValidSamples());  // turned over
    EXPECT_EQ(0, Cut(behind).ValidSamples());
    EXPECT_TRUE(Cut(huge).ReferenceFollows());
    TestImage mask, reference;
    EXPECT_FALSE(CutValidRegion(0, kH, IdentityHomography(), mask, reference));
    EXPECT_FALSE(CutValidRegion(kW, kH, CMatrix(), mask, reference));
    EXPECT_TRUE(CutValidRegion(1, 1, IdentityHomography(), mask, reference));
    EXPECT_EQ(std::vector<uint8_t>(1, 255), Samples(mask));
}

}  // namespace
}  // namespace vkr
