#pragma once

#include "foundation/image.h"

namespace vkr {

// Debug pictures of a fused picture (nDim 6) before its tone: Dump/FusionWithHighFeq.bmp, base and high frequencies
// added and clipped to 8 bits, and Dump/FusionNoHighFeq.bmp, the base alone. out, nDim 3 and of the same size, is
// overwritten.
void DumpFused(const CShortImage& fused, CImage& out);

}  // namespace vkr
