#include "align/frame_padding.h"

#include <cstdint>
#include <cstring>

#include "foundation/image_scope.h"
#include "foundation/parallel_rows.h"

namespace vkr {

namespace {

bool IsEvenSize(int nWidth, int nHeight)
{
    return nWidth > 0 && nHeight > 0 && ((nWidth | nHeight) & 1) == 0;
}

void PadLumaRow(const uint8_t* pSrc, int nSrcWidth, uint8_t* pDst, int nDstWidth)
{
    std::memcpy(pDst, pSrc, static_cast<size_t>(nSrcWidth));
    std::memset(pDst + nSrcWidth, pSrc[nSrcWidth - 1], static_cast<size_t>(nDstWidth - nSrcWidth));
}

void PadChromaRow(const uint8_t* pSrc, int nSrcWidth, uint8_t* pDst, int nDstWidth)
{
    std::memcpy(pDst, pSrc, static_cast<size_t>(nSrcWidth));
    for (int i = nSrcWidth; i < nDstWidth; ++i) pDst[i] = pDst[i - 2];
}

// Rows of nWidth bytes move together, to a place that does not lie behind their own: the first row first.
void CloseRows(const uint8_t* pSrc, int nSrcWidth, uint8_t* pDst, int nWidth, int nRows)
{
    const size_t nBytes = static_cast<size_t>(nWidth), nSrcBytes = static_cast<size_t>(nSrcWidth);
    for (size_t y = 0; y < static_cast<size_t>(nRows); ++y)
        std::memmove(pDst + y * nBytes, pSrc + y * nSrcBytes, nBytes);
}

}  // namespace

bool CopyPadded(const CYuvImage& src, CYuvImage& dst, int nWidth, int nHeight)
{
    if (src.Empty() || nWidth < src.nWidth || nHeight < src.nHeight || !IsEvenSize(nWidth, nHeight)) return false;
    if (!dst.Allocate(nWidth, nHeight)) return false;
    // Rows of src are clamped to its last one.
    ParallelRows(nHeight / 2, [&](RowBlock pairs) {
        for (int y = pairs.nBegin; y < pairs.nEnd; ++y) {
            PadLumaRow(src.RowY(2 * y), src.nWidth, dst.RowY(2 * y), nWidth);
            PadLumaRow(src.RowY(2 * y + 1), src.nWidth, dst.RowY(2 * y + 1), nWidth);
            PadChromaRow(src.RowUV(y), src.nWidth, dst.RowUV(y), nWidth);
        }
    });
    return true;
}

bool PadFrame(CYuvImage& frame, int nWidth, int nHeight)
{
    CYuvImage padded{};
    ImageScope scope(padded);
    if (!CopyPadded(frame, padded, nWidth, nHeight)) return false;
    frame.Swap(padded);
    return true;
}

bool CropFrame(CYuvImage& frame, int nWidth, int nHeight)
{
    if (frame.Empty() || nWidth > frame.nWidth || nHeight > frame.nHeight || !IsEvenSize(nWidth, nHeight)) return false;
    uint8_t* const pUV = frame.pBuffer + static_cast<size_t>(nWidth) * static_cast<size_t>(nHeight);
    CloseRows(frame.pY, frame.nWidth, frame.pY, nWidth, nHeight);
    CloseRows(frame.pUV, frame.nWidth, pUV, nWidth, nHeight / 2);
    frame.pUV = pUV;
    frame.nWidth = nWidth;
    frame.nHeight = nHeight;
    return true;
}

}  // namespace vkr
