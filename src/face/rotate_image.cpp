#include "face/rotate_image.h"

#include <algorithm>
#include <cstddef>

#include "foundation/parallel_rows.h"

namespace vkr {

namespace {

constexpr int kStrip = 16;  // source rows that a quarter turn takes at once: 48 bytes of a destination row

struct Bgr {
    uint8_t v[3];
};

Bgr* PixelRow(CImage& image, int y)
{
    return reinterpret_cast<Bgr*>(image.Row(y));
}
const Bgr* PixelRow(const CImage& image, int y)
{
    return reinterpret_cast<const Bgr*>(image.Row(y));
}

void HalfTurnRows(const CImage& src, CImage& dst, RowBlock rows)
{
    for (int y = rows.nBegin; y < rows.nEnd; ++y) {
        const Bgr* const pSrc = PixelRow(src, y);
        std::reverse_copy(pSrc, pSrc + src.nWidth, PixelRow(dst, src.nHeight - 1 - y));
    }
}

// nCount pixels down a column of rows of nStride pixels become a run of a row, nStep 1 or -1 apart.
void TurnColumn(const Bgr* pSrc, std::ptrdiff_t nStride, Bgr* pDst, std::ptrdiff_t nStep, int nCount)
{
    for (int i = 0; i < nCount; ++i, pSrc += nStride, pDst += nStep) *pDst = *pSrc;
}

// Source column x is a row of dst, from the left in orientation 3, from the right in orientation 1.
void QuarterTurnRows(const CImage& src, CImage& dst, int nOrientation, RowBlock rows)
{
    const int nLastX = src.nWidth - 1, nLastY = src.nHeight - 1;
    for (int y = rows.nBegin; y < rows.nEnd; y += kStrip) {
        const Bgr* const pSrc = PixelRow(src, y);
        const int nCount = std::min(kStrip, rows.nEnd - y);
        for (int x = 0; x <= nLastX; ++x) {
            if (nOrientation == 1) {
                TurnColumn(pSrc + x, src.nWidth, PixelRow(dst, x) + nLastY - y, -1, nCount);
            } else {
                TurnColumn(pSrc + x, src.nWidth, PixelRow(dst, nLastX - x) + y, 1, nCount);
            }
        }
    }
}

}  // namespace

bool RotateUpright(const CImage& src, int nOrientation, CImage& dst)
{
    if (src.Empty() || src.nDim != 3 || nOrientation < 1 || nOrientation > 3) return false;
    const bool bHalf = nOrientation == 2;
    if (!dst.Allocate(bHalf ? src.nWidth : src.nHeight, bHalf ? src.nHeight : src.nWidth)) return false;
    ParallelRows(src.nHeight, [&](RowBlock rows) {
        if (bHalf) {
            HalfTurnRows(src, dst, rows);
        } else {
            QuarterTurnRows(src, dst, nOrientation, rows);
        }
    });
    return true;
}

}  // namespace vkr
