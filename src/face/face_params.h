#pragma once

#include "parameters/parameter_record.h"

namespace vkr {

// Which faces count and how their levels are measured: flow parameters.
// clang-format off
struct FaceParams {
    PARAM(nBrightDarkFaceThres,       0, 1000, 150, "grey values",
          "spread of a face's levels, over B, G, R, above which its tone is left alone");
    PARAM(nAIFaceHeightWidthThres,    0, 4000, 100, "half-size pixels",
          "a face that counts is wider or higher than this");
    PARAM(nFaceHighCombineWeight,     0,  256,  85, "1/256",
          "a face's top level: from the middle (0) to the greatest (256) of B, G, R");
    PARAM_LIST(nFaceHighThres, 3, 0, 255, "grey value",
               "most that the top level of a face may be: blue, green, red", 220, 200, 200);
    PARAM_LIST(nFaceLowThres, 3, 0, 255, "grey value",
               "least that the top level of a face may be: blue, green, red", 120, 100, 100);
    PARAM(nFaceHistDropHighLightRate, 0,  100,  10, "percent", "pixels of a face that are left out at the bright end");
    PARAM(nFaceHistDropLowLightRate,  0,  100,  10, "percent", "pixels of a face that are left out at the dark end");
};
// clang-format on

}  // namespace vkr
