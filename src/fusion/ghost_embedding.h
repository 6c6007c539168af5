#pragma once

#include <cstdint>

#include "foundation/image.h"
#include "fusion/fusion_params.h"
#include "primitives/pyramid_levels.h"

namespace vkr {

// Gives every ghost region to one exposure: rewrites the weight levels (kMaxLevels records, nTotalLevels in use) and
// fills the coefficient levels (kMaxLevels records, Q7) for the fusion's edge compensation. ghostMap has the size of
// weight level 0. False when there was no memory.
bool GhostEmbeddingIntoWeight(const CImage& ghostMap, const CImage* vFrames, int nExposureNum, int nReference,
                              int nTotalLevels, const GhostEmbedParams& params, const FusionParams& fusion,
                              const PyramidParams& pyramid, CImage* vWeights, CShortImage* vCoefs);

}  // namespace vkr
