#pragma once

#include "foundation/image.h"

namespace vkr {

// B, G, R to luma and chroma, in place, nDim 3: channel 0 the luma (29 B + 150 G + 77 R + 128) >> 8, then the blue and
// the red difference, /256 toward zero, offset 128. nMode not 0 stores the red difference first. Rows are shared among
// the team; same bytes from any number of threads.
void BGRToYCbCr(CImage& image, int nMode);

// The way back, in place: nMode 0 reads channel 1 as Cb and channel 2 as Cr, any other mode the other way round.
// Serial: what the shift by 8 drops is carried per output channel from pixel to pixel, across row ends, through the
// whole picture. So it is no exact inverse of BGRToYCbCr, and two equal pixels may come out differently.
void YCbCrToBGR(CImage& image, int nMode);

}  // namespace vkr
