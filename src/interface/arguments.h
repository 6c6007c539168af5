#pragma once

#include "foundation/image.h"
#include "vkrHdr.h"

namespace vkr {

// The host's arguments, each checked once. A refused one gives false and one line that names it and its value; pCall is
// the name of the exported function.

// A picture record: planes, format, size (even, 2 .. 16384) and pitches.
bool CheckFrame(const char* pCall, const vkrHdrFrame* pFrame);

// Counts of a burst against the filled slots, and the output's size against slot 0.
bool CheckBurst(const CYuvImage* vSlots, int32_t nExposureNum, int32_t nReferenceExposure, const vkrHdrFrame* pOut);

}  // namespace vkr
