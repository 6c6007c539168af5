#pragma once

#include <cstdint>

namespace vkr {

// Tone that follows the face, and the HSV forms of it: flow parameters.
struct FaceToneParams {
    int32_t bHSVStretch = 0;            // HSVStretchTone in the place of FaceToneStretch
    int32_t bHSVTone = 0;               // hue and saturation follow the reference
    int32_t bHSP2PTone = 0;             // HSVStretchTone: pixel by pixel, else by a model of skin
    int32_t nHSP2PToneWeight[17] = {};  // 1/256, by value
    int32_t bHSVToneFace = 0;           // in the face box alone
    int32_t bHSVToneSeparate = 0;       // face and picture are measured apart
    int32_t nHSVHLowThres = 0, nHSVHHighThres = 0, nHSVHTransit = 0;  // skin: hue
    int32_t nHSVSLowThres = 0, nHSVSHighThres = 0, nHSVSTransit = 0;  // skin: saturation
    int32_t nHSVVLowThres = 0, nHSVVHighThres = 0, nHSVVTransit = 0;  // skin: value
    int32_t bHSVSmooth = 0;                                           // a part of the skin's correction for every pixel
    int32_t nHSVSmoothSize = 0;                                       // which part
    int32_t nHSVHueChangeThres = 0;                                   // most change of hue either way
};

}  // namespace vkr
