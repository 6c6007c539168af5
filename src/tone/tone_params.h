#pragma once

#include <cstdint>

namespace vkr {

// Black and white levels and gamma of the stretch: flow parameters.
struct ToneParams {
    int32_t bKeepHighLightDetailEnable = 0;
    int32_t bKeepDarkDetailEnable = 0;
    int32_t nMaxHighLevel = 0, nMinHighLevel = 0;  // limits of the white level
    int32_t nMinLowLevel = 0, nMaxLowLevel = 0;    // limits of the black level
    int32_t nHLPercetage = 0;                      // 1/65536 of the pixels above the white level
    int32_t nDarkPercetage = 0;                    // 1/65536 of the pixels below the black level
    int32_t bBrightnessPRSV = 0;                   // gamma brings the mean brightness back
    int32_t nOutGammaYThres = 0;
    int32_t nMaxGamma = 0;      // 1/100
    int32_t nHistStatType = 0;  // brightness of a pixel: 0 largest, 1 smallest, 2 mean, 3 luma, 4 green
    int32_t nLowLevelStep = 0, nHighLevelStep = 0;  // Q4: how far a burst moves the levels
    int32_t nSaturatePsThre = 0;                    // Q7: share of the saturated area
    int32_t m_nOutMinValue = 0, m_nOutMaxValue = 0;
};

// Black and white level of the stretch. The engine keeps them from burst to burst, starting at 0 and 255.
struct StretchLevels {
    int32_t m_nLowLevel = 0;
    int32_t m_nHighLevel = 255;
};

}  // namespace vkr
