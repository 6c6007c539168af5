#pragma once

#include <cstdint>
#include <string>

#include "pictures/picture_io.h"

namespace vkr::tool {

// Between R, G, B and the full-range YCbCr of JPEG, in 16.16 fixed point, rounded. Grey stays grey to the bit.

// Chroma of 2 x 2 pixels is their mean, rounded; an odd last column or row is dropped. Cb first. BurstError, with sName
// in front, for a picture below 2 x 2.
Frame FrameFromRgb(const Raster& rgb, const std::string& sName);

// Chroma is raised to full size by the triangle filter (3/4 of the nearer, 1/4 of the farther pair, each way).
Raster RgbFromFrame(const Frame& frame);

// The frame at half size: every chroma pair with the mean of its four samples of luma, rounded.
Raster HalfRgbFromFrame(const Frame& frame);

// The picture as its EXIF orientation 1 .. 8 wants to be seen; anything else leaves it as it is.
Raster TurnUpright(const Raster& raster, int nExifOrientation);

// The mean of every nFactor x nFactor pixels, rounded; what does not fill a whole cell is dropped.
Raster ScaleDown(const Raster& raster, int nFactor);

}  // namespace vkr::tool
