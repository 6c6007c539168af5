#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <vector>

#include "align/homograph_grid.h"
#include "align/homograph_mapping_filter.h"
#include "align/warp_rows.h"
#include "support/for_threads.h"
#include "support/quiet_lines.h"
#include "support/random_image.h"
#include "support/simd_targets.h"

namespace vkr {
namespace {

CMatrix Homography(const std::vector<double>& v)
{
    CMatrix matrix(3, 3);
    for (int i = 0; i < 9; ++i) matrix.At(i / 3, i % 3) = v[i];
    return matrix;
}

CMatrix Shift(double dx, double dy)
{
    return Homography({1, 0, dx, 0, 1, dy, 0, 0, 1});
}

// A second writing, sample by sample: one plane of a frame warped, nDim 1 luma, 2 chroma.
class SlowWarp {
public:
    SlowWarp(const CYuvImage& frame, const CMatrix& homography, int nDim)
        : m_frame(frame),
          m_homography(homography),
          m_nDim(nDim),
          m_nWidth((frame.nWidth + 15) / 16 * 16 / nDim),
          m_nHeight((frame.nHeight + 15) / 16 * 16 / nDim)
    {
    }
    uint8_t Sample(int x, int y, int c) const
    {
        const int nInRun = x % (8 / m_nDim), nCell = 16 / m_nDim;
        const float w = Node(2, x / nCell, y / nCell), fDim = static_cast<float>(m_nDim);
        const float u = Node(0, x / nCell, y / nCell) / w / fDim, v = Node(1, x / nCell, y / nCell) / w / fDim;
        const float sx = Inside(static_cast<float>((x - nInRun) % nCell) + u, m_nWidth);
        const float sy = Inside(static_cast<float>(y % nCell) + v, m_nHeight);
        const int ix = static_cast<int>(sx) + nInRun, iy = static_cast<int>(sy);
        const float a = Across(ix, iy, c, sx - std::floor(sx));
        const float b = Across(ix, std::min(iy + 1, m_nHeight - 1), c, sx - std::floor(sx));
        return static_cast<uint8_t>(a + (sy - std::floor(sy)) * (b - a));
    }

private:
    float Node(int nRow, int i, int j) const
    {
        const auto At = [&](int nCol) { return static_cast<float>(m_homography.At(nRow, nCol)); };
        float fSum = At(2) + static_cast<float>(16 * j) * At(1);
        for (int k = 0; k < i; ++k) fSum += 16.0f * At(0);
        return fSum;
    }
    static float Inside(float f, int nSize)
    {
        if (std::isnan(f)) return 0;
        if (f < 0) f = -f;
        if (f > static_cast<float>(nSize - 1)) f = static_cast<float>(2 * (nSize - 1)) - f;
        return std::max(f, 0.0f);
    }
    float Across(int x, int y, int c, float fx) const
    {
        const uint8_t* const pRow = m_nDim == 1 ? m_frame.RowY(y) : m_frame.RowUV(y);  // repeats the last
        const auto At = [&](int nAt) {
            nAt = nAt < m_nWidth ? nAt : 2 * (m_nWidth - 1) - nAt;
            return static_cast<float>(pRow[std::min(nAt, m_frame.nWidth / m_nDim - 1) * m_nDim + c]);
        };
        return At(x) + fx * (At(x + 1) - At(x));
    }

