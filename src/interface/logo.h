#pragma once

#include "foundation/image.h"

namespace vkr {

constexpr int kLogoWidth = 415, kLogoHeight = 141;
constexpr int kLogoPlace = 50;  // from the picture's left and upper edge

// The logo's grey values, kLogoHeight rows of kLogoWidth, 27 .. 255, 255 around the drawing. Read-only.
const uint8_t* LogoBitmap();

// Blends the logo into the luma of a finished picture: the mean of both, cut off. It ends at the picture's right and
// lower edge; a picture of 50 rows or columns or less has no room for it. Chroma stays.
void BlendLogo(CYuvImage& picture);

}  // namespace vkr
