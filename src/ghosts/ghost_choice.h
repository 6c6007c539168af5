#pragma once

#include <cstdint>

#include "foundation/fixed_point.h"
#include "foundation/image.h"
#include "ghosts/ghost_embed_params.h"
#include "primitives/label_image.h"

namespace vkr {

// A ghost region and what the exposures are like in it, by exposure: sums of their weights and counts of their
// blown-out pixels, in all of it and on its edge.
struct RegionStats {
    int32_t nArea, nEdgeLen;  // pixels
    int64_t vWeightSum[kMaxExposures], vEdgeWeightSum[kMaxExposures];
    int32_t vSaturated[kMaxExposures], vEdgeSaturated[kMaxExposures];
};

// Adds the pixels of every region to its record in pStats, by label - 1. All pictures have the size of labels, weights
// nDim = nExposureNum, frames nDim 3.
void MeasureRegions(const CLabelImage& labels, const CLabelImage& edges, const CImage& weights, const CImage* vFrames,
                    int nExposureNum, const GhostEmbedParams& params, RegionStats* pStats);

// The exposure that shows the region alone: the one of the largest mean weight (bMaxMeanWeightFill) or that whose mean
// is nearest to 1.0, the darker on a tie; then darker ones while too much of it is blown out, nMaxDecrease of them at
// most. nRegion, from 0, is for the log, nMinArea too.
int ChooseExposure(const RegionStats& stats, int nExposureNum, const GhostEmbedParams& params, int nRegion,
                   int nMinArea);

}  // namespace vkr
