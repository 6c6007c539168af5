#pragma once

#include <cstdint>

namespace vkr {

// Tone that follows the face, and the HSV forms of it: flow parameters.
struct FaceToneParams {
    int32_t bHSVStretch = 0;
    int32_t bHSVTone = 0;
    int32_t bHSP2PTone = 0;
    int32_t nHSP2PToneWeight[17] = {};  // 1/256
    int32_t bHSVToneFace = 0;
    int32_t bHSVToneSeparate = 0;
    int32_t nHSVHLowThres = 0, nHSVHHighThres = 0, nHSVHTransit = 0;  // skin: hue
    int32_t nHSVSLowThres = 0, nHSVSHighThres = 0, nHSVSTransit = 0;  // skin: saturation
    int32_t nHSVVLowThres = 0, nHSVVHighThres = 0, nHSVVTransit = 0;  // skin: value
    int32_t bHSVSmooth = 0;
    int32_t nHSVSmoothSize = 0;
    int32_t nHSVHueChangeThres = 0;
};

}  // namespace vkr
