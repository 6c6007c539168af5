#pragma once

#include "foundation/image.h"
#include "primitives/pyramid_levels.h"

namespace vkr {

// The tone picture (luma and two chroma components, w x h) as a frame of 2w x 2h: the luma doubled by the pyramid's
// operations (bPyramidFilter, bUpScaleImageDither), the chroma copied as it stands. False when there was no memory;
// frame is undefined then.
bool SplitAndUpscale(const CImage& ycbcr, const PyramidParams& pyramid, CYuvImage& frame);

// Gives the fine luma detail back: luma of output = clamp(luma of upscaled + edge, 0 .. 255), edge signed 16 bits,
// nDim 1. All three have one size; upscaled and output may be the same record; chroma is left alone. Rows are shared
// among the team.
void AddEdge(const CYuvImage& upscaled, const CShortImage& edge, CYuvImage& output);

}  // namespace vkr
