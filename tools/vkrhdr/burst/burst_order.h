#pragma once

#include <vector>

namespace vkr::tool {

// What is known of one frame's brightness.
struct FrameLight {
    double fExposure = 0;  // relative light that the camera let in; 0: unknown
    double fMeanLuma = 0;  // 0 .. 255
};

struct BurstOrder {
    std::vector<int> vFrames;  // positions in the list that was given, darkest first
    bool bByExif = false;      // false: by the mean luma
};

// By EXIF where every frame has an exposure and no two are within a percent of each other, else by the mean luma; equal
// ones keep their order.
BurstOrder OrderBurst(const std::vector<FrameLight>& vLight);

// The lower middle one: 0 of 1 and 2, 1 of 3 and 4, 2 of 5 and 6.
inline int MiddleFrame(int nFrames)
{
    return (nFrames - 1) / 2;
}

}  // namespace vkr::tool
