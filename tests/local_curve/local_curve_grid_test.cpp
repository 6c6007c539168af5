#include "local_curve/local_curve_grid.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace vkr {
namespace {

using Curve = std::vector<int32_t>;

Curve CurveOf(const std::vector<int32_t>& vHist, const CurveLimits& limits)
{
    Curve vCurve(kCurvePoints);
    BuildBlockCurve(vHist.data(), limits, vCurve.data());
    return vCurve;
}

Curve Identity()
{
    Curve vCurve;
    for (int i = 1; i < 64; ++i) vCurve.push_back(4 * i);
    return vCurve;
}

void ExpectReciprocals(int nBlockW, int nBlockH, std::vector<int32_t> vWant)
{
    const BlockGeometry g = MakeBlockGeometry(nBlockW, nBlockH, 1, 1);
    EXPECT_EQ((std::vector<int32_t>{g.m_nRecipX, g.m_nShiftX, g.m_nRecipY, g.m_nShiftY}), vWant);
}

TEST(MakeBlockGeometry, RoundsBlocksUp)
{
    const BlockGeometry g = MakeBlockGeometry(157, 120, 8, 7);
    EXPECT_EQ(g.m_nBlockW, 20);
    EXPECT_EQ(g.m_nBlockH, 18);
    EXPECT_EQ(MakeBlockGeometry(3, 1, 16, 16).m_nBlockW, 1);
}

TEST(MakeBlockGeometry, RaisesReciprocalsThatScaleABlockBelowOne)
{
    ExpectReciprocals(16, 16, {64, 10, 64, 10});  // exact: none
    ExpectReciprocals(1, 1, {64, 6, 64, 6});
    ExpectReciprocals(20, 15, {102, 11, 69, 10});  // 20 * 102 * 15 * 68 >> 9 = 4064: one
    ExpectReciprocals(3, 9, {86, 8, 114, 10});     // both
}

TEST(MakeBlockGeometry, NeverScalesAFullBlockBelowOne)
{
    for (int w = 1; w < 400; ++w) {
        for (int h = 1; h < 60; ++h) {
            const BlockGeometry g = MakeBlockGeometry(w, h, 1, 1);
            const int64_t nScaled = int64_t{w} * g.m_nRecipX * h * g.m_nRecipY;
            ASSERT_GE(nScaled, int64_t{1} << (g.m_nShiftX + g.m_nShiftY)) << w << "x" << h;
            ASSERT_LE(g.m_nRecipX, 128);
            ASSERT_LE(g.m_nRecipY, 128);
        }
    }
}

TEST(BuildBlockCurve, IsTheIdentityForAnEvenOrEmptyHistogram)
{
    EXPECT_EQ(CurveOf(std::vector<int32_t>(64, 5), {4, 16, 32}), Identity());
    EXPECT_EQ(CurveOf(std::vector<int32_t>(64, 0), {4, 16, 32}), Identity());
}

TEST(BuildBlockCurve, ClipsAndScalesInRounds)
{
    // One bin: after five rounds 512 of 16384 there and 252 in every other.
    std::vector<int32_t> vHist(64, 0);
    vHist[0] = 1000;
    Curve vDark = CurveOf(vHist, {4, 16, 16});
    EXPECT_EQ(vDark[0], 6);  // base 4, target 512 >> 6 = 8, half of the way
    EXPECT_EQ(vDark[15], 66);
    EXPECT_EQ(vDark[16], 69);
    EXPECT_EQ(vDark[62], 252);
    vHist = std::vector<int32_t>(64, 0);
    vHist[63] = 1000;
    const Curve vBright = CurveOf(vHist, {4, 16, 32});
    EXPECT_EQ(vBright[14], 60);
    EXPECT_EQ(vBright[15], 63);
    EXPECT_EQ(vBright[62], 249);
    // A hump of eight bins and a small one, the widest limits: eleven rounds.
    vHist = std::vector<int32_t>(64, 0);
    for (int i = 20; i < 28; ++i) vHist[static_cast<size_t>(i)] = 100 + i;
    vHist[40] = 3;
    const Curve vHump = CurveOf(vHist, {1, 32, 32});
    const std::vector<int32_t> vWant = {53, 56, 68, 80, 92, 103, 115, 127, 139, 151, 153};
    EXPECT_EQ(std::vector<int32_t>(vHump.begin() + 18, vHump.begin() + 29), vWant);
    EXPECT_EQ(vHump[40], 192);
}

TEST(BuildBlockCurve, GoesOnWhileScalingAloneChangesAShare)
{
    // No share is clipped in the first round; scaling up what truncation lost changes them, and once more.
    const std::vector<int32_t> vHist = {2, 5, 8, 5, 8, 8, 7, 2, 7, 2, 7, 2, 2, 4, 7, 8, 6, 4, 6, 3, 6, 6,
                                        8, 8, 2, 1, 7, 1, 3, 7, 6, 6, 2, 8, 6, 1, 8, 7, 7, 4, 5, 7, 5, 6,
                                        1, 5, 7, 7, 4, 7, 2, 8, 5, 3, 3, 6, 4, 8, 8, 5, 5, 7, 6, 11};
    const Curve vCurve = CurveOf(vHist, {4, 16, 32});
    EXPECT_EQ(vCurve[40], 160);
    EXPECT_EQ(vCurve[52], 208);
}

TEST(BuildBlockCurve, RoundsTheContrastTowardZero)
{
    std::vector<int32_t> vHist(64, 0);
    vHist[63] = 1000;  // targets lie below their base
    const Curve vCurve = CurveOf(vHist, {4, 16, 16});
    EXPECT_EQ(vCurve[30], 124);  // (16 * -2 + 16) / 32 = 0, where a shift gives -1
    EXPECT_EQ(vCurve[31], 127);
    EXPECT_EQ(CurveOf(vHist, {4, 16, 0}), Identity());
}

TEST(BuildBlockCurve, TakesCountsOfTheWholeRange)
{
    std::vector<int32_t> vHist(64, 0x7FFFFFFF);
    EXPECT_EQ(CurveOf(vHist, {4, 16, 32}), Identity());
}

// Sets point nPoint of a grid.
void SetGrid(CurveGrid& grid, int nPoint, const std::vector<std::vector<int32_t>>& vRows)
{
    for (size_t y = 0; y < vRows.size(); ++y) {
        for (size_t x = 0; x < vRows[y].size(); ++x) grid.vCurve[y][x][nPoint] = vRows[y][x];
    }
}

std::vector<std::vector<int32_t>> GetGrid(const CurveGrid& grid, int nPoint, size_t nRows, size_t nCols)
{
    std::vector<std::vector<int32_t>> vRows(nRows, std::vector<int32_t>(nCols));
    for (size_t y = 0; y < nRows; ++y) {
        for (size_t x = 0; x < nCols; ++x) vRows[y][x] = grid.vCurve[y][x][nPoint];
    }
    return vRows;
}

using Rows = std::vector<std::vector<int32_t>>;

TEST(BlocksToNodes, AveragesAlongRowsThenColumns)
{
    const auto grid = std::make_unique<CurveGrid>();
    SetGrid(*grid, 0, {{1, 4, 8}, {10, 20, 31}});
    SetGrid(*grid, 62, {{2, 2, 2}, {4, 4, 4}});
    BlocksToNodes(*grid, 2, 3);
    EXPECT_EQ(GetGrid(*grid, 0, 3, 4), (Rows{{1, 2, 6, 8}, {5, 8, 15, 19}, {10, 15, 25, 31}}));
    EXPECT_EQ(GetGrid(*grid, 62, 3, 4), (Rows{{2, 2, 2, 2}, {3, 3, 3, 3}, {4, 4, 4, 4}}));
}

TEST(BlocksToNodes, GivesFourEqualNodesForOneBlock)
{
    const auto grid = std::make_unique<CurveGrid>();
    SetGrid(*grid, 5, {{77}});
    BlocksToNodes(*grid, 1, 1);
    EXPECT_EQ(GetGrid(*grid, 5, 2, 2), (Rows{{77, 77}, {77, 77}}));
}

TEST(SmoothCurveGrid, CountsTheBorderAgain)
{
    const auto grid = std::make_unique<CurveGrid>();
    const auto scratch = std::make_unique<CurveGrid>();
    SetGrid(*grid, 3, {{15, 0}, {0, 0}});
    SmoothCurveGrid(*grid, 2, 2, *scratch);
    EXPECT_EQ(GetGrid(*grid, 3, 2, 2), (Rows{{8, 2}, {2, 0}}));  // 9, 3, 3, 1 sixteenths of 15
    SetGrid(*grid, 3, {{0, 0, 0}, {0, 16, 0}, {0, 0, 0}});
    SmoothCurveGrid(*grid, 3, 3, *scratch);
    EXPECT_EQ(GetGrid(*grid, 3, 3, 3), (Rows{{1, 2, 1}, {2, 4, 2}, {1, 2, 1}}));
}

}  // namespace
}  // namespace vkr
