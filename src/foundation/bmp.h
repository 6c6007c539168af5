#pragma once

#include "foundation/image.h"

namespace vkr {

// Debug dumps: 24-bit BMP of a three-channel picture, samples as they stand (B, G, R expected). bBottomUp is the
// ordinary row order of a BMP. False if the file can not be written (nothing creates folders) or the picture is empty;
// callers go on.
bool SaveBmp(const CImage& image, const char* pPath, bool bBottomUp);

// The same for a one-channel picture, each value written three times; bottom-up.
bool SaveBmpGray(const CImage& image, const char* pPath);

}  // namespace vkr
