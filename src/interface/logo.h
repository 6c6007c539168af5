#pragma once

#include "foundation/image.h"

namespace vkr {

// Blends the logo into the luma of a finished picture, 50 pixels from its left and its upper edge.
void BlendLogo(CYuvImage& picture);

}  // namespace vkr
