#pragma once

#include <cstdint>

#include "foundation/fixed_point.h"
#include "primitives/planar_rows.h"

namespace vkr {

// The weights of a run of pixels (at most kRunPixels), one plane per exposure, with their sums.
struct BlendWeights {
    int nCount, nExposureNum;
    uint8_t vPlanes[kMaxExposures][kRunPixels];
    int32_t vSums[kRunPixels];
    float vReciprocals[kRunPixels];  // of the sums
};

// pWeights: nExposureNum bytes per pixel, 0 .. 255, nExposureNum 1 .. 8.
void TakeWeights(const uint8_t* pWeights, int nCount, int nExposureNum, BlendWeights& weights);

// Weighted mean of one channel of the exposures: the sum of weight * sample divided by the sum of the weights,
// truncated toward zero; 0 where the weights sum to 0. vPlanes holds one plane of samples per exposure, pDst overlaps
// none.
//
// Three exposures sum in 32 bits. Any other number sums in a 16-bit accumulator that wraps, and divides what it then
// holds, read as signed: means of detail beyond 16 bits come out wrong there, and results rest on it. Any number of
// threads, on different destinations. Both forms give the same bytes; the plain one needs no sums and reciprocals.
void BlendWeightedRun(const BlendWeights& weights, const int16_t* const* vPlanes, int16_t* pDst);
void BlendWeightedRunScalar(const BlendWeights& weights, const int16_t* const* vPlanes, int16_t* pDst);

// One pixel of nExposureNum samples and weights.
int16_t BlendWeightedPixel(const int16_t* pSamples, const uint8_t* pWeights, int nExposureNum);

}  // namespace vkr
