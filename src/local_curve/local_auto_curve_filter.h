#pragma once

#include <cstdint>

#include "foundation/image.h"
#include "foundation/stage_dumps.h"
#include "local_curve/local_curve_grid.h"
#include "local_curve/local_curve_params.h"
#include "parameters/filter.h"

namespace vkr {

// Local contrast on an 8-bit B, G, R picture, in place: a grid of blocks, a clipped histogram equalisation per block,
// the curves smoothed over the grid and followed over time, every pixel mapped through the four curves around it. The
// curves stay in the filter from burst to burst.
class CLocalAutoCurveFilter : public CFilter, public LocalCurveParams {
public:
    void SetFilterName() override;
    void RegisterParameters() override;  // also sets every curve to the identity

    // image has nDim 3 and any size from 1 x 1. False when there was no memory; the picture is as it was then. Rows are
    // shared among the team, all carries start anew in every row: same bytes from any number of threads.
    // The dumps, pictures and curves under LocalContrastDump, are narrowed by bDumpDebugFile.
    bool ProcessImage(CImage& image, const StageDumps& dumps = {});

private:
    // local_curve_histograms.cpp
    void SetBlockGeometry(int32_t nWidth, int32_t nHeight);
    void GetBlockHistograms(const CImage& image);
    void CountBlockRow(const CImage& image, int nBlockRow);
    int64_t FillEmptyBlock(int nBlockRow, int nBlockCol);
    void MixGlobalHistogram(int32_t* pHist, int64_t nCount) const;

    // local_curve_build.cpp; false when there was no memory, m_Curve is as it was then
    bool BuildCurves(int32_t nStep);

    // local_curve_apply.cpp; false when there was no memory, the picture is as it was then
    bool ApplyCurves(CImage& image, const StageDumps& dumps) const;
    void DumpCurves() const;

    BlockGeometry m_geometry = {};
    int32_t m_BlockHist[kMaxBlocks][kMaxBlocks][kCurveBins] = {};  // by row and column of blocks
    int32_t m_GlobalHist[kCurveBins] = {};
    CurveGrid m_Curve = {};  // of the nodes, kept between bursts
};

}  // namespace vkr
