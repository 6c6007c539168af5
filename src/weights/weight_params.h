#pragma once

#include "foundation/fixed_point.h"
#include "parameters/parameter_record.h"

namespace vkr {

// What the weights of the exposures follow: flow parameters.
// clang-format off
struct WeightParams {
    PARAM(nFusionWeightSelect,             0,   2,  1, "choice",
          "brightness of a pixel that its weight goes by: 0 luma, 1 largest, 2 smallest of B, G, R");
    PARAM(bConstantBrightnessTargetEnable, 0,   1,  1, "flag",
          "weights aim at 128 in every exposure, whatever nGoodBrightnessTarget says");
    PARAM_LIST(nGoodBrightnessTarget, kMaxExposures, 0, 255, "grey value",
               "by exposure: brightness of the greatest weight", 176, 128, 80, 128, 128, 128, 128, 128);
    PARAM_LIST(nFaceIntensityRefRange, 2, 0, 255, "grey value",
               "window below and above the face's brightness within which the reference exposure aims at it", 20, 5);
    PARAM(bRefDifferentWeightEnable,       0,   1,  1, "flag", "the reference exposure has its own curve of weights");
    PARAM_LIST(pBrightnessDiffList, 8, 0, 65535, "squared grey value",
               "nodes of the curve of weights: squared difference to the target",
               256, 1024, 2304, 4096, 6400, 9216, 12544, 16384);
    PARAM_LIST(pBrightnessWList, 8, 0, 128, "Q7",
               "nodes of the curve of weights: weight at pBrightnessDiffList", 128, 80, 64, 32, 16, 8, 4, 1);
    PARAM_LIST(pBrightnessDiffListRef, 8, 0, 65535, "squared grey value",
               "nodes of the reference exposure's curve: squared difference to the target",
               256, 1024, 2304, 4096, 6400, 9216, 12544, 16384);
    PARAM_LIST(pBrightnessWListRef, 8, 0, 128, "Q7",
               "nodes of the reference exposure's curve: weight at pBrightnessDiffListRef",
               128, 128, 128, 128, 96, 80, 32, 1);
    PARAM(bMax2ExpWeightEnable,            0,   1,  1, "flag", "at most two exposures take part in a pixel");
    PARAM(bNormalizeWeightEnable,          0,   1,  1, "flag", "the weights of a pixel sum to 128");
    PARAM(nDominateWTh,                    0, 255, 80, "Q7", "weight above which one exposure takes the whole pixel");

    // No parameters: the least weight before normalisation, and the sum after it.
    int32_t m_nMinFusionWeight = 1;
    int32_t m_nMaxFusionWeight = kWeightOne;
};

// The face that the reference exposure's weights aim at.
struct FaceAim {
    PARAM(bAIMask,                         0,   1,  0, "flag", "a face is looked for, and weights and tone follow it");
    int32_t m_FaceIntensity = 0;  // its brightness, grey value
};
// clang-format on

}  // namespace vkr
