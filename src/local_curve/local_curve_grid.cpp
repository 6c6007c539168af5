#include "local_curve/local_curve_grid.h"

#include <algorithm>

#include "foundation/fixed_point.h"

namespace vkr {

namespace {

constexpr int32_t kShareOne = 1 << 14;  // all of a histogram
constexpr int kMaxRounds = 64;          // of clipping and rescaling

// 7 bits of 2^nShift / nSize.
void MakeReciprocal(int32_t nSize, int32_t& nRecip, int32_t& nShift)
{
    nShift = 24;
    nRecip = 0x1000000 / nSize;
    while (nRecip >= 128) nRecip = (1 << --nShift) / nSize;
}

// A full block after both reciprocals, 12 fractional bits.
int64_t ScaledBlock(const BlockGeometry& g)
{
    const int64_t nAcross = int64_t{g.m_nBlockW} * g.m_nRecipX;
    const int64_t nDown = int64_t{g.m_nBlockH} * g.m_nRecipY;
    return (nAcross * nDown) >> (g.m_nShiftX + g.m_nShiftY - 12);
}

// The share of every bin, kShareOne all together.
void SharesOf(const int32_t* pHist, int64_t* p)
{
    int64_t nSum = 0;
    for (int i = 0; i < kCurveBins; ++i) nSum += pHist[i];
    for (int i = 0; i < kCurveBins; ++i) p[i] = DivOrZero64(int64_t{pHist[i]} << 14, nSum);
}

// Clips every share and scales the sum back to kShareOne. True if a share has changed by the two together.
bool ClipShares(int64_t* p, int32_t nMin, int32_t nMax)
{
    int64_t vClipped[kCurveBins];
    int64_t nTotal = 0;
    for (int i = 0; i < kCurveBins; ++i) {
        vClipped[i] = std::min<int64_t>(std::max<int64_t>(p[i], nMin), nMax);
        nTotal += vClipped[i];
    }
    bool bChanged = false;
    for (int i = 0; i < kCurveBins; ++i) {
        const int64_t nNew = DivOrZero64(vClipped[i] * kShareOne + nTotal / 2, nTotal);
        bChanged = bChanged || nNew != p[i];
        p[i] = nNew;
    }
    return bChanged;
}

// Nodes along one line of n blocks, nStride values apart, in place, from the far end so that no block is lost.
void LineToNodes(int32_t* pLine, int n, int nStride)
{
    pLine[n * nStride] = pLine[(n - 1) * nStride];
    for (int i = n - 1; i > 0; --i) pLine[i * nStride] = (pLine[(i - 1) * nStride] + pLine[i * nStride]) >> 1;
}

}  // namespace

BlockGeometry MakeBlockGeometry(int32_t nWidth, int32_t nHeight, int32_t nWinXNum, int32_t nWinYNum)
{
    BlockGeometry g{};
    g.m_nWidth = nWidth;
    g.m_nHeight = nHeight;
    g.m_nBlockW = static_cast<int32_t>((int64_t{nWidth} + nWinXNum - 1) / nWinXNum);
    g.m_nBlockH = static_cast<int32_t>((int64_t{nHeight} + nWinYNum - 1) / nWinYNum);
    MakeReciprocal(g.m_nBlockW, g.m_nRecipX, g.m_nShiftX);
    MakeReciprocal(g.m_nBlockH, g.m_nRecipY, g.m_nShiftY);
    if (ScaledBlock(g) >= 4096) return g;
    ++g.m_nRecipY;
    if (ScaledBlock(g) < 4096) ++g.m_nRecipX;
    return g;
}

void BuildBlockCurve(const int32_t* pHist, const CurveLimits& limits, int32_t* pCurve)
{
    int64_t p[kCurveBins];
    SharesOf(pHist, p);
    for (int i = 0; i < kMaxRounds && ClipShares(p, limits.nMinBin * 16, limits.nMaxBin * 16 + 256); ++i) continue;

    int64_t c[kCurveBins];  // running sum
    for (int i = 0; i < kCurveBins; ++i) c[i] = p[i] + (i > 0 ? c[i - 1] : 0);
    for (int i = 1; i < kCurveBins; ++i) {
        const int32_t nBase = i << (kCurveShift - 6);
        const int32_t t = static_cast<int32_t>(DivOrZero64(c[i - 1] << kCurveShift, c[kCurveBins - 1]));
        pCurve[i - 1] = nBase + (limits.nContrastLevel * (t - nBase) + 16) / 32;  // toward zero
    }
}

void BlocksToNodes(CurveGrid& grid, int nRows, int nCols)
{
    constexpr int nColStride = kCurvePoints;
    constexpr int nRowStride = kMaxNodes * kCurvePoints;
    for (int y = 0; y < nRows; ++y) {
        for (int i = 0; i < kCurvePoints; ++i) LineToNodes(&grid.vCurve[y][0][i], nCols, nColStride);
    }
    for (int x = 0; x <= nCols; ++x) {
        for (int i = 0; i < kCurvePoints; ++i) LineToNodes(&grid.vCurve[0][x][i], nRows, nRowStride);
    }
}

void SmoothCurveGrid(CurveGrid& grid, int nRows, int nCols, CurveGrid& scratch)
{
    for (int y = 0; y < nRows; ++y) {
        for (int x = 0; x < nCols; ++x) {
            const int32_t* pLeft = grid.vCurve[y][std::max(x - 1, 0)];
            const int32_t* pMid = grid.vCurve[y][x];
            const int32_t* pRight = grid.vCurve[y][std::min(x + 1, nCols - 1)];
            for (int i = 0; i < kCurvePoints; ++i) scratch.vCurve[y][x][i] = pLeft[i] + 2 * pMid[i] + pRight[i];
        }
    }
    for (int y = 0; y < nRows; ++y) {
        for (int x = 0; x < nCols; ++x) {
            const int32_t* pUp = scratch.vCurve[std::max(y - 1, 0)][x];
            const int32_t* pMid = scratch.vCurve[y][x];
            const int32_t* pDown = scratch.vCurve[std::min(y + 1, nRows - 1)][x];
            for (int i = 0; i < kCurvePoints; ++i) grid.vCurve[y][x][i] = (pUp[i] + 2 * pMid[i] + pDown[i]) >> 4;
        }
    }
}

}  // namespace vkr
