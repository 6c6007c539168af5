#pragma once

#include <hwy/base.h>

#include <algorithm>

namespace vkr {

// A coordinate's whole part, 0 .. nSize - 1, and fraction, below 1.
struct WarpPosition {
    int nWhole;
    float fPart;
};

// Where a warp reads along a side of nSize samples (> 0): mirrored once at each border, then clamped; not a number: 0.
static HWY_INLINE WarpPosition PositionInside(float fAt, int nSize)
{
    const float fLast = static_cast<float>(nSize - 1);
    if (fAt < 0) fAt = -fAt;
    if (fAt > fLast) fAt = 2 * fLast - fAt;
    if (!(fAt > 0)) fAt = 0;
    const int nWhole = static_cast<int>(fAt);
    // The last index of a plane wider than 2^24 may have rounded up.
    return {std::min(nWhole, nSize - 1), fAt - static_cast<float>(nWhole)};
}

}  // namespace vkr
