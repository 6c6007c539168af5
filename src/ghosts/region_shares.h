#pragma once

#include <cstdint>

#include "foundation/image.h"
#include "foundation/stage_dumps.h"
#include "primitives/label_image.h"

namespace vkr {

// How much of a pixel each exposure was chosen for: per exposure the sum, over the regions that chose it, of their
// maps. A region's map is 128 inside it; nSmoothIter rounds of the 5 x 5 low-pass, with its carry, soften the outer
// side of its border alone.
//
//   labels   0 .. nRegions
//   pChosen  exposure of each region, by label - 1, below nExposureNum
//   shares   takes the size of labels, nDim nExposureNum
//   dumps    the maps as BMP under ClusterDump/
//
// Each region is worked on within its own surroundings, so the memory does not grow with the regions. One thread. False
// when there is no memory; shares is undefined then.
bool ShareRegions(const CLabelImage& labels, const int32_t* pChosen, int nRegions, int nExposureNum, int nSmoothIter,
                  const StageDumps& dumps, CShortImage& shares);

// One region that is all of the picture, and nothing else.
bool ShareWholePicture(int w, int h, int nChosen, int nExposureNum, CShortImage& shares);

}  // namespace vkr
