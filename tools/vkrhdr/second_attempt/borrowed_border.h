#pragma once

#include <array>

#include "pictures/picture_io.h"
#include "pictures/picture_shift.h"

namespace vkr::tool {

// Row by row; takes points of one picture to points of another, the origin at the pictures' centre.
using PlaneMap = std::array<double, 9>;

// The map back, up to a factor. Of one that has none: anything.
PlaneMap InverseOf(const PlaneMap& map);

// Fills what a frame that was moved by shift does not show itself from its neighbour, another exposure of that size:
// toNeighbour tells where, and the neighbour's levels, plane by plane, become the frame's of the same rank, as both
// show them where they overlap. To later stages nothing seems to have moved there, and what they align by stands where
// the rest says.
void BorrowBorder(Frame& frame, Shift shift, const Frame& neighbour, const PlaneMap& toNeighbour);

}  // namespace vkr::tool
