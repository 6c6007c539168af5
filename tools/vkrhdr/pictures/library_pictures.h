#pragma once

#include "foundation/image.h"
#include "pictures/picture_io.h"

namespace vkr::tool {

// The library's pictures as our own.

Frame FrameOf(const CYuvImage& image, bool bCrFirst = false);

// Channels nFirst .. nFirst + nCount - 1 of an interleaved picture, nCount 1 .. 3. One comes out grey; of more the
// first is blue, as in B, G, R, and a missing one 0. Signed 16-bit samples v become v / 2 + 128, clamped.
Raster ChannelsOf(const CImage& image, int nFirst, int nCount);
Raster ChannelsOf(const CShortImage& image, int nFirst, int nCount);

}  // namespace vkr::tool
