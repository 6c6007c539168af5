#include <cstdio>

#include "foundation/heap_buffer.h"
#include "foundation/log.h"
#include "foundation/parallel_rows.h"
#include "local_curve/local_auto_curve_filter.h"
#include "local_curve/local_curve_rows.h"

namespace vkr {

namespace {

void DumpCurve(const int32_t* pCurve, int nRow, int nCol)
{
    char szPath[64];
    HdrSprintf(szPath, sizeof(szPath), "%s_%03d_%03d.txt", "LocalContrastDump\\Curve\\curve", nRow, nCol);
    std::FILE* pFile = std::fopen(szPath, "wt");
    if (pFile == nullptr) {
        HdrPrintf("file open fail, %s\n", szPath);
        return;
    }
    for (int i = 0; i < kCurvePoints; ++i) std::fprintf(pFile, "%03d  %03d\n", i, pCurve[i]);
    std::fclose(pFile);
}

// The tables of all blocks, nRows x nCols of them, each from the nodes at its corners.
void MakeTables(const CurveGrid& nodes, int nRows, int nCols, BlockTable* pTables)
{
    for (int y = 0; y < nRows; ++y) {
        for (int x = 0; x < nCols; ++x) {
            const int32_t* const pCurve[4] = {nodes.vCurve[y][x], nodes.vCurve[y][x + 1], nodes.vCurve[y + 1][x],
                                              nodes.vCurve[y + 1][x + 1]};
            MakeBlockTable(pCurve, pTables[static_cast<size_t>(y) * nCols + x]);
        }
    }
}

}  // namespace

bool CLocalAutoCurveFilter::ApplyCurves(CImage& image, const StageDumps& dumps) const
{
    HdrPrintf("Apply Local Curves!");
    if (bDumpDebugFile) HdrPrintf("row=%d,col=%d\n", nWinXNum, nWinYNum);
    if (dumps) DumpCurves();
    HeapBuffer<BlockTable> tables;
    if (!tables.Allocate(static_cast<size_t>(nWinYNum) * nWinXNum)) return false;
    MakeTables(m_Curve, nWinYNum, nWinXNum, tables.Data());

    // In place: a row needs nothing but itself.
    const CurveMapping mapping = {m_geometry, tables.Data(), nWinXNum, nWYUV, nSaturateBoost};
    ParallelRows(image.nHeight, [&](RowBlock rows) {
        for (int y = rows.nBegin; y < rows.nEnd; ++y) MapCurveRow(image.Row(y), y, mapping);
    });
    return true;
}

void CLocalAutoCurveFilter::DumpCurves() const
{
    for (int y = 0; y <= nWinYNum; ++y) {
        for (int x = 0; x <= nWinXNum; ++x) DumpCurve(m_Curve.vCurve[y][x], y, x);
    }
}

}  // namespace vkr
