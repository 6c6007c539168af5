#pragma once

#include "face/face_box.h"
#include "face/face_box_record.h"

namespace vkr {

// A box of the upright picture (see RotateUpright) in coordinates of the picture before it was turned, whose sides are
// nWidth x nHeight. Corners that a turn exchanges lose their fraction and come to lie one pixel beyond the place that
// the turn took them from: part of the result. A corner without a number counts as 0, one too large for 32 bits as the
// nearest that is not. nOrientation 0 changes nothing.
FaceBoxRecord MapToUnturned(const FaceBoxRecord& box, int nOrientation, int nWidth, int nHeight);

// Corners cut to whole pixels, toward zero.
FaceBox WholePixels(const FaceBoxRecord& box);

// face becomes box when box is wide or high enough (a side greater than nMinSide) and its width plus height greater
// than face's. Of equal ones the first stays.
void TakeLarger(const FaceBox& box, int nMinSide, FaceBox& face);

}  // namespace vkr
