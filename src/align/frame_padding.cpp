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

// By way of another frame.
bool Resize(CYuvImage& frame, int nWidth, int nHeight, bool (*pCopy)(const CYuvImage&, CYuvImage&, int, int))
{
    CYuvImage resized{};
    ImageScope scope(resized);
    if (!pCopy(frame, resized, nWidth, nHeight)) return false;
    frame.Swap(resized);
    return true;
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

bool CopyCropped(const CYuvImage& src, CYuvImage& dst, int nWidth, int nHeight)
{
    if (src.Empty() || nWidth > src.nWidth || nHeight > src.nHeight || !IsEvenSize(nWidth, nHeight)) return false;
    if (!dst.Allocate(nWidth, nHeight)) return false;
    const size_t nBytes = static_cast<size_t>(nWidth);
    ParallelRows(nHeight / 2, [&](RowBlock pairs) {
        for (int y = pairs.nBegin; y < pairs.nEnd; ++y) {
            std::memcpy(dst.RowY(2 * y), src.RowY(2 * y), nBytes);
            std::memcpy(dst.RowY(2 * y + 1), src.RowY(2 * y + 1), nBytes);
            std::memcpy(dst.RowUV(y), src.RowUV(y), nBytes);
        }
    });
    return true;
}

bool PadFrame(CYuvImage& frame, int nWidth, int nHeight)
{
    return Resize(frame, nWidth, nHeight, &CopyPadded);
}

bool CropFrame(CYuvImage& frame, int nWidth, int nHeight)
{
    return Resize(frame, nWidth, nHeight, &CopyCropped);
}

}  // namespace vkr
