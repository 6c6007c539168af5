#pragma once

#include "pictures/picture_io.h"

namespace vkr::tool {

struct Shift {
    int nX = 0, nY = 0;
};

// By how much one picture lies off another of the same size and one channel, in whole pixels: what stands at (x, y) of
// first stands at (x + nX, y + nY) of second. Made for pictures of different exposure, whose grey values tell nothing
// but their order. Looks up to an eighth of the longer side away, from coarse to fine; no turning, no zoom. Pictures
// without anything in common, or too small for a search, give some shift in that reach.
Shift FindShift(const Raster& first, const Raster& second);

// Whether two pictures, as above, lie on each other: in most ninths of the picture nothing is gained by moving one.
// Noise, flat parts and repeating structure gain nothing; a wrong place, a turn or another scene shows nearly
// everywhere.
bool LiesWell(const Raster& first, const Raster& second);

}  // namespace vkr::tool
