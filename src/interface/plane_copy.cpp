#include "interface/plane_copy.h"

#include <cstring>

#include "foundation/parallel_rows.h"

namespace vkr {

namespace {

// nRows rows of nBytes bytes; the pitches are the bytes from row to row.
void CopyPlane(const uint8_t* pSrc, size_t nSrcPitch, uint8_t* pDst, size_t nDstPitch, size_t nBytes, int nRows)
{
    ParallelRows(nRows, [&](RowBlock rows) {
        for (int y = rows.nBegin; y < rows.nEnd; ++y) {
            std::memcpy(pDst + nDstPitch * static_cast<size_t>(y), pSrc + nSrcPitch * static_cast<size_t>(y), nBytes);
        }
    });
}

}  // namespace

bool CopyFrameIn(const vkrHdrFrame& frame, CYuvImage& slot)
{
    if (!slot.Allocate(frame.nWidth, frame.nHeight)) return false;
    const size_t nWidth = static_cast<size_t>(slot.nWidth);
    CopyPlane(frame.pPlane[0], static_cast<size_t>(frame.nPitch[0]), slot.pY, nWidth, nWidth, slot.nHeight);
    CopyPlane(frame.pPlane[1], static_cast<size_t>(frame.nPitch[1]), slot.pUV, nWidth, nWidth, slot.nHeight / 2);
    return true;
}

bool CopyFrameOut(const CYuvImage& picture, vkrHdrFrame& frame)
{
    if (picture.Empty() || picture.nWidth != frame.nWidth || picture.nHeight != frame.nHeight) return false;
    const size_t nWidth = static_cast<size_t>(frame.nWidth);
    CopyPlane(picture.pY, nWidth, frame.pPlane[0], static_cast<size_t>(frame.nPitch[0]), nWidth, frame.nHeight);
    CopyPlane(picture.pUV, nWidth, frame.pPlane[1], static_cast<size_t>(frame.nPitch[1]), nWidth, frame.nHeight / 2);
    return true;
}

}  // namespace vkr
