#pragma once

#include <cstdint>

#include "foundation/image.h"
#include "tone/face_curve.h"
#include "tone/hsv_difference.h"
#include "tone/hsv_weight_tables.h"
#include "tone/tone_curve.h"

namespace vkr {

// The two ways from a fused picture (nDim 6) to an 8-bit picture by hue, saturation and value: both make a colour from
// the base, add the high frequencies of each component and clip to 0 .. 255. Pictures are of one size and filled; rows
// are shared among the team, same bytes from any number of threads.

// By the reference: hue (around the circle) and saturation are blended with those of the reference (B, G, R) by the
// weight of its value, the value goes through toneLut, clamped to the levels. A base below 0 counts as 0; one above 255
// keeps its value.
void ReferenceGuidedPass(const CShortImage& fused, const CImage& reference, const HsvWeights& weights,
                         const ToneLut& toneLut, const StretchLevels& levels, CImage& out);

// What the skin-model pass corrects by.
struct SkinModel {
    HSVFix backFix, faceFix;  // for what is no skin, and for skin
    int32_t nMostHueShift;    // either way
    SkinWeights weights;
};

// By a model of skin: how much of each pair applies is the product of the three weights of a pixel, in hsv (nDim 3) and
// excess (nDim 1, what its value lies above 255). The value goes through the gamma and the tone curve; a pixel whose
// saturation becomes 0 is grey at the value it had before them.
void SkinModelPass(const CShortImage& fused, const CImage& hsv, const CImage& excess, const SkinModel& model,
                   const GammaLut& gammaLut, const ToneLut& toneLut, const StretchLevels& levels, CImage& out);

}  // namespace vkr
