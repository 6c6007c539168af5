#pragma once

#include <cstdint>

#include "tone/tone_params.h"

namespace vkr {

// Output value by input value, 0 .. 255.
struct GammaLut {
    int32_t vValue[256];
};

// The curve that brings the mean brightness back after a stretch: the identity, unless bBrightnessPRSV is set and the
// stretch has darkened the mean (both taken into 1 .. 255). Then a power curve that takes nOutMean to nInMean, gamma
// within 1.0 .. nMaxGamma / 100, and no value more than doubled, so that the deepest shadows are not lifted. In 32-bit
// floats, the same bits on every machine. True if the curve is applied.
bool BuildGammaLut(int32_t nInMean, int32_t nOutMean, const ToneParams& params, GammaLut& gammaLut);

// The same curve for the HSV stretch, which makes a dark picture brighter but leaves a bright one: nOutMean also has to
// lie below nOutGammaYThres, and a gamma below 1.0 leaves the identity. Means 1 .. 255.
bool BuildBoostLut(int32_t nInMean, int32_t nOutMean, const ToneParams& params, GammaLut& gammaLut);

}  // namespace vkr
