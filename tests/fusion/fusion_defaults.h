#pragma once

#include <algorithm>

#include "fusion/fusion_params.h"
#include "primitives/pyramid_levels.h"
#include "weights/weight_params.h"

namespace vkr {

// The values that a new engine has.
inline WeightParams DefaultWeightParams()
{
    constexpr int32_t vDiffs[8] = {256, 1024, 2304, 4096, 6400, 9216, 12544, 16384};
    constexpr int32_t vWeights[8] = {128, 80, 64, 32, 16, 8, 4, 1};
    constexpr int32_t vRefWeights[8] = {128, 128, 128, 128, 96, 80, 32, 1};
    constexpr int32_t vTargets[8] = {176, 128, 80, 128, 128, 128, 128, 128};
    WeightParams params;
    params.nFusionWeightSelect = 1;
    params.bConstantBrightnessTargetEnable = 1;
    params.nFaceIntensityRefRange[0] = 20;
    params.nFaceIntensityRefRange[1] = 5;
    params.bRefDifferentWeightEnable = 1;
    params.bMax2ExpWeightEnable = 1;
    params.bNormalizeWeightEnable = 1;
    params.nDominateWTh = 80;
    params.m_nMinFusionWeight = 1;
    params.m_nMaxFusionWeight = kWeightOne;
    std::copy_n(vTargets, 8, params.nGoodBrightnessTarget);
    std::copy_n(vDiffs, 8, params.pBrightnessDiffList);
    std::copy_n(vDiffs, 8, params.pBrightnessDiffListRef);
    std::copy_n(vWeights, 8, params.pBrightnessWList);
    std::copy_n(vRefWeights, 8, params.pBrightnessWListRef);
    return params;
}

inline FusionParams DefaultFusionParams()
{
    constexpr int32_t vLumas[8] = {16, 32, 48, 64, 80, 96, 112, 128};
    constexpr int32_t vGains[8] = {32, 29, 26, 24, 21, 18, 16, 16};
    constexpr int32_t vStrengths[8] = {16, 16, 12, 8, 4, 2, 0, 0};
    FusionParams params;
    params.bShadowDetailEnhanceEnable = 1;
    params.bExtendHL = 1;
    params.bEdgeCompensateEnable = 1;
    params.nMaxDeghostLevel = 4;
    std::copy_n(vLumas, 8, params.nSharpenYThList);
    std::copy_n(vGains, 8, params.nSharpenYWList);
    std::copy_n(vStrengths, 8, params.nLevelSharpen);
    std::fill_n(params.nExtendHLSatuThre, 8, 224);
    std::fill_n(params.nExtendHLSlope, 8, 64);
    return params;
}

inline PyramidParams PyramidWith(int nTopLevel, int bFilter = 0, int bDither = 0)
{
    PyramidParams params;
    params.nTopLevel = nTopLevel;
    params.bPyramidFilter = bFilter;
    params.bUpScaleImageDither = params.bDownScaleImageDither = bDither;
    params.bUpScaleOtherDither = params.bDownScaleOtherDither = bDither;
    return params;
}

}  // namespace vkr
