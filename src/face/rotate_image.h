#pragma once

#include "foundation/image.h"

namespace vkr {

// src turned upright by how the frames lie: W x H are the sides of src, (x, y) a pixel of dst.
//
//   nOrientation 1   H x W, from (y, H - 1 - x)
//   nOrientation 2   W x H, from (W - 1 - x, H - 1 - y)
//   nOrientation 3   H x W, from (W - 1 - y, x)
//
// src has nDim 3 and is not dst. The team shares the rows of src; same bytes from any number of threads. False, dst
// empty or untouched, when there was no memory, src is empty or the orientation is another one.
bool RotateUpright(const CImage& src, int nOrientation, CImage& dst);

}  // namespace vkr
