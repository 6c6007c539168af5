#pragma once

#include <cstdint>

#include "foundation/image.h"

namespace vkr {

// The brightness of an exposure, and what one exposure's brightness is in another.

// Per channel, the share (0 .. 1) of the counted pixels up to each grey value.
struct GhostShares {
    float vShares[3][256];
};

// Counts the pixels of frame (nDim 3) where mask (nDim 1) is not 0 at the same place; where the mask, which may have
// any size, has no pixel nothing is counted. All shares are 0 when nothing is.
void BuildMaskHist_Integral(const CImage& frame, const CImage& mask, GhostShares& shares);

// pTable[i] of 256 is the grey value of To that stands where i stands in From: each value of To in turn takes all
// entries up to the value of From with the nearest share, the lowest of several. Entries above the last value reached,
// which no counted pixel has, are 0.
void MatchHistogram(const float* pFrom, const float* pTo, uint8_t* pTable);

}  // namespace vkr
