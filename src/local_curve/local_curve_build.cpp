#include "foundation/heap_buffer.h"
#include "local_curve/local_auto_curve_filter.h"

namespace vkr {

// Curves of the blocks, from there those of the nodes, smoothed over the grid; m_Curve moves nStep / 16 of the way to
// them, toward zero.
bool CLocalAutoCurveFilter::BuildCurves(int32_t nStep)
{
    HeapBuffer<CurveGrid> grids;
    if (!grids.Allocate(2)) return false;
    CurveGrid& grid = grids[0];
    const CurveLimits limits = {nMinBin, nMaxBin, nContrastLevel};
    for (int y = 0; y < nWinYNum; ++y) {
        for (int x = 0; x < nWinXNum; ++x) BuildBlockCurve(m_BlockHist[y][x], limits, grid.vCurve[y][x]);
    }
    BlocksToNodes(grid, nWinYNum, nWinXNum);
    for (int i = 0; i < nSmoothMaskSize; ++i) SmoothCurveGrid(grid, nWinYNum + 1, nWinXNum + 1, grids[1]);

    for (int y = 0; y <= nWinYNum; ++y) {
        for (int x = 0; x <= nWinXNum; ++x) {
            int32_t* pCurve = m_Curve.vCurve[y][x];
            const int32_t* pNew = grid.vCurve[y][x];
            for (int i = 0; i < kCurvePoints; ++i) pCurve[i] += nStep * (pNew[i] - pCurve[i]) / 16;
        }
    }
    return true;
}

}  // namespace vkr
