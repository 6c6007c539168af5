#pragma once

#include "parameters/parameter_record.h"

namespace vkr {

// Black and white levels and gamma of the stretch: flow parameters.
// clang-format off
struct ToneParams {
    PARAM(bKeepHighLightDetailEnable,    0,     1,   1, "flag",
          "the white level follows the picture; without it, it is 255");
    PARAM(bKeepDarkDetailEnable,         0,     1,   1, "flag",
          "the black level follows the picture; without it, it is 0");
    PARAM(nMaxHighLevel,                 0,   512, 287, "grey value", "most that the white level may be");
    PARAM(nMinHighLevel,                 0,   512, 224, "grey value", "least that the white level may be");
    PARAM(nMinLowLevel,               -255,   255, -32, "grey value", "least that the black level may be");
    PARAM(nMaxLowLevel,               -255,   255,  32, "grey value", "most that the black level may be");
    PARAM(nHLPercetage,                  0, 65536, 256, "1/65536 of the pixels",
          "share of them that lies above the white level");
    PARAM(nDarkPercetage,                0, 65536, 256, "1/65536 of the pixels",
          "share of them that lies below the black level");
    PARAM(bBrightnessPRSV,               0,     1,   1, "flag",
          "a gamma brings the mean brightness back to what it was before the stretch");
    PARAM(nOutGammaYThres,               0,   255, 150, "grey value",
          "HSV stretch: from this mean brightness on there is no gamma");
    PARAM(nMaxGamma,                   100,   200, 150, "1/100", "largest gamma");
    PARAM(nHistStatType,                 0,     4,   0, "choice",
          "brightness of a pixel for the levels: 0 largest, 1 smallest, 2 mean, 3 luma, 4 green");
    PARAM(nLowLevelStep,                 0,    16,  16, "Q4",
          "how far one burst moves the black level toward what its picture asks for");
    PARAM(nHighLevelStep,                0,    16,  16, "Q4",
          "how far one burst moves the white level toward what its picture asks for");
    PARAM(nSaturatePsThre,               1,   128,  16, "Q7",
          "share of the blown-out area that sets the ceiling of that area");

    // No parameters: the limits of every result.
    int32_t m_nOutMinValue = 0, m_nOutMaxValue = 255;
};
// clang-format on

// Black and white level of the stretch. The engine keeps them from burst to burst, starting at 0 and 255.
struct StretchLevels {
    int32_t m_nLowLevel = 0;
    int32_t m_nHighLevel = 255;
};

}  // namespace vkr
