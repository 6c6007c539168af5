#include "second_attempt/moved_frame.h"

#include <algorithm>
#include <vector>

namespace vkr::tool {

namespace {

// Where each of nCount places comes from, both ways mirrored at the border samples.
std::vector<int> SourcePlaces(int nCount, int nShift)
{
    std::vector<int> vPlaces(static_cast<size_t>(nCount));
    for (int i = 0; i < nCount; ++i) {
        int nPlace = std::abs(i - nShift);
        if (nPlace >= nCount) nPlace = 2 * (nCount - 1) - nPlace;
        vPlaces[static_cast<size_t>(i)] = std::max(nPlace, 0);
    }
    return vPlaces;
}

// Places of nSize samples: 1 of luma, 2 of chroma.
void MovePlane(const Bytes& vFrom, Bytes& vTo, const std::vector<int>& vX, const std::vector<int>& vY, size_t nSize)
{
    uint8_t* pTo = vTo.data();
    for (const int y : vY) {
        const uint8_t* pRow = vFrom.data() + static_cast<size_t>(y) * vX.size() * nSize;
        for (const int x : vX) pTo = std::copy_n(pRow + static_cast<size_t>(x) * nSize, nSize, pTo);
    }
}

}  // namespace

Frame MovedFrame(const Frame& frame, Shift shift)
{
    Frame moved;
    moved.bCrFirst = frame.bCrFirst;
    moved.Resize(frame.nWidth, frame.nHeight);
    MovePlane(frame.vY, moved.vY, SourcePlaces(frame.nWidth, shift.nX), SourcePlaces(frame.nHeight, shift.nY), 1);
    MovePlane(frame.vUV, moved.vUV, SourcePlaces(frame.nWidth / 2, shift.nX / 2),
              SourcePlaces(frame.nHeight / 2, shift.nY / 2), 2);
    return moved;
}

}  // namespace vkr::tool
