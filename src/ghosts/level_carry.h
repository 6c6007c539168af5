#pragma once

#include "foundation/image.h"
#include "primitives/pyramid_levels.h"

namespace vkr {

// Halves src nTimes into dst; 0 times is a copy. False when there is no memory; dst is undefined.
bool HalveTimes(const CImage& src, int nTimes, bool bFilter, bool bDither, CImage& dst);

// Keeps the top left w x h pixels of image, in place. False, nothing changed, when it is smaller.
bool CropTo(CImage& image, int w, int h);

// Replaces the levels nMin .. nMax but nStart, which all others are made from: halved one by one upwards, doubled and
// cropped one by one downwards, with the carries of weights. A plain doubling knows no single row; it is taken twice.
//
//   vLevels  kMaxLevels records; level i receives the size of vSizes[i], which may be the same records
//
// False when there is no memory or the sizes are not those of one pyramid: the levels reached so far are replaced, the
// others as they were.
bool CarryToLevels(CImage* vLevels, const CImage* vSizes, int nMin, int nStart, int nMax, const PyramidParams& pyramid);
bool CarryToLevels(CShortImage* vLevels, const CImage* vSizes, int nMin, int nStart, int nMax,
                   const PyramidParams& pyramid);

}  // namespace vkr
