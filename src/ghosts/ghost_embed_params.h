#pragma once

#include <cstdint>

#include "foundation/fixed_point.h"

namespace vkr {

// How ghost regions take their exposure: flow parameters.
struct GhostEmbedParams {
    int32_t nStartDeghostLevel = 0;
    int32_t nMaxGhostRegionNum = 0;
    int32_t nGhostBinaryThresh = 0;
    int32_t nMinConnectAreaPer = 0;  // 1/16384 of the area
    int32_t nGhostLimitPerTh = 0;    // 1/16384 of the area
    int32_t bSaturationMethod = 0;
    int32_t nSatuValueTh = 0;
    int32_t nRegionEdgeWeightW = 0;
    int32_t bMaxMeanWeightFill = 0;
    int32_t nMaxDecrease = 0;
    int32_t nGhostRegionSaturatePerTh = 0;  // 1/16384 of the area
    int32_t nGhostEdgeSaturatePerTh = 0;    // 1/16384 of the area
    int32_t DeGhostStrength = 0;
    int32_t nRatio[kMaxExposures] = {};  // Q4: exposure ratio of neighbours, 16 = equal
    int32_t nMaxCompensateGain = 0;      // Q7
    int32_t nGhostSmoothIter = 0;
    int32_t bUseDilatedGhost = 0;
};

}  // namespace vkr
