#include "face/pyramid_up_scale_filter.h"

namespace vkr {

void CPyramidUpScaleFilter::SetFilterName()
{
    StoreName("CPyramidUpScaleFilter");
}

void CPyramidUpScaleFilter::RegisterParameters()
{
    ADD_PARAM(bDumpDebugFile);
    ADD_PARAM(bYUVPyramidEnable);
    ADD_PARAM(nPyramidMatchLevel);
    ADD_PARAM(nYUVThre);
    ADD_PARAM(nYUVThreSlope);
    ADD_PARAM(nYUVThreOffset);
    ADD_PARAM(nMatchLevelMofoOption);
    ADD_PARAM(nMatchLevelMofoWeight);
    ADD_PARAM(nMatchLevelFarErosionOption);
    ADD_PARAM(nMatchLevelFarErosionWeight);
    ADD_PARAM(nMatchLevelCloseErosionOption);
    ADD_PARAM(nMatchLevelCloseErosionWeight);
    ADD_PARAM(bPyramidSmoothBlurMaskEnable);
    ADD_PARAM(nSmoothMaskMaxIt);
    ADD_PARAM(nSmoothMaskWinW);
    ADD_PARAM(nSmoothMaskDispThre);
    ADD_PARAM(nSmoothMaskDispRatio);
    ADD_PARAM(nSmoothMaskThre);
    ADD_PARAM(nSmoothMaskCoef);
    ADD_PARAM(bSmoothMaskStretchEnable);
    ADD_PARAM(nUpScaleWinW);
    ADD_PARAM(nUpScaleMaskThre);
    ADD_PARAM(nSharpMaskP);
    ADD_PARAM(nSharpMaskN);
    ADD_PARAM(nSharpThreP);
    ADD_PARAM(nSharpThreN);
    ADD_PARAM(nUpScaleMofoOption);
    ADD_PARAM(nUpScaleMofoWeight);
    ADD_PARAM(nLevel1Erosion);
    ADD_PARAM(nLevel1ErosionWeight);
    ADD_PARAM(nMaskThreshold);
    ADD_PARAM(nBoxFilterKernelSize);
    ADD_PARAM(nBinaryRate);
}

}  // namespace vkr
