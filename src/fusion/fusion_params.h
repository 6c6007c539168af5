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

// Corrections of the Laplacian levels before they are blended: flow parameters. Lists of 8 go by level or by node.
struct FusionParams {
    int32_t bShadowDetailEnhanceEnable = 0;
    int32_t nSharpenYThList[8] = {};  // nodes: luma ...
    int32_t nSharpenYWList[8] = {};   // ... to gain, Q4
    int32_t nLevelSharpen[8] = {};    // strength by level, Q4
    int32_t bExtendHL = 0;
    int32_t nExtendHLSatuThre[8] = {};  // by level, grey value
    int32_t nExtendHLSlope[8] = {};
    int32_t bEdgeCompensateEnable = 0;
    int32_t nMinDeghostLevel = 0;  // levels of the ghost edge compensation, inclusive
    int32_t nMaxDeghostLevel = 0;
};

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
