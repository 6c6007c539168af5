#pragma once

#include "foundation/filter.h"
#include "primitives/gaussian_pyramid.h"

namespace vkr {

// Parameters of an upscaling of masks. They are registered with the detector, so that its text form is whole; nothing
// runs on them.
class CPyramidUpScaleFilter : public CFilter, public CGaussianPyramid2 {
public:
    void SetFilterName() override;
    void RegisterParameters() override;

    int32_t bDumpDebugFile = 0;
    int32_t bYUVPyramidEnable = 0;
    int32_t nPyramidMatchLevel = 0;
    int32_t nYUVThre[3] = {};
    int32_t nYUVThreSlope[3] = {};
    int32_t nYUVThreOffset[3] = {};
    int32_t nMatchLevelMofoOption = 0;
    int32_t nMatchLevelMofoWeight = 0;
    int32_t nMatchLevelFarErosionOption = 0;
    int32_t nMatchLevelFarErosionWeight = 0;
    int32_t nMatchLevelCloseErosionOption = 0;
    int32_t nMatchLevelCloseErosionWeight = 0;
    int32_t bPyramidSmoothBlurMaskEnable = 0;
    int32_t nSmoothMaskMaxIt[4] = {};
    int32_t nSmoothMaskWinW[4] = {};
    int32_t nSmoothMaskDispThre[4] = {};
    int32_t nSmoothMaskDispRatio[4] = {};
    int32_t nSmoothMaskThre[4] = {};
    int32_t nSmoothMaskCoef[4] = {};
    int32_t bSmoothMaskStretchEnable = 0;
    int32_t nUpScaleWinW = 0;
    int32_t nUpScaleMaskThre = 0;
    int32_t nSharpMaskP = 0;
    int32_t nSharpMaskN = 0;
    int32_t nSharpThreP = 0;
    int32_t nSharpThreN = 0;
    int32_t nUpScaleMofoOption = 0;
    int32_t nUpScaleMofoWeight = 0;
    int32_t nLevel1Erosion = 0;
    int32_t nLevel1ErosionWeight = 0;
    int32_t nMaskThreshold = 0;
    int32_t nBoxFilterKernelSize = 0;
    int32_t nBinaryRate = 0;
};

}  // namespace vkr
