#pragma once

#include <cstdint>

namespace vkr {

// Which faces count and how their levels are measured: flow parameters.
struct FaceParams {
    int32_t nBrightDarkFaceThres = 0;
    int32_t nAIFaceHeightWidthThres = 0;  // a face is wider or higher than this, half-size pixels
    int32_t nFaceHighCombineWeight = 0;   // 1/256
    int32_t nFaceHighThres[3] = {};       // grey values: blue, green, red
    int32_t nFaceLowThres[3] = {};
    int32_t nFaceHistDropHighLightRate = 0;  // percent
    int32_t nFaceHistDropLowLightRate = 0;   // percent
};

}  // namespace vkr
