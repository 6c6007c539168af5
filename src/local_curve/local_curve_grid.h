#pragma once

#include <cstdint>

namespace vkr {

// The grid of the local curves: blocks of pixels with a histogram each, nodes at their corners with a curve each.
constexpr int kMaxBlocks = 16;             // a side
constexpr int kMaxNodes = kMaxBlocks + 1;  // a side
constexpr int kCurveBins = 64;             // of a histogram: luma in steps of 4
constexpr int kCurvePoints = 63;           // of a curve: the outputs of the inputs 4, 8 .. 252
constexpr int kCurveShift = 8;             // bits of an output value

// Size of the blocks of a picture, and reciprocals in place of divisions by it: n / m_nBlockW is
// (n * m_nRecipX) >> m_nShiftX, and so down. A reciprocal has 7 bits (0 beyond 16 million pixels a block).
struct BlockGeometry {
    int32_t m_nWidth, m_nHeight;  // of the picture
    int32_t m_nBlockW, m_nBlockH;
    int32_t m_nRecipX, m_nShiftX, m_nRecipY, m_nShiftY;
};

// The last block of a side may be smaller, and where the picture is smaller than the grid the last blocks are empty.
// The two reciprocals together never scale a full block below one: m_nRecipY, and then m_nRecipX, is raised by 1 for
// that.
BlockGeometry MakeBlockGeometry(int32_t nWidth, int32_t nHeight, int32_t nWinXNum, int32_t nWinYNum);

// How far a curve may go.
struct CurveLimits {
    int32_t nMinBin;         // a bin's least share of the histogram: nMinBin * 16 of 16384, an even share being 256
    int32_t nMaxBin;         // and its largest: nMaxBin * 16 + 256
    int32_t nContrastLevel;  // 1/32, 32 being pure equalisation
};

// Clipped equalisation: the kCurvePoints points of the curve of one histogram of kCurveBins bins. The values stand in
// 0 .. 256. An empty histogram counts as an even one.
void BuildBlockCurve(const int32_t* pHist, const CurveLimits& limits, int32_t* pCurve);

// One curve per place of the grid, by row and column; blocks or nodes.
struct CurveGrid {
    int32_t vCurve[kMaxNodes][kMaxNodes][kCurvePoints];
};

// nRows x nCols curves of blocks become, in place, (nRows + 1) x (nCols + 1) curves of nodes: a node is the mean of the
// blocks at its sides, first along the rows and then down the columns, halves dropped each time; at a border it is the
// one block there.
void BlocksToNodes(CurveGrid& grid, int nRows, int nCols);

// One round of smoothing of nRows x nCols nodes, point by point: weights 1 2 1 both ways, the sum of 16 truncated once.
// Beyond a border the border's own node counts again. scratch holds undefined values afterwards.
void SmoothCurveGrid(CurveGrid& grid, int nRows, int nCols, CurveGrid& scratch);

}  // namespace vkr
