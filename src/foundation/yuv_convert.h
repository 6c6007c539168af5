#pragma once

#include "foundation/image.h"

namespace vkr {

// 4:2:0 frame to a three-channel picture of its size: luma, first chroma byte, second chroma byte. nMode not 0 repeats
// each pair over its 2 x 2 pixels; mode 0 interpolates 3:1 both ways, rounded inside the picture and truncated on the
// first and the last row. False, dst empty, when there is no memory. The rows are independent of the team.
bool ConvertYuvToImage(const CYuvImage& src, CImage& dst, int nMode);

// A three-channel picture to a 4:2:0 frame of its (even) size: each chroma byte is the mean of 2 x 2 pixels, the
// dropped remainder of the quotient by 4 carried to the next block, along the raster of blocks, one carry per component
// for the whole picture (serial). False, dst empty, when there is no memory.
bool ConvertImageToYuv(CYuvImage& dst, const CImage& src);

}  // namespace vkr
