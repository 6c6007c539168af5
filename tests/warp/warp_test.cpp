#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <vector>

#include "support/for_threads.h"
#include "support/quiet_lines.h"
#include "support/random_image.h"
#include "warp/homograph_grid.h"
#include "warp/homograph_mapping_filter.h"
#include "warp/warp_rows.h"

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

// The nodes of a row of cells, and one plane of a frame warped by the plain form; nDim 1 luma, 2 chroma.
std::vector<float> SlowNodes(const CMatrix& homography, int nCells, int nCellRow)
{
    const auto Value = [&](int nRow, int i) {
        const auto At = [&](int nCol) { return static_cast<float>(homography.At(nRow, nCol)); };
        float fSum = At(2) + static_cast<float>(16 * nCellRow) * At(1);
        for (int k = 0; k < i; ++k) fSum += 16.0f * At(0);
        return fSum;
    };
    std::vector<float> vNodes;
    for (int i = 0; i < nCells; ++i) {
        for (const int nRow : {0, 1}) vNodes.push_back(Value(nRow, i) / Value(2, i));
    }
    return vNodes;
}

std::vector<uint8_t> SlowFrame(const CYuvImage& frame, const CMatrix& homography)
{
    std::vector<uint8_t> vBytes(static_cast<size_t>(frame.nWidth) * frame.nHeight / 2 * 3);
    const WarpPlane luma = {frame.pY, frame.nWidth, frame.nHeight, 1};
    const WarpPlane chroma = {frame.pUV, frame.nWidth / 2, frame.nHeight / 2, 2};
    for (int j = 0; j * kWarpCell < frame.nHeight; ++j) {
        const std::vector<float> vNodes = SlowNodes(homography, (frame.nWidth + kWarpCell - 1) / kWarpCell, j);
        WarpCellRowScalar(luma, vNodes.data(), j, vBytes.data());
        WarpCellRowScalar(chroma, vNodes.data(), j, vBytes.data() + frame.nWidth * frame.nHeight);
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

TEST(Warp, EqualsTheSlowFormAtEverySizeFromAnyNumberOfThreads)
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
