#pragma once

#include "foundation/image.h"
#include "foundation/stage_dumps.h"
#include "fusion/fusion_params.h"
#include "primitives/pyramid_levels.h"

namespace vkr {

// What is blended. A view: whoever makes it keeps the pictures.
struct WeighedBurst {
    const CImage* vFrames;      // nExposureNum pictures B, G, R of one size, darkest first
    int nExposureNum;           // 1 .. kMaxExposures
    const CImage* vWeights;     // kMaxLevels levels, nDim = nExposureNum, Q7
    const CShortImage* vCoefs;  // the same in Q7, for the ghost edge compensation; an empty level changes nothing
};

// Laplacian-pyramid blend of the exposures in integer arithmetic.
//
//   fused  takes the frames' size, nDim 6: the low-pass part B, G, R and the finest fused detail B, G, R, not yet
//          added. Left as it stood when the frames are so small that level 0 is the top level.
//   dumps  the fused levels under FusionDump/
//
// False when there was no memory or the levels do not fit each other. Same bytes from any number of threads.
bool PyramidFusion(const WeighedBurst& burst, const FusionParams& params, const PyramidParams& pyramid,
                   const StageDumps& dumps, CShortImage& fused);

}  // namespace vkr
