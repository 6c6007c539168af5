#pragma once

#include <cstdint>

#include "tone/face_tone_params.h"

namespace vkr {

// Weights by hue, saturation or value, 256 = 1.0. Building one prints its entries.
struct HsvWeights {
    int32_t vWeight[256];
};

// How far the reference's hue and saturation count, by its value: the knots of nHSP2PToneWeight, 16 levels apart, and
// straight lines between them. All 0, and nothing printed, without bHSVTone.
void BuildGuideWeights(const FaceToneParams& params, HsvWeights& weights);

// How far a colour is skin: the product of the three.
struct SkinWeights {
    HsvWeights hue, saturation, value;
};

// Each is a trapezium over its two bounds, fading over its transition to either side of them. A transition of 0 leaves
// 0 where it would fade. The fading of hue wraps around at 256 below its lower bound, and divides by the transition of
// saturation: wanted. With other bounds than skin has a weight may come out above 256.
void BuildSkinWeights(const FaceToneParams& params, SkinWeights& weights);

}  // namespace vkr
