#pragma once

#include "foundation/image.h"

namespace vkr {

// Debug pictures of the fusion under FusionDump/, samples clamped to 0 .. 255, nDim 3. Where the folder does not exist
// nothing is written, and nothing is reported.

// The fused picture of a level, and the doubled one that it was added to.
void DumpFused(const CShortImage& fused, int nLevel);
void DumpFusedUp(const CShortImage& up, int nLevel);

// Level 0, whose two parts are never added: their sum, up cropped to the detail's size, and up.
void DumpFinestLevel(const CShortImage& up, const CShortImage& detail);

}  // namespace vkr
