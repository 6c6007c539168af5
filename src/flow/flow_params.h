#pragma once

#include "foundation/fixed_point.h"
#include "parameters/parameter_record.h"

namespace vkr {

// What the flow itself decides by: flow parameters.
// clang-format off
struct FlowParams {
    PARAM(bDebugDumpEnable,                0,   1,   0, "flag",
          "debug pictures are written as BMP, into folders that must exist");
    PARAM(bLogoEnable,                     0,   1,   1, "flag", "the logo is blended into the result");
    PARAM(bBGRProcessEnable,               0,   1,   0, "flag", "kept with the parameters, nothing reads it");
    PARAM(nGlobalAlignEnable,              0,   1,   1, "flag", "the exposures are aligned");
    PARAM(bCheckSatuEnable,                0,   1,   1, "flag",
          "what is blown out in every exposure is found, and held near white");
    PARAM(bGhostProcessEnable,             0,   1,   1, "flag", "what moved is found, and taken from one exposure");
    PARAM(bGhostRelinearizeEnable,         0,   1,   1, "flag",
          "the exposures are made to agree where something moved");
    PARAM(bContrastEnable,                 0,   1,   1, "flag", "local curves are applied to the picture");
    PARAM(bEV0HighLightWeightSuppress,     0,   1,   0, "flag", "kept with the parameters, nothing reads it");
    PARAM(nEV0HighLightWeightSuppressThre, 0, 255, 200, "grey value", "kept with the parameters, nothing reads it");
    PARAM_LIST(nGoodBrightnessTargetDropFailure, kMaxExposures, 0, 255, "grey value",
               "by exposure: replaces nGoodBrightnessTarget once alignment dropped frames",
               200, 50, 128, 128, 128, 128, 128, 128);
    PARAM(bUVOrder,                        0,   1,   0, "choice", "first chroma byte of all frames: 0 Cb, 1 Cr");
    PARAM(bAddHighFrequency,               0,   1,   1, "choice",
          "detail, where the tone follows a face: 1 goes through the curve, 0 is added behind it");
    PARAM(nSaturateThre,                   0,  16,   8, "grey values above 239",
          "lowest degree that counts as blown out");
};
// clang-format on

}  // namespace vkr
