#include "warp/homograph_grid.h"

#include "foundation/log.h"
#include "foundation/mem_pool.h"
#include "foundation/parallel_rows.h"

namespace vkr {

namespace {

// One row of the matrix: its value at node (0, j) and what it grows by per node.
struct NodeSum {
    float fAt0, fStep;

    NodeSum(const CMatrix& homography, int nRow, int nCellSize, int j)
        : fAt0(static_cast<float>(homography.At(nRow, 2)) +
               static_cast<float>(nCellSize * j) * static_cast<float>(homography.At(nRow, 1))),
          fStep(static_cast<float>(nCellSize) * static_cast<float>(homography.At(nRow, 0)))
    {
    }
};

void FillNodeRow(float* pRow, int nCols, const CMatrix& homography, int nCellSize, int j)
{
    const NodeSum u(homography, 0, nCellSize, j), v(homography, 1, nCellSize, j), w(homography, 2, nCellSize, j);
    float fU = u.fAt0, fV = v.fAt0, fW = w.fAt0;
    for (int i = 0; i < nCols; ++i) {
        pRow[2 * i] = fU / fW;
        pRow[2 * i + 1] = fV / fW;
        fU += u.fStep;
        fV += v.fStep;
        fW += w.fStep;
    }
}

}  // namespace

bool HomographGrid::Allocate(int nNodeCols, int nNodeRows)
{
    const size_t nNeeded = 2 * static_cast<size_t>(nNodeCols) * static_cast<size_t>(nNodeRows);
    if (nNeeded > nCapacity) {
        Release();
        pNodes = static_cast<float*>(PoolAlloc(nNeeded * sizeof(float)));
        if (pNodes == nullptr) return false;
        nCapacity = nNeeded;
    }
    nCols = nNodeCols;
    nRows = nNodeRows;
    return true;
}

void HomographGrid::Release()
{
    PoolFree(pNodes);
    *this = HomographGrid{};
}

bool BuildGrid(HomographGrid& grid, int nWidth, int nHeight, const CMatrix& homography, int nCellSize)
{
    if (nCellSize <= 0 || nWidth <= 0 || nHeight <= 0 || nWidth % nCellSize != 0 || nHeight % nCellSize != 0) {
        HdrPrintf("Wrong Grid Size!!");
        return false;
    }
    if (homography.Rows() != 3 || homography.Cols() != 3) return false;
    if (!grid.Allocate(nWidth / nCellSize + 1, nHeight / nCellSize + 1)) return false;
    ParallelRows(grid.nRows, [&](RowBlock rows) {
        for (int j = rows.nBegin; j < rows.nEnd; ++j) FillNodeRow(grid.Row(j), grid.nCols, homography, nCellSize, j);
    });
    return true;
}

}  // namespace vkr
