#include "face/pyramid_up_scale_filter.h"

namespace vkr {

void CPyramidUpScaleFilter::SetFilterName()
{
    StoreName("CPyramidUpScaleFilter");
}

// clang-format off
void CPyramidUpScaleFilter::RegisterParameters()
{
    //    member                          min    max  default
    PARAM(bDumpDebugFile,                   0,     1, 1);
    PARAM(bYUVPyramidEnable,                0,     1, 0);
    PARAM(nPyramidMatchLevel,               0,    16, 3);
    PARAM_ARRAY(nYUVThre,                   1,   256, 128, 128, 128);
    PARAM_ARRAY(nYUVThreSlope,              0,  1024, 512, 512, 512);
    PARAM_ARRAY(nYUVThreOffset,             1,   256, 8, 8, 8);
    PARAM(nMatchLevelMofoOption,            0,    16, 2);
    PARAM(nMatchLevelMofoWeight,            0,   128, 64);
    PARAM(nMatchLevelFarErosionOption,      0,    16, 0);
    PARAM(nMatchLevelFarErosionWeight,      0,   128, 16);
    PARAM(nMatchLevelCloseErosionOption,    0,    16, 0);
    PARAM(nMatchLevelCloseErosionWeight,    0,   128, 16);
    PARAM(bPyramidSmoothBlurMaskEnable,     0,     1, 1);
    PARAM_ARRAY(nSmoothMaskMaxIt,           0,   256, 1, 4, 16, 64);
    PARAM_ARRAY(nSmoothMaskWinW,            1,   256, 2, 1, 1, 1);
    PARAM_ARRAY(nSmoothMaskDispThre,        0, 65536, 16, 16, 16, 16);
    PARAM_ARRAY(nSmoothMaskDispRatio,       0,  1024, 16, 32, 64, 128);
    PARAM_ARRAY(nSmoothMaskThre,            0, 65536, 256, 256, 256, 256);
    PARAM_ARRAY(nSmoothMaskCoef,            1,    16, 14, 12, 10, 9);
    PARAM(bSmoothMaskStretchEnable,         0,     1, 0);
    PARAM(nUpScaleWinW,                     1,    16, 3);
    PARAM(nUpScaleMaskThre,                 0, 65536, 512);
    PARAM(nSharpMaskP,                      0, 65536, 64);
    PARAM(nSharpMaskN,                      0, 65536, 64);
    PARAM(nSharpThreP,                      0,   128, 0);
    PARAM(nSharpThreN,                      0,   128, 0);
    PARAM(nUpScaleMofoOption,               0,    16, 0);
    PARAM(nUpScaleMofoWeight,               0,   128, 64);
    PARAM(nLevel1Erosion,                   0,    16, 16);
    PARAM(nLevel1ErosionWeight,             0,   128, 64);
    PARAM(nMaskThreshold,                   0,   255, 70);
    PARAM(nBoxFilterKernelSize,             1,    11, 3);
    PARAM(nBinaryRate,                      1,   255, 45);
}
// clang-format on

}  // namespace vkr
