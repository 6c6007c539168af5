// The places that warped rows read from, run by run. Included by files that are compiled once per instruction set.
#if defined(VKR_ALIGN_WARP_RUN_INL_H) == defined(HWY_TARGET_TOGGLE)
#ifdef VKR_ALIGN_WARP_RUN_INL_H
#undef VKR_ALIGN_WARP_RUN_INL_H
#else
#define VKR_ALIGN_WARP_RUN_INL_H
#endif

#include <hwy/highway.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "warp/warp_position.h"
#include "warp/warp_rows.h"

HWY_BEFORE_NAMESPACE();
namespace vkr {
namespace HWY_NAMESPACE {
namespace {

constexpr int kRun = 8;         // samples that share one position
constexpr int kTileCells = 32;  // cells whose columns are worked out once for all rows; two tiles of lines fit the L1

// What a run reads: kRun samples and one pixel more, from two rows.
struct WarpRun {
    const uint8_t* pTop;
    const uint8_t* pBottom;
};

// Holds the samples of a run that goes beyond the right border.
struct MirroredRun {
    uint8_t vTop[2 * kRun], vBottom[2 * kRun];
};

// A plane with what the runs ask of it.
template <int nDim>
class WarpSource {
public:
    static constexpr int kCell = kWarpCell / nDim, kPixelsOfRun = kRun / nDim;  // pixels

    explicit WarpSource(const WarpPlane& plane)
        : m_plane(plane),
          m_nStride(static_cast<size_t>(plane.nWidth) * nDim),
          m_nWidth((plane.nWidth + kCell - 1) / kCell * kCell),
          m_nHeight((plane.nHeight + kCell - 1) / kCell * kCell)
    {
    }
    size_t Stride() const { return m_nStride; }

    HWY_INLINE WarpPosition Column(const float* pNode, int nInCell) const
    {
        return PositionInside(static_cast<float>(nInCell) + pNode[0] * (1.0f / nDim), m_nWidth);
    }
    HWY_INLINE WarpPosition Row(const float* pNode, int nInCell) const
    {
        return PositionInside(static_cast<float>(nInCell) + pNode[1] * (1.0f / nDim), m_nHeight);
    }
    HWY_INLINE WarpRun Rows(int y) const
    {
        const int nLast = m_plane.nHeight - 1;
        const uint8_t* const pTop = m_plane.pData + static_cast<size_t>(std::min(y, nLast)) * m_nStride;
        return {pTop, y < nLast ? pTop + m_nStride : pTop};
    }
    // The run that begins with pixel x of the two rows.
    HWY_INLINE WarpRun Run(const WarpRun& rows, int x, MirroredRun& mirrored) const
    {
        if (x + kPixelsOfRun < m_plane.nWidth) return {rows.pTop + x * nDim, rows.pBottom + x * nDim};
        Gather(rows, x, mirrored);
        return {mirrored.vTop, mirrored.vBottom};
    }

private:
    void Gather(const WarpRun& rows, int x, MirroredRun& mirrored) const
    {
        for (int i = 0; i <= kPixelsOfRun; ++i) {
            const int nInside = x + i < m_nWidth ? x + i : 2 * (m_nWidth - 1) - (x + i);
            const int nFrom = std::min(nInside, m_plane.nWidth - 1) * nDim;
            for (int c = 0; c < nDim; ++c) {
                mirrored.vTop[i * nDim + c] = rows.pTop[nFrom + c];
                mirrored.vBottom[i * nDim + c] = rows.pBottom[nFrom + c];
            }
        }
    }

    const WarpPlane& m_plane;
    size_t m_nStride;
    int m_nWidth, m_nHeight;  // of whole cells
};

// Calls fnBlend(run, fx, fy, pOut) for the runs of nCells cells from nodes pNodes on, row by row; pOut takes kRun
// samples. Of each of the nRows rows at pDst only nSamples are written.
template <int nDim, class Blend>
void WarpTile(const WarpSource<nDim>& src, const float* pNodes, int nCells, uint8_t* pDst, int nRows, int nSamples,
              const Blend& fnBlend)
{
    WarpPosition vColumns[2 * kTileCells];
    for (int i = 0; i < 2 * nCells; ++i) {
        vColumns[i] = src.Column(pNodes + i / 2 * 2, i % 2 * WarpSource<nDim>::kPixelsOfRun);
    }
    MirroredRun mirrored;
    for (int y = 0; y < nRows; ++y, pDst += src.Stride()) {
        for (int i = 0; i < nCells; ++i) {
            const WarpPosition row = src.Row(pNodes + 2 * i, y);
            const WarpRun rows = src.Rows(row.nWhole);
            for (int k = 2 * i; k < 2 * i + 2; ++k) {
                const WarpRun run = src.Run(rows, vColumns[k].nWhole, mirrored);
                const int nLeft = nSamples - kRun * k;
                if (HWY_LIKELY(nLeft >= kRun)) {
                    fnBlend(run, vColumns[k].fPart, row.fPart, pDst + kRun * k);
                } else if (nLeft > 0) {
                    uint8_t vOut[kRun];
                    fnBlend(run, vColumns[k].fPart, row.fPart, vOut);
                    std::memcpy(pDst + kRun * k, vOut, static_cast<size_t>(nLeft));
                }
            }
        }
    }
}

// The row of cells, tile by tile.
template <int nDim, class Blend>
void WarpTiles(const WarpPlane& plane, const float* pNodes, int nCellRow, uint8_t* pDst, const Blend& fnBlend)
{
    const WarpSource<nDim> src(plane);
    const int nFirstRow = nCellRow * src.kCell, nRows = std::min(src.kCell, plane.nHeight - nFirstRow);
    const int nCells = (plane.nWidth + src.kCell - 1) / src.kCell, nSamples = plane.nWidth * nDim;
    pDst += static_cast<size_t>(nFirstRow) * src.Stride();
    for (int i = 0; i < nCells; i += kTileCells) {
        WarpTile<nDim>(src, pNodes + 2 * i, std::min(kTileCells, nCells - i), pDst + kWarpCell * i, nRows,
                       nSamples - kWarpCell * i, fnBlend);
    }
}

}  // namespace
}  // namespace HWY_NAMESPACE
}  // namespace vkr
HWY_AFTER_NAMESPACE();

#endif
