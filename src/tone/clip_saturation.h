#pragma once

#include <cstdint>

#include "foundation/image.h"

namespace vkr {

// Regions blown out in every exposure leave the fusion with values spread around the true ceiling. This finds the
// ceiling and clips the base components (the first three) of fused to it, in place.
//
//   fused            nDim 6, the base may lie outside 0 .. 255
//   satuMask         nDim 1, of the same size: 0 not saturated, else the degree, which weighs the pixel
//   nSaturatePsThre  Q7: share of the saturated degree below the percentile ceiling, 1 .. 128
//
// The ceiling is the largest value of the picture, at least 255; where the mask's degrees sum to more than 1/256 of the
// pixels it is lowered to the least of the mean, the most frequent and the percentile brightness under the mask. Rows
// are shared among the team. False, nothing changed, when there was no memory or the sizes differ.
bool ClipSaturation(CShortImage& fused, const CImage& satuMask, int32_t nSaturatePsThre);

}  // namespace vkr
