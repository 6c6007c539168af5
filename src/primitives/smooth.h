#pragma once

#include "foundation/image.h"

namespace vkr {

// Binomial 5 x 5 low-pass, taps 1 4 6 4 1 both ways, the nearest sample repeated outside; any nDim, any size from 1
// x 1. dst takes the size of src and may be the same record. The sum of weight 256 is rounded (s + 128) >> 8, or with
// bDither shifted by 8 with the dropped remainder, 0 .. 255, carried per channel along the raster. Both shifts floor,
// also below 0.
//
// Out of place the 8-bit form shares its rows among the team: what is carried into a block follows from the samples, so
// the bytes are those of one block, whatever the team. In place, and in 16 bits, it runs on one thread. False when
// there is no memory.
struct CSmoothFilter5x5 {
    static bool SmoothImage8(const CImage& src, CImage& dst, bool bDither);
    static bool SmoothImage16(const CShortImage& src, CShortImage& dst, bool bDither);
};

}  // namespace vkr
