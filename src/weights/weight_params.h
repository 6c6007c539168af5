#pragma once

#include <cstdint>

#include "foundation/fixed_point.h"

namespace vkr {

// What the weights of the exposures follow: flow parameters. Lists of 8 go by exposure index or by node.
struct WeightParams {
    int32_t nFusionWeightSelect = 0;  // brightness of a pixel: 0 luma, 1 largest, 2 smallest of B, G, R
    int32_t bConstantBrightnessTargetEnable = 0;
    int32_t nGoodBrightnessTarget[kMaxExposures] = {};  // by exposure; the last weights aim at it
    int32_t nFaceIntensityRefRange[2] = {};             // window below and above m_FaceIntensity, grey values
    int32_t bRefDifferentWeightEnable = 0;
    int32_t pBrightnessDiffList[8] = {};  // nodes: squared brightness difference ...
    int32_t pBrightnessWList[8] = {};     // ... to weight, Q7
    int32_t pBrightnessDiffListRef[8] = {};
    int32_t pBrightnessWListRef[8] = {};
    int32_t bMax2ExpWeightEnable = 0;
    int32_t bNormalizeWeightEnable = 0;
    int32_t nDominateWTh = 0;  // Q7: above it the first pick takes all
    int32_t m_nMinFusionWeight = 0;
    int32_t m_nMaxFusionWeight = 0;
};

// The face that the reference exposure's weights aim at.
struct FaceAim {
    int32_t bAIMask = 0;          // 1: there is a face
    int32_t m_FaceIntensity = 0;  // its brightness, grey value
};

}  // namespace vkr
