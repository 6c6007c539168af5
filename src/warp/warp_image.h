#pragma once

#include "algebra/matrix.h"
#include "foundation/image.h"

namespace vkr {

// Fills dst, of the size it has, with src as homography shows it: each pixel by itself, unlike the warp of frames.
//
//   src, dst     two pictures with nDim 3, any two sizes
//   homography   3 x 3, takes pixels of dst to pixels of src
//   threads      the team shares the rows; same bytes from any number
//
// Position and blend are worked out in float and the blend is truncated; a position outside is mirrored once at each
// border and then clamped, one that is not a number is sample 0. The identity copies. False, dst untouched, when a
// picture is empty or not of nDim 3, or the matrix is not 3 x 3.
bool WarpImage(const CImage& src, CImage& dst, const CMatrix& homography);

}  // namespace vkr
