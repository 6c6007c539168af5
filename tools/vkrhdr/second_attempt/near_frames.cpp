#include "second_attempt/near_frames.h"

#include <algorithm>

#include "pictures/colour_convert.h"
#include "second_attempt/borrowed_border.h"
#include "second_attempt/moved_frame.h"

namespace vkr::tool {

Raster HalfLuma(const Frame& frame)
{
    Raster luma;
    luma.nWidth = frame.nWidth;
    luma.nHeight = frame.nHeight;
    luma.nChannels = 1;
    luma.vSamples = frame.vY;
    return ScaleDown(luma, 2);
}

std::vector<Shift> MovesOf(const std::vector<Frame>& vFrames, int nReference, const std::vector<AlignedPair>& vPairs)
{
    std::vector<Shift> vMoves(vFrames.size());
    for (const AlignedPair& pair : vPairs) {
        if (pair.bAligned) continue;
        const size_t nFirst = static_cast<size_t>(pair.nFirst), nSecond = static_cast<size_t>(pair.nSecond);
        const Shift apart = FindShift(HalfLuma(vFrames[nFirst]), HalfLuma(vFrames[nSecond]));
        const bool bDarker = pair.nFirst < nReference;
        const int nSign = bDarker ? 2 : -2;  // apart counts pixels of half size
        const size_t nBegin = bDarker ? 0 : nSecond, nEnd = bDarker ? nFirst + 1 : vFrames.size();
        for (size_t k = nBegin; k < nEnd; ++k) {
            vMoves[k].nX += nSign * apart.nX;
            vMoves[k].nY += nSign * apart.nY;
        }
    }
    return vMoves;
}

std::vector<Frame> MovedFrames(const std::vector<Frame>& vFrames, const std::vector<Shift>& vMoves)
{
    std::vector<Frame> vMoved;
    for (size_t k = 0; k < vFrames.size(); ++k) {
        vMoved.push_back(IsMoved(vMoves[k]) ? MovedFrame(vFrames[k], vMoves[k]) : vFrames[k]);
    }
    return vMoved;
}

std::vector<Frame> WithBorrowedBorders(std::vector<Frame> vFrames, const std::vector<Shift>& vMoves,
                                       const std::vector<AlignedPair>& vPairs, int nReference)
{
    const auto borrow = [&](int k, int nNeighbour) {
        const Shift move = vMoves[static_cast<size_t>(k)];
        if (!IsMoved(move)) return;
        const AlignedPair& pair = vPairs[static_cast<size_t>(std::min(k, nNeighbour))];
        PlaneMap map{1, 0, 0, 0, 1, 0, 0, 0, 1};
        if (pair.bAligned) std::copy_n(pair.vHomography, map.size(), map.begin());
        BorrowBorder(vFrames[static_cast<size_t>(k)], move, vFrames[static_cast<size_t>(nNeighbour)],
                     k < nNeighbour ? InverseOf(map) : map);
    };
    const int nFrames = static_cast<int>(vFrames.size());
    for (int k = nReference - 1; k >= 0; --k) borrow(k, k + 1);
    for (int k = nReference + 1; k < nFrames; ++k) borrow(k, k - 1);
    return vFrames;
}

}  // namespace vkr::tool
