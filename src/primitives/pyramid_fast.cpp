#include <algorithm>
#include <cstddef>
#include <type_traits>
#include <utility>

#include "foundation/heap_buffer.h"
#include "primitives/blend_rows.h"
#include "primitives/gaussian_pyramid.h"
#include "primitives/share_rows.h"
#include "primitives/tap_rows.h"

namespace vkr {

namespace {

// The six rows of output row y: row 0 repeated above the picture, the last pair of rows, in its order, below it.
template <class T>
void RowsAround6(const T* pSrc, int y, int h, size_t nStride, const T** vRows)
{
    for (int k = 0; k < 6; ++k) {
        const int nRow = 2 * y + k - 2;
        vRows[k] = pSrc + nStride * static_cast<size_t>(nRow < h ? std::max(nRow, 0) : nRow - 2);
    }
}

template <class T>
bool HalveFast(const T* pSrc, T* pDst, int w, int h, int nDim)
{
    const int w2 = w >> 1, h2 = h >> 1;
    if (w2 < 1 || h2 < 1 || nDim < 1) return true;
    const size_t nStride = static_cast<size_t>(w) * nDim, nStride2 = static_cast<size_t>(w2) * nDim;
    const size_t nScratch = TapScratch(2 * w2, nDim);
    HeapBuffer<TapSum<T>> scratch;
    if (!scratch.Allocate(nScratch * MaxTeam())) return false;

    ShareRows(h2, 4 * w2 * nDim, [&](RowBlock rows) {
        TapSum<T>* pScratch = scratch.Data() + nScratch * rows.nIndex;
        for (int y = rows.nBegin; y < rows.nEnd; ++y) {
            const T* vRows[6];
            RowsAround6(pSrc, y, 2 * h2, nStride, vRows);
            HalveRow6(vRows, pDst + nStride2 * y, 2 * w2, nDim, pScratch);
        }
    });
    return true;
}

// The first and the last output row lie beside one source row alone.
void BlendEndRow(const uint16_t* pWide, uint8_t* pDst, int nCount)
{
    BlendRows31(pWide, pWide, pDst, nCount);
}
void BlendEndRow(const int16_t* pWide, int16_t* pDst, int nCount)
{
    QuarterRow(pWide, pDst, nCount);
}

// Rows 2y + 1 and 2y + 2 of the output lie between rows y and y + 1 of the source: the pairs of rows are what is
// shared, and the first and the last pair take the end rows with them.
template <class T>
bool DoubleFast(const T* pSrc, T* pDst, int w, int h, int nDim)
{
    using Wide = std::conditional_t<sizeof(T) == 1, uint16_t, int16_t>;
    if (w < 1 || h < 2 || nDim < 1) return true;
    const int nPairs = h - 1;
    const size_t nStride = static_cast<size_t>(w) * nDim;
    const int nCount = 2 * w * nDim;
    const size_t nWide = WideRowSamples(w, nDim);
    const size_t nScratch = 2 * nWide + WidenScratch(w, nDim);
    HeapBuffer<Wide> scratch;
    if (!scratch.Allocate(nScratch * MaxTeam())) return false;

    const auto OutRow = [&](int y) { return pDst + 2 * nStride * static_cast<size_t>(y); };
    ShareRows(nPairs, 2 * nCount, [&](RowBlock pairs) {
        Wide* pAbove = scratch.Data() + nScratch * pairs.nIndex;
        Wide* pBelow = pAbove + nWide;
        Wide* const pWiden = pBelow + nWide;
        WidenRow31(pSrc + nStride * pairs.nBegin, pAbove, w, nDim, pWiden);
        if (pairs.nBegin == 0) BlendEndRow(pAbove, OutRow(0), nCount);
        for (int y = pairs.nBegin; y < pairs.nEnd; ++y) {
            WidenRow31(pSrc + nStride * (y + 1), pBelow, w, nDim, pWiden);
            BlendRows31(pAbove, pBelow, OutRow(2 * y + 1), nCount);
            BlendRows31(pBelow, pAbove, OutRow(2 * y + 2), nCount);
            std::swap(pAbove, pBelow);
        }
        if (pairs.nEnd == nPairs) BlendEndRow(pAbove, OutRow(2 * h - 1), nCount);
    });
    return true;
}

}  // namespace

bool CGaussianPyramid2::DownScaleImageFast(const uint8_t* pSrc, uint8_t* pDst, int w, int h, int nDim)
{
    return HalveFast(pSrc, pDst, w, h, nDim);
}

bool CGaussianPyramid2::DownScaleShortParallel(const int16_t* pSrc, int16_t* pDst, int w, int h, int nDim)
{
    return HalveFast(pSrc, pDst, w, h, nDim);
}

bool CGaussianPyramid2::UpScaleImageFast(const uint8_t* pSrc, uint8_t* pDst, int w, int h, int nDim)
{
    return DoubleFast(pSrc, pDst, w, h, nDim);
}

bool CGaussianPyramid2::UpScaleShortParallel(const int16_t* pSrc, int16_t* pDst, int w, int h, int nDim)
{
    return DoubleFast(pSrc, pDst, w, h, nDim);
}

}  // namespace vkr
