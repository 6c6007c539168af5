#pragma once

#include "foundation/image.h"

namespace vkr {

// The working pictures of a burst, B, G, R of one size, darkest first. A view: whoever makes it keeps the pictures.
struct WorkBurst {
    const CImage* vFrames;
    int nExposureNum;  // 1 .. kMaxExposures
    int nReference;    // the exposure that is right for most of the scene, 0 .. nExposureNum - 1
};

}  // namespace vkr
