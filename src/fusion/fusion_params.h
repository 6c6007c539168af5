#pragma once

#include "fusion/edge_compensate_params.h"
#include "parameters/parameter_record.h"

namespace vkr {

// Corrections of the Laplacian levels before they are blended: flow parameters.
// clang-format off
struct FusionParams : EdgeCompensateParams {
    PARAM(bShadowDetailEnhanceEnable, 0, 1, 1, "flag", "detail in the shadows is boosted");
    PARAM_LIST(nSharpenYThList, 8, 0, 255, "grey value",
               "nodes of the boost in shadows: luma", 16, 32, 48, 64, 80, 96, 112, 128);
    PARAM_LIST(nSharpenYWList, 8, 0, 128, "Q4",
               "nodes of the boost in shadows: gain at nSharpenYThList", 32, 29, 26, 24, 21, 18, 16, 16);
    PARAM_LIST(nLevelSharpen, 8, 0, 16, "Q4",
               "by pyramid level: strength of the boost in shadows", 16, 16, 12, 8, 4, 2, 0, 0);
    PARAM(bExtendHL,                  0, 1, 1, "flag", "highlights of a single exposure are raised");
    PARAM_LIST(nExtendHLSatuThre, 8, 0, 255, "grey value",
               "by pyramid level: smallest sample from which highlights are raised",
               224, 224, 224, 224, 224, 224, 224, 224);
    PARAM_LIST(nExtendHLSlope, 8, 0, 1024, "grey values",
               "by pyramid level: what is added up to white where highlights are raised",
               64, 64, 64, 64, 64, 64, 64, 64);
};
// clang-format on

}  // namespace vkr
