#pragma once

#include <algorithm>
#include <cstdint>

#include "support/host_picture.h"

namespace vkr {

// Exposure nExposure of nExposureNum of a drawn scene: a bright and a dark half, a slope, fine texture, two stops
// between frames. The same bytes on every machine: integers alone.
inline HostPicture DrawExposure(int w, int h, int nExposure, int nExposureNum, int nPad = 0)
{
    HostPicture picture(w, h, nPad);
    const int nShift = 2 * (nExposureNum - 1 - nExposure);
    for (int y = 0; y < h; ++y) {
        for (int x = 0; x < w; ++x) {
            const uint32_t nHash = (static_cast<uint32_t>(x) * 2654435761U) ^ (static_cast<uint32_t>(y) * 40503U);
            const int nTexture = static_cast<int>((nHash >> 13) & 15) + ((x / 3 + y / 5) % 2) * 12;
            const int nRadiance = (x * 2 < w ? 40 : 1600) + 800 * y / h + nTexture * (x * 2 < w ? 1 : 24);
            picture.Luma(x, y) = static_cast<uint8_t>(std::min(255, 8 + (nRadiance >> std::min(nShift, 12))));
        }
    }
    for (int y = 0; y < h / 2; ++y) {
        for (int x = 0; x < w / 2; ++x) {
            picture.Chroma(2 * x, y) = static_cast<uint8_t>(118 + 20 * x / (w / 2));
            picture.Chroma(2 * x + 1, y) = static_cast<uint8_t>(138 - 20 * y / (h / 2));
        }
    }
    return picture;
}

}  // namespace vkr
