#pragma once

#include "parameters/filter.h"
#include "parameters/parameter_record.h"
#include "primitives/gaussian_pyramid.h"

namespace vkr {

// Of an upscaling of masks that no stage asks for.
// clang-format off
struct MaskUpScaleParams {
    static constexpr const char* kUnread = "kept with the parameters, nothing reads it";

    PARAM(bDumpDebugFile,                0,     1,   1, "flag", kUnread);
    PARAM(bYUVPyramidEnable,             0,     1,   0, "flag", kUnread);
    PARAM(nPyramidMatchLevel,            0,    16,   3, "", kUnread);
    PARAM_LIST(nYUVThre, 3, 1, 256, "", kUnread, 128, 128, 128);
    PARAM_LIST(nYUVThreSlope, 3, 0, 1024, "", kUnread, 512, 512, 512);
    PARAM_LIST(nYUVThreOffset, 3, 1, 256, "", kUnread, 8, 8, 8);
    PARAM(nMatchLevelMofoOption,         0,    16,   2, "", kUnread);
    PARAM(nMatchLevelMofoWeight,         0,   128,  64, "", kUnread);
    PARAM(nMatchLevelFarErosionOption,   0,    16,   0, "", kUnread);
    PARAM(nMatchLevelFarErosionWeight,   0,   128,  16, "", kUnread);
    PARAM(nMatchLevelCloseErosionOption, 0,    16,   0, "", kUnread);
    PARAM(nMatchLevelCloseErosionWeight, 0,   128,  16, "", kUnread);
    PARAM(bPyramidSmoothBlurMaskEnable,  0,     1,   1, "flag", kUnread);
    PARAM_LIST(nSmoothMaskMaxIt, 4, 0, 256, "", kUnread, 1, 4, 16, 64);
    PARAM_LIST(nSmoothMaskWinW, 4, 1, 256, "", kUnread, 2, 1, 1, 1);
    PARAM_LIST(nSmoothMaskDispThre, 4, 0, 65536, "", kUnread, 16, 16, 16, 16);
    PARAM_LIST(nSmoothMaskDispRatio, 4, 0, 1024, "", kUnread, 16, 32, 64, 128);
    PARAM_LIST(nSmoothMaskThre, 4, 0, 65536, "", kUnread, 256, 256, 256, 256);
    PARAM_LIST(nSmoothMaskCoef, 4, 1, 16, "", kUnread, 14, 12, 10, 9);
    PARAM(bSmoothMaskStretchEnable,      0,     1,   0, "flag", kUnread);
    PARAM(nUpScaleWinW,                  1,    16,   3, "", kUnread);
    PARAM(nUpScaleMaskThre,              0, 65536, 512, "", kUnread);
    PARAM(nSharpMaskP,                   0, 65536,  64, "", kUnread);
    PARAM(nSharpMaskN,                   0, 65536,  64, "", kUnread);
    PARAM(nSharpThreP,                   0,   128,   0, "", kUnread);
    PARAM(nSharpThreN,                   0,   128,   0, "", kUnread);
    PARAM(nUpScaleMofoOption,            0,    16,   0, "", kUnread);
    PARAM(nUpScaleMofoWeight,            0,   128,  64, "", kUnread);
    PARAM(nLevel1Erosion,                0,    16,  16, "", kUnread);
    PARAM(nLevel1ErosionWeight,          0,   128,  64, "", kUnread);
    PARAM(nMaskThreshold,                0,   255,  70, "", kUnread);
    PARAM(nBoxFilterKernelSize,          1,    11,   3, "", kUnread);
    PARAM(nBinaryRate,                   1,   255,  45, "", kUnread);
};
// clang-format on

// Parameters of an upscaling of masks. They are registered with the detector, so that its text form is whole; nothing
// runs on them.
class CPyramidUpScaleFilter : public CFilter, public CGaussianPyramid2, public MaskUpScaleParams {
public:
    void SetFilterName() override;
    void RegisterParameters() override;
};

}  // namespace vkr
