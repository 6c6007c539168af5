#pragma once

#include "foundation/image.h"
#include "primitives/pyramid_levels.h"

namespace vkr {

// Blends the luma detail layers of the exposures (full size, nDim 1) by the level-0 weights (working size, nDim =
// nExposureNum, Q7), doubled to twice their size. edge takes the size of the doubled weights, nDim 1. Runs on a thread
// of its own beside fusion and tone; reads only its arguments. False when there was no memory or a layer has not the
// doubled size; edge is empty then. Same bytes from any number of threads.
bool FuseEdgeLayers(const CImage& level0Weights, const CShortImage* vDetailLayers, int nExposureNum,
                    const PyramidParams& pyramid, CShortImage& edge);

}  // namespace vkr
