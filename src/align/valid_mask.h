#pragma once

#include "algebra/matrix.h"
#include "foundation/image.h"

namespace vkr {

// Allocates mask, nWidth x nHeight of one channel, 255 where the projection of the rectangle (0, 0) .. (nWidth - 1,
// nHeight - 1) through homography (pixel coordinates) covers the pixel, row by row one interval of columns, 0
// elsewhere. The same samples become 0 in referenceMask, which has its own size: what lies outside it is left out.
//
// A pixel on a right edge is covered, one on a left edge is not: the interval begins one column after the crossing. A
// rectangle that comes out turned over leaves nothing valid. A corner behind the plane (negative third coordinate)
// counts where its quotient lies; a corner that does not come out finite leaves nothing valid.
//
// False when a size is not positive, the matrix is not 3 x 3 or there was no memory; referenceMask is then as it was.
// Same bytes from any number of threads.
bool CutValidRegion(int nWidth, int nHeight, const CMatrix& homography, CImage& mask, CImage& referenceMask);

}  // namespace vkr
