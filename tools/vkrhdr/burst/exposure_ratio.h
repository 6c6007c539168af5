#pragma once

#include "ghosts/relinearize.h"
#include "pictures/picture_io.h"

namespace vkr::tool {

// How many times as much light as the darker picture the brighter one got, in Q4, rounded: the median of
// linear(brighter) / linear(darker) over the samples that are well exposed in both, linear being the display curve. So
// it is the ratio that makes the two agree when they are re-linearised; a camera's own tone curve may take it far from
// the ratio of the exposure times.
//
//   darker, brighter  R, G, B of one size, the frames at half size. They may lie apart by a whole shift of up to an
//                     eighth of the longer side, which is found first.
//
// 0 when fewer than one sample in 1024 is well exposed in both.
int MeasureExposureRatio(const Raster& darker, const Raster& brighter, const DisplayCurve& curve);

}  // namespace vkr::tool
