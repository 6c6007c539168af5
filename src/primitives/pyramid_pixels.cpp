#include <algorithm>
#include <cstddef>

#include "primitives/gaussian_pyramid.h"
#include "primitives/share_rows.h"

namespace vkr {

namespace {

template <class T>
void ExpandPixels(const T* pSrc, T* pDst, int w, int h, int w2, int h2, int nDim)
{
    if (w <= 0 || h <= 0 || nDim <= 0) return;
    const int nCount = w * nDim;
    const int nCount2 = w2 * nDim;
    for (int y = 0; y < h2; ++y) {
        const T* pRow = pSrc + static_cast<size_t>(std::min(y, h - 1)) * nCount;
        T* pRow2 = pDst + static_cast<size_t>(y) * nCount2;
        std::copy(pRow, pRow + nCount, pRow2);
        for (int i = nCount; i < nCount2; ++i) pRow2[i] = pRow2[i - nDim];
    }
}

}  // namespace

void CGaussianPyramid2::ExpandImage(const uint8_t* pSrc, uint8_t* pDst, int w, int h, int w2, int h2, int nDim)
{
    ExpandPixels(pSrc, pDst, w, h, w2, h2, nDim);
}

void CGaussianPyramid2::ExpandShort(const int16_t* pSrc, int16_t* pDst, int w, int h, int w2, int h2, int nDim)
{
    ExpandPixels(pSrc, pDst, w, h, w2, h2, nDim);
}

void CGaussianPyramid2::SubtractImage(const uint8_t* pA, const uint8_t* pB, int16_t* pDst, int w, int h, int nWidthB,
                                      int nDim)
{
    const int nCount = w * nDim;
    ShareRows(h, nCount, [&](RowBlock rows) {
        for (int y = rows.nBegin; y < rows.nEnd; ++y) {
            const uint8_t* __restrict a = pA + static_cast<size_t>(y) * nCount;
            const uint8_t* __restrict b = pB + static_cast<size_t>(y) * nWidthB * nDim;
            int16_t* __restrict pRow = pDst + static_cast<size_t>(y) * nCount;
            for (int i = 0; i < nCount; ++i) pRow[i] = static_cast<int16_t>(a[i] - b[i]);
        }
    });
}

void CGaussianPyramid2::AddShort(const int16_t* pA, const int16_t* pB, int16_t* pDst, int w, int h, int nWidthA,
                                 int nDim)
{
    const int nCount = w * nDim;
    ShareRows(h, nCount, [&](RowBlock rows) {
        for (int y = rows.nBegin; y < rows.nEnd; ++y) {
            const int16_t* __restrict a = pA + static_cast<size_t>(y) * nWidthA * nDim;
            const int16_t* __restrict b = pB + static_cast<size_t>(y) * nCount;
            int16_t* __restrict pRow = pDst + static_cast<size_t>(y) * nCount;
            for (int i = 0; i < nCount; ++i) pRow[i] = static_cast<int16_t>(a[i] + b[i]);  // wraps
        }
    });
}

}  // namespace vkr
