#include "warp/homograph_mapping_filter.h"

#include "foundation/image_scope.h"
#include "foundation/parallel_rows.h"
#include "warp/homograph_grid.h"
#include "warp/warp_image.h"
#include "warp/warp_rows.h"

namespace vkr {

namespace {

int WholeCells(int nSize)
{
    return (nSize + kWarpCell - 1) / kWarpCell * kWarpCell;
}

}  // namespace

void CHomographMappingFilter::SetFilterName()
{
    StoreName("CHomographMappingFilter");
}

void CHomographMappingFilter::RegisterParameters()
{
    ADD_PARAM(bBicubicEnable);
    ADD_PARAM(nBoundaryOption);
    ADD_PARAM(nHomoGraphyOption);
    ADD_PARAM(mPatchSize);
}

// Sizes that are no whole cells are taken as padded to them; the row kernels read the padding where there is none and
// leave out what would be cut off again. Rows of cells are shared as they come, since those that mirror take longer.
bool CHomographMappingFilter::ProcessImage(const CYuvImage& src, CYuvImage& dst, const CMatrix& homography)
{
    nHomoGraphyOption = 1;
    if (src.Empty() || !dst.Allocate(src.nWidth, src.nHeight)) return false;
    HomographGrid grid{};
    ImageScope scope(grid);
    if (!BuildGrid(grid, WholeCells(src.nWidth), WholeCells(src.nHeight), homography, kWarpCell)) return false;
    const WarpPlane luma{src.pY, src.nWidth, src.nHeight, 1};
    const WarpPlane chroma{src.pUV, src.nWidth / 2, src.nHeight / 2, 2};
    ParallelItems(grid.nRows - 1, [&](int j) {
        WarpCellRow(luma, grid.Row(j), j, dst.pY);
        WarpCellRow(chroma, grid.Row(j), j, dst.pUV);
    });
    return true;
}

bool CHomographMappingFilter::ProcessImage(const CImage& src, CImage& dst, const CMatrix& homography)
{
    return WarpImage(src, dst, homography);
}

}  // namespace vkr
