#pragma once

#include <cstdint>

#include "primitives/planar_rows.h"

namespace vkr {

constexpr int32_t kMostOfOthers = 85;  // Q7: the largest share that all but the first pick keep together

// NormalizeWeight for three exposures with bNormalizeWeightEnable set, nCount pixels at once (at most kRunPixels): vRaw
// holds three planes of raw weights 0 .. 255, pWeights receives three bytes per pixel. Same bytes as NormalizeWeight on
// every instruction set.
void NormalizeThreeRun(const uint8_t* const* vRaw, uint8_t* pWeights, int nCount, int nDominateWTh, bool bMax2);

}  // namespace vkr
