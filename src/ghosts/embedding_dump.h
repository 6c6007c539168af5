#pragma once

#include "foundation/image.h"
#include "primitives/label_image.h"

namespace vkr {

// Debug pictures of the ghost embedding under GhostDump/ and ClusterDump/. Where the folders do not exist nothing is
// written, and nothing is reported.

void DumpStartFrame(const CImage& frame, int nExposure);

// Labels spread over the grey values, the background black.
void DumpLabels(const CLabelImage& labels, int nRegions, const char* pName);

// The map of region nRegion, which covers a w x h picture from (x, y) on and is 0 elsewhere.
void DumpRegionMap(const CShortImage& map, int x, int y, int w, int h, int nRegion, const char* pTail);

// Every channel of the coefficient levels nMin .. nMax as a picture.
void DumpEdgeCoefs(const CShortImage* vCoefs, int nMin, int nMax);

}  // namespace vkr
