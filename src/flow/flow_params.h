#pragma once

#include <cstdint>

#include "foundation/fixed_point.h"

namespace vkr {

// What the flow itself decides by: flow parameters, flags 0 or 1.
struct FlowParams {
    int32_t bDebugDumpEnable = 0;
    int32_t bLogoEnable = 0;
    int32_t bBGRProcessEnable = 0;  // kept with the parameters
    int32_t nGlobalAlignEnable = 0;
    int32_t bCheckSatuEnable = 0;
    int32_t bGhostProcessEnable = 0;
    int32_t bGhostRelinearizeEnable = 0;
    int32_t bContrastEnable = 0;
    int32_t bEV0HighLightWeightSuppress = 0;      // kept with the parameters
    int32_t nEV0HighLightWeightSuppressThre = 0;  // kept with the parameters
    int32_t nGoodBrightnessTargetDropFailure[kMaxExposures] = {};
    int32_t bUVOrder = 0;           // 0: first chroma byte Cb, 1: Cr
    int32_t bAddHighFrequency = 0;  // face curve: detail goes through it
    int32_t nSaturateThre = 0;      // lowest saturation degree that is kept
};

}  // namespace vkr
