#pragma once

#include "foundation/image.h"

namespace vkr {

// Saturation degree of each pixel of the darkest working picture (B, G, R): the smallest of the three minus 239, 0
// where that is below nSaturateThre or not positive; so 0 or nSaturateThre .. 16. What is blown out in the darkest
// exposure is blown out in every one. mask takes the size of darkest, nDim 1. False when there is no memory.
bool GenerateSatuMask(const CImage& darkest, int nSaturateThre, CImage& mask);

}  // namespace vkr
