#pragma once

#include <vector>

#include "align/aligned_pair.h"
#include "pictures/picture_io.h"
#include "pictures/picture_shift.h"

namespace vkr::tool {

// Bringing the frames of a shaken burst near each other, by whole pixels. Frames lie darkest first; nReference, the one
// that others are aligned to, never moves.

// Luma at half size, where places are compared.
Raster HalfLuma(const Frame& frame);

inline bool IsMoved(Shift shift)
{
    return shift.nX != 0 || shift.nY != 0;
}

// For each frame, by how much it should move, even numbers: what is behind a failed pair, seen from the reference,
// moves by what the pair lies apart.
std::vector<Shift> MovesOf(const std::vector<Frame>& vFrames, int nReference, const std::vector<AlignedPair>& vPairs);

std::vector<Frame> MovedFrames(const std::vector<Frame>& vFrames, const std::vector<Shift>& vMoves);

// Moved frames with what they do not show themselves taken from the neighbour on the reference's side; vPairs, as they
// were aligned once moved, tell where it stands there.
std::vector<Frame> WithBorrowedBorders(std::vector<Frame> vFrames, const std::vector<Shift>& vMoves,
                                       const std::vector<AlignedPair>& vPairs, int nReference);

}  // namespace vkr::tool
