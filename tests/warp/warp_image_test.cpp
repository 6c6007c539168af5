#include "warp/warp_image.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

#include "support/for_threads.h"
#include "support/random_image.h"

namespace vkr {
namespace {

CMatrix Homography(const std::vector<double>& v)
{
    CMatrix matrix(3, 3);
    for (int i = 0; i < 9; ++i) matrix.At(i / 3, i % 3) = v[i];
    return matrix;
}

float Inside(float f, int nSize)
{
    const float fLast = static_cast<float>(nSize - 1);
    f = std::abs(f);
    return std::max(0.0f, f > fLast ? 2 * fLast - f : f);
}

// A second writing of one sample, with the pixels clamped one by one.
uint8_t SlowSample(const CImage& src, const CMatrix& matrix, int x, int y, int c)
{
    float v[3];
    for (int i = 0; i < 3; ++i) {
        v[i] = static_cast<float>(matrix.At(i, 0)) * static_cast<float>(x) +
               static_cast<float>(matrix.At(i, 1)) * static_cast<float>(y) + static_cast<float>(matrix.At(i, 2));
    }
    const float u = Inside(v[0] / v[2], src.nWidth), w = Inside(v[1] / v[2], src.nHeight);
    const int ix = static_cast<int>(u), iy = static_cast<int>(w);
    const auto At = [&](int dx, int dy) {
        return static_cast<float>(src.Row(iy + dy)[3 * std::min(ix + dx, src.nWidth - 1) + c]);
    };
    const float fx = u - static_cast<float>(ix), fy = w - static_cast<float>(iy);
    const float a = At(0, 0) + fx * (At(1, 0) - At(0, 0)), b = At(0, 1) + fx * (At(1, 1) - At(0, 1));
    return static_cast<uint8_t>(a + fy * (b - a));
}

TEST(WarpImage, EqualsTheSlowFormAtAllSizesAndTeams)
{
    std::mt19937 rng(4);
    const std::vector<std::vector<double>> vMatrices{
        {1, 0, 0, 0, 1, 0, 0, 0, 1},                     // copies
        {6.25, 0, 0, 0, 0.3, 0, 0, 0, 1},                // a resize
        {0.9, 0.2, -7.5, -0.1, 1.1, 40, 1e-3, -2e-3, 1}  // mirrored at all borders
    };
    for (const auto& [w, h] : std::vector<std::pair<int, int>>{{1, 1}, {1, 9}, {7, 1}, {33, 20}, {64, 48}}) {
        for (const std::vector<double>& vMatrix : vMatrices) {
            TestImage src;
            FillRandom(rng, src, w, h, 3, 0, 255);
            const CMatrix matrix = Homography(vMatrix);
            const int nWidth = &vMatrix == &vMatrices[0] ? w : 21, nHeight = &vMatrix == &vMatrices[0] ? h : 17;
            std::vector<uint8_t> vWant;
            for (int i = 0; i < 3 * nWidth * nHeight; ++i) {
                vWant.push_back(SlowSample(src, matrix, i / 3 % nWidth, i / 3 / nWidth, i % 3));
            }
            if (&vMatrix == &vMatrices[0]) {
                EXPECT_EQ(Samples(src), vWant);
            }
            ForThreads([&](int nThreads) {
                TestImage dst;
                FillConstant(dst, nWidth, nHeight, 3, 0xA5);
                ASSERT_TRUE(WarpImage(src, dst, matrix));
                EXPECT_EQ(vWant, Samples(dst)) << src.nWidth << " x " << src.nHeight << ", " << nThreads << " threads";
            });
        }
    }
}

TEST(WarpImage, TakesAnyMatrix)
{
    TestImage src, dst;
    FillConstant(src, 5, 4, 3, 9);
    FillConstant(dst, 3, 3, 3, 0);
    for (const double d : {0.0, 1e300, -1e300, std::nan("")}) {
        EXPECT_TRUE(WarpImage(src, dst, Homography({d, 0, d, 0, 1, d, 0, 0, d})));
        EXPECT_EQ(std::vector<uint8_t>(27, 9), Samples(dst)) << d;
    }
    EXPECT_FALSE(WarpImage(src, dst, CMatrix(2, 3)));
    TestImage empty;
    EXPECT_FALSE(WarpImage(src, empty, IdentityHomography()));
}

}  // namespace
}  // namespace vkr
