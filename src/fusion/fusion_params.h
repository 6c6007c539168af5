#pragma once

#include <cstdint>

#include "fusion/edge_compensate_params.h"

namespace vkr {

// Corrections of the Laplacian levels before they are blended: flow parameters. Lists of 8 go by level or by node.
struct FusionParams : EdgeCompensateParams {
    int32_t bShadowDetailEnhanceEnable = 0;
    int32_t nSharpenYThList[8] = {};  // nodes: luma ...
    int32_t nSharpenYWList[8] = {};   // ... to gain, Q4
    int32_t nLevelSharpen[8] = {};    // strength by level, Q4
    int32_t bExtendHL = 0;
    int32_t nExtendHLSatuThre[8] = {};  // by level, grey value
    int32_t nExtendHLSlope[8] = {};
};

}  // namespace vkr
