#pragma once

#include <cstdint>

#include "primitives/planar_rows.h"
#include "weights/weight_params.h"

namespace vkr {

// Raw weights of one pixel to weights that sum to 128 (Q7); 1 .. 8 exposures. Follows bNormalizeWeightEnable,
// nDominateWTh and bMax2ExpWeightEnable. A quotient by a sum of 0 is 0. This is the definition.
void NormalizeWeight(const int32_t* pRaw, uint8_t* pWeight, int nExposureNum, const WeightParams& params);

// The same for a run of nCount pixels, at most kRunPixels: vRaw holds one plane of raw weights 0 .. 255 per exposure,
// pWeights receives nExposureNum bytes per pixel and overlaps none of them. Same bytes as NormalizeWeight.
void NormalizeWeightRun(const uint8_t* const* vRaw, uint8_t* pWeights, int nCount, int nExposureNum,
                        const WeightParams& params);
void NormalizeWeightRunScalar(const uint8_t* const* vRaw, uint8_t* pWeights, int nCount, int nExposureNum,
                              const WeightParams& params);

}  // namespace vkr
