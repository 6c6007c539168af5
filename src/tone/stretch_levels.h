#pragma once

#include <cstdint>

#include "foundation/image.h"
#include "tone/tone_params.h"

namespace vkr {

// Moves the black and the white level toward those of a picture.
//
//   pHist        BrightnessBins(params) counters, bin 0 for brightness nMinLowLevel
//   nPixelCount  pixels of the picture
//
// The level of each side is where the pixels beyond it make up nDarkPercetage (nHLPercetage) / 65536 of the picture,
// within its limits; a side whose keep-detail flag is off aims at 0 (255). nLowLevelStep and nHighLevelStep, Q4, say
// how much of the way one burst goes, 16 all of it. Every setting of the parameters is served, limits in wrong order as
// well.
void GetStretchLevels(const int32_t* pHist, int64_t nPixelCount, const ToneParams& params, StretchLevels& levels);

// One of the keep-detail flags is set: the levels follow the pictures.
bool KeepsDetail(const ToneParams& params);

// Moves the levels by the histogram of a fused picture (nDim 6). False, levels untouched, when there was no memory.
bool FollowStretchLevels(const CShortImage& fused, const ToneParams& params, StretchLevels& levels);

}  // namespace vkr
