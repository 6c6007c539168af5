#pragma once

#include "parameters/parameter_record.h"

namespace vkr {

// Tone that follows the face, and the HSV forms of it: flow parameters.
// clang-format off
struct FaceToneParams {
    PARAM(bHSVStretch,        0,   1,   0, "choice",
          "tone and colour, with a face: 0 by a curve, 1 by one stretch in hue, saturation and value");
    PARAM(bHSVTone,           0,   1,   0, "flag", "hue and saturation follow the reference exposure");
    PARAM(bHSP2PTone,         0,   1,   1, "choice",
          "colours in the HSV stretch: 1 follow pixel by pixel, 0 by a model of skin");
    PARAM_LIST(nHSP2PToneWeight, 17, 0, 256, "1/256",
               "how far colours follow pixel by pixel, by the reference's value, 16 levels apart",
               0, 0, 64, 192, 256, 256, 256, 256, 256, 256, 256, 256, 256, 192, 64, 0, 0);
    PARAM(bHSVToneFace,       0,   1,   0, "flag", "bHSVTone in the face box alone; in the HSV stretch on skin alone");
    PARAM(bHSVToneSeparate,   0,   1,   0, "flag", "the face box and the rest of the picture are measured apart");
    PARAM(nHSVHLowThres,      0, 255,   5, "1/256 of a circle", "hue from which a colour is skin");
    PARAM(nHSVHHighThres,     0, 255,  20, "1/256 of a circle", "hue up to which a colour is skin");
    PARAM(nHSVHTransit,       0, 255,   2, "1/256 of a circle", "width of the fade at both ends of the hue of skin");
    PARAM(nHSVSLowThres,      0, 255,  19, "saturation", "saturation from which a colour is skin");
    PARAM(nHSVSHighThres,     0, 255, 155, "saturation", "saturation up to which a colour is skin");
    PARAM(nHSVSTransit,       0, 255,  10, "saturation", "width of the fade at both ends of the saturation of skin");
    PARAM(nHSVVLowThres,      0, 255, 120, "grey value", "value from which a colour is skin");
    PARAM(nHSVVHighThres,     0, 255, 252, "grey value", "value up to which a colour is skin");
    PARAM(nHSVVTransit,       0, 255,   5, "grey value", "width of the fade at both ends of the value of skin");
    PARAM(bHSVSmooth,         0,   1,   1, "flag", "all colours take one part of the skin's correction");
    PARAM(nHSVSmoothSize,     0,  10,   4, "n / 2^(n - 2)",
          "the part of the skin's correction that all colours take: 4 all of it, 0 grey");
    PARAM(nHSVHueChangeThres, 0,   5,   2, "1/256 of a circle", "most change of hue, either way");
};
// clang-format on

}  // namespace vkr
