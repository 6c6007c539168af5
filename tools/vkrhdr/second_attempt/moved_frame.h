#pragma once

#include "pictures/picture_io.h"
#include "pictures/picture_shift.h"

namespace vkr::tool {

// The frame with its picture moved: what stood at (x, y) stands at (x + nX, y + nY), luma and chroma together and
// without interpolation. What comes in from outside is the picture mirrored at its border samples. nX and nY are even.
Frame MovedFrame(const Frame& frame, Shift shift);

}  // namespace vkr::tool
