#pragma once

#include "foundation/image.h"
#include "foundation/stage_dumps.h"
#include "tone/tone_params.h"

namespace vkr {

// Tone of a burst without a usable face: the fused picture (nDim 6, signed 16 bits) becomes an 8-bit B, G, R picture of
// its size. The base is stretched from black to white level, the high frequencies are added at the same gain (at least
// 1.0), and a gamma curve brings back brightness that the stretch took.
//
//   fused      its base components are clipped in place when bCheckSatu is set
//   satuMask   of the same size, nDim 1; may be empty when bCheckSatu is 0
//   levels     updated toward this picture's levels when one of the keep-detail flags is set
//   dumps      pictures under Dump/
//
// Serial along the raster: three carries diffuse the rounding of the 8.8 fixed-point gain, across row ends. False when
// there was no memory or a mask of another size; out is empty then. Same bytes from any number of threads.
bool GlobalStretch(CShortImage& fused, const CImage& satuMask, int bCheckSatu, const ToneParams& params,
                   const StageDumps& dumps, StretchLevels& levels, CImage& out);

}  // namespace vkr
