#pragma once

#include "ghosts/ghost_embed_params.h"
#include "ghosts/relinearize.h"

namespace vkr {

// The values that a new engine has.
inline DisplayCurve DefaultDisplayCurve()
{
    constexpr int32_t vShown[DisplayCurve::kNodes] = {0,   16,  32,  56,  76,  93,  106, 118, 129, 139, 150, 158,
                                                      166, 174, 181, 188, 192, 197, 202, 207, 210, 214, 218, 222,
                                                      225, 229, 232, 236, 239, 242, 246, 249, 252, 255};
    DisplayCurve curve;
    for (int i = 0; i < DisplayCurve::kNodes; ++i) {
        curve.m_LinearX[i] = curve.m_LinearX10[i] = i < 2 ? 4 * i : 8 * (i - 1);
        curve.m_LinearY[i] = vShown[i];
    }
    curve.m_LinearX[33] = 255;
    curve.m_LinearX10[33] = 1023;
    return curve;
}

inline GhostEmbedParams DefaultGhostEmbedParams()
{
    GhostEmbedParams params;
    params.nStartDeghostLevel = 3;
    params.nMaxGhostRegionNum = 32;
    params.nGhostBinaryThresh = 64;
    params.nMinConnectAreaPer = 50;
    params.nGhostLimitPerTh = 5000;
    params.nSatuValueTh = 240;
    params.bMaxMeanWeightFill = 1;
    params.nMaxDecrease = 1;
    params.nGhostRegionSaturatePerTh = 5700;
    params.nGhostEdgeSaturatePerTh = 3200;
    params.DeGhostStrength = 256;
    params.nMaxCompensateGain = 160;
    params.nGhostSmoothIter = 2;
    params.bUseDilatedGhost = 1;
    for (int32_t& nRatio : params.nRatio) nRatio = 32;
    return params;
}

}  // namespace vkr
