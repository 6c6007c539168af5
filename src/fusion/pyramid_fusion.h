#pragma once

#include "foundation/image.h"
#include "fusion/fusion_params.h"
#include "primitives/pyramid_levels.h"

namespace vkr {

// Laplacian-pyramid blend of the exposures in integer arithmetic.
//
//   vFrames   nExposureNum pictures B, G, R of one size, darkest first
//   vWeights  kMaxLevels weight levels, nDim = nExposureNum, Q7
//   vCoefs    kMaxLevels coefficient levels, nDim = nExposureNum, Q7, for the ghost edge compensation; an empty level
//             changes nothing
//   fused     takes the frames' size, nDim 6: the low-pass part B, G, R and the finest fused detail B, G, R, not yet
//             added. Left as it stood when the frames are so small that level 0 is the top level.
//   bDump     1: the fused levels as BMP under FusionDump/
//
// False when there was no memory or the levels do not fit each other. Same bytes from any number of threads.
bool PyramidFusion(const CImage* vFrames, const CImage* vWeights, const CShortImage* vCoefs, int nExposureNum,
                   const FusionParams& params, const PyramidParams& pyramid, int bDump, CShortImage& fused);

}  // namespace vkr
