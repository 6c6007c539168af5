#pragma once

#include <cstdint>

namespace vkr {

constexpr int kWarpCell = 16;  // luma samples a side of the cell that one node of the grid moves

// The plane that a warp reads: rows of nWidth pixels of nDim interleaved samples, tight. nDim 1 is luma; nDim 2 is the
// chroma pairs, whose cells have half as many pixels and whose positions are half as large. Where the sizes are no
// whole cells, the plane is read as if its last column and row were repeated up to the next one.
struct WarpPlane {
    const uint8_t* pData;
    int nWidth, nHeight;  // pixels, > 0
    int nDim;
};

// One row of cells of the warped plane, as many of its 16 / nDim rows as the plane has.
//
//   pNodes    the nodes (u, v) of the cells, in luma samples, from the left
//   nCellRow  counted from the top
//   pDst      the whole warped plane, of src's size and layout; only these rows are written; not in src
//   threads   any number, on different rows of cells
//
// Runs of 8 samples move as one block: the position of the first is mirrored once at each border and then clamped (not
// finite: 0), all samples of the run take its fraction. Samples of the run beyond the right border are mirrored one by
// one, a row below the last is the last; borders are those of the whole cells. Bilinear in float, truncated.
//
// Both give the same bytes: WarpCellRowScalar is the definition, WarpCellRow is what to call.
void WarpCellRowScalar(const WarpPlane& src, const float* pNodes, int nCellRow, uint8_t* pDst);
void WarpCellRow(const WarpPlane& src, const float* pNodes, int nCellRow, uint8_t* pDst);

}  // namespace vkr
