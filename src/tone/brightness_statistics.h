#pragma once

#include <cstdint>

#include "foundation/image.h"
#include "tone/tone_params.h"

namespace vkr {

// What the tone stages know of a fused picture (nDim 6: base B, G, R, then their high frequencies). Only the base
// counts; it may lie outside 0 .. 255. A picture of fewer than three components is measured by its first. Rows are
// shared among the team; sums and counts have no order, so the results are the same from any number of threads.

// Brightness of one pixel. nHistStatType: 0 the largest, 1 the smallest, 2 the mean (b + g + r + 1) / 3, 3 luma
// (2 b + 9 g + 5 r + 8) / 16, both toward zero; anything else green.
int32_t PixelBrightness(int32_t b, int32_t g, int32_t r, int32_t nHistStatType);

// Mean over the picture of the brightness clipped to 0 .. 255, truncated; 0 for an empty picture.
int32_t GetMeanBrightness(const CShortImage& image, int32_t nHistStatType);

// Bins of the histogram for these limits: nMaxHighLevel - nMinLowLevel + 1, and 0 where that is negative.
int32_t BrightnessBins(const ToneParams& params);

// Adds the picture to pHist, BrightnessBins(params) counters that the caller has zeroed: brightness v to bin
// v - nMinLowLevel, what lies beyond an end to the bin of that end. Does nothing without bins. False when there was no
// memory; pHist is untouched then.
bool GetBrightnessHistogram(const CShortImage& image, const ToneParams& params, int32_t* pHist);

}  // namespace vkr