    const CYuvImage& m_frame;
    const CMatrix& m_homography;
    int m_nDim, m_nWidth, m_nHeight;
};

std::vector<uint8_t> SlowFrame(const CYuvImage& frame, const CMatrix& homography)
{
    std::vector<uint8_t> vBytes;
    for (const int nDim : {1, 2}) {
        const SlowWarp warp(frame, homography, nDim);
        for (int y = 0; y < frame.nHeight / nDim; ++y) {
            for (int x = 0; x < frame.nWidth; ++x) vBytes.push_back(warp.Sample(x / nDim, y, x % nDim));
        }
    }
    return vBytes;
}

void RandomFrame(std::mt19937& rng, CYuvImage& frame, int w, int h)
{
    ASSERT_TRUE(frame.Allocate(w, h));
    for (int i = 0; i < w * h / 2 * 3; ++i) frame.pBuffer[i] = static_cast<uint8_t>(rng());
}

// From hand motion to places far outside, a horizon within the picture, and what is no number.
std::vector<CMatrix> ManyHomographies(std::mt19937& rng)
{
    const double fNan = std::numeric_limits<double>::quiet_NaN(), fInf = std::numeric_limits<double>::infinity();
    std::vector<CMatrix> vList = {Shift(0, 0),
                                  Shift(-7.25, 5.5),
                                  Shift(3e4, -3e4),
                                  Shift(-1e30, 1e30),
                                  Shift(fNan, fInf),
                                  Homography({0, 0, 0, 0, 0, 0, 0, 0, 0}),
                                  Homography({1, 0, 0, 0, 1, 0, 0.02, 0.01, -1})};
    std::uniform_real_distribution<double> pick(-1, 1);
    for (int i = 0; i < 8; ++i) {
        const double fAngle = (i < 4 ? 0.04 : 3.0) * pick(rng), fBend = i % 2 ? 1e-5 : 2e-3;
        vList.push_back(Homography({std::cos(fAngle), -std::sin(fAngle), 20 * pick(rng), std::sin(fAngle),
                                    std::cos(fAngle), 20 * pick(rng), fBend * pick(rng), fBend * pick(rng), 1}));
    }
    return vList;
}

struct WarpCase {
    const CYuvImage* pFrame;
    CMatrix homography;
    std::vector<uint8_t> vWant;
};

class WarpTest : public SimdTargetTest {};
INSTANTIATE_ON_ALL_TARGETS(WarpTest);

TEST_P(WarpTest, EqualsTheSlowFormAtEverySizeFromAnyNumberOfThreads)
{
    std::mt19937 rng(44);
    const int vSizes[6][2] = {{2, 2}, {16, 16}, {6, 50}, {64, 32}, {82, 46}, {144, 34}};
    TestYuvImage vFrames[6], warped;
    std::vector<WarpCase> vCases;
    for (int i = 0; i < 6; ++i) {
        RandomFrame(rng, vFrames[i], vSizes[i][0], vSizes[i][1]);
        for (const CMatrix& homography : ManyHomographies(rng)) {
            vCases.push_back({&vFrames[i], homography, SlowFrame(vFrames[i], homography)});
        }
    }
    CHomographMappingFilter filter;
    ForThreads([&](int) {
        for (size_t i = 0; i < vCases.size(); ++i) {
            ASSERT_TRUE(filter.ProcessImage(*vCases[i].pFrame, warped, vCases[i].homography));
            ASSERT_EQ(vCases[i].vWant, Samples(warped)) << "case " << i;
        }
    });
    EXPECT_EQ(1, filter.nHomoGraphyOption);
}

TEST_P(WarpTest, CellRowsEqualTheScalarOnesAndWriteNothingElse)
{
    std::mt19937 rng(45);
    for (int nSize = 1; nSize < 1200; nSize += nSize < 60 ? 3 : 157) {
        for (const int nDim : {1, 2}) {
            const int w = nSize, h = 1 + nSize * 5 % 40, nCells = (w * nDim + kWarpCell - 1) / kWarpCell;
            const std::vector<uint8_t> vPlane = RandomRow<uint8_t>(rng, static_cast<size_t>(w) * h * nDim, 0, 255);
            const WarpPlane plane{vPlane.data(), w, h, nDim};
            const auto vNodes = RandomRow<float>(rng, 2 * nCells + 2, -3 * nDim * w, 3 * nDim * w);
            std::vector<float> vFractions = vNodes;
            for (float& fNode : vFractions) fNode += static_cast<float>(rng() % 1024) / 1023;
            Guarded<uint8_t> want(vPlane.size()), got(vPlane.size());
            for (int j = 0; j * kWarpCell < h * nDim; ++j) {
                WarpCellRowScalar(plane, vFractions.data(), j, want.Data());
                WarpCellRow(plane, vFractions.data(), j, got.Data());
            }
            ASSERT_EQ(want.Values(), got.Values()) << w << " x " << h;
            ASSERT_TRUE(got.Intact());
        }
    }
}

// By hand: source columns of the runs at 0 and 40 of 48, and rows at both ends.
TEST(Warp, IdentityCopiesAndEvenShiftIsExactInsideAndMirrorsRunByRun)
{
    std::mt19937 rng(47);
    TestYuvImage frame, warped;
    RandomFrame(rng, frame, 48, 32);
    ASSERT_TRUE(CHomographMappingFilter().ProcessImage(frame, warped, Shift(0, 0)));
    EXPECT_EQ(Samples(frame), Samples(warped));
    ASSERT_TRUE(CHomographMappingFilter().ProcessImage(frame, warped, Shift(-6, 4)));
    for (int x = 8; x < 48; ++x) {
        for (int y = 0; y < 28; ++y) ASSERT_EQ(frame.RowY(y + 4)[x - 6], warped.RowY(y)[x]) << x << ' ' << y;
        for (int y = 0; y < 14; ++y) ASSERT_EQ(frame.RowUV(y + 2)[x - 6], warped.RowUV(y)[x]) << x << ' ' << y;
    }
    for (int k = 0; k < 8; ++k) {
        EXPECT_EQ(frame.RowY(4)[6 + k], warped.RowY(0)[k]);  // the run at -6 starts at 6, and runs forward
        EXPECT_EQ(frame.RowUV(2)[6 + k], warped.RowUV(0)[k]);
        EXPECT_EQ(frame.RowY(30)[10 + k], warped.RowY(28)[16 + k]);  // row 32 is row 30
    }
    ASSERT_TRUE(CHomographMappingFilter().ProcessImage(frame, warped, Shift(6, 0)));
    const int vLuma[8] = {46, 47, 46, 45, 44, 43, 42, 41};
    for (int k = 0; k < 8; ++k) EXPECT_EQ(frame.RowY(0)[vLuma[k]], warped.RowY(0)[40 + k]);
    const int vPairs[4] = {23, 22, 21, 20};
    for (int k = 0; k < 8; ++k) EXPECT_EQ(frame.RowUV(0)[2 * vPairs[k / 2] + k % 2], warped.RowUV(0)[40 + k]);
    ASSERT_TRUE(CHomographMappingFilter().ProcessImage(frame, warped, Shift(12, 0)));
    for (int k = 0; k < 4; ++k) EXPECT_EQ(frame.RowY(0)[42 + k], warped.RowY(0)[40 + k]);  // 52 starts at 42
}

TEST(Warp, FractionsWeighColumnsAndRows)
{
    TestYuvImage frame, warped;
    ASSERT_TRUE(frame.Allocate(32, 16));
    for (int i = 0; i < 32 * 16; ++i) frame.pY[i] = static_cast<uint8_t>(4 * (i % 32) + 8 * (i / 32));
    for (int i = 0; i < 32 * 8; ++i) frame.pUV[i] = static_cast<uint8_t>(8 * (i % 32 / 2) + 12 * (i / 32) + i % 2);
    ASSERT_TRUE(CHomographMappingFilter().ProcessImage(frame, warped, Shift(0.5, 0.375)));
    EXPECT_EQ(4 * 5 + 8 * 3 + 2 + 3, warped.RowY(3)[5]);
    EXPECT_EQ(8 * 5 + 12 * 3 + 1 + 2 + 2, warped.RowUV(3)[11]);  // 2.25 truncated
}

TEST(BuildGrid, RefusesWhatTheCellsDoNotCover)
{
    HomographGrid grid{};
    for (const auto& vSize : std::vector<std::vector<int>>{{40, 32}, {32, 40}, {0, 16}}) {
        const LinesScope lines;
        EXPECT_FALSE(BuildGrid(grid, vSize[0], vSize[1], Shift(0, 0), 16));
        EXPECT_EQ("Wrong Grid Size!!", LinesScope::Text());
    }
    EXPECT_FALSE(BuildGrid(grid, 32, 32, CMatrix(2, 3), 16));
    EXPECT_EQ(nullptr, grid.pNodes);
    TestYuvImage empty, frame, warped;
    ASSERT_TRUE(frame.Allocate(32, 32));
    EXPECT_FALSE(CHomographMappingFilter().ProcessImage(empty, warped, Shift(0, 0)));
    EXPECT_FALSE(CHomographMappingFilter().ProcessImage(frame, warped, CMatrix()));
}

}  // namespace
}  // namespace vkr
