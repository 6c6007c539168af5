#pragma once

#include <vector>

#include "burst/burst_ratios.h"
#include "pictures/picture_io.h"
#include "scene/demo_scene.h"

namespace vkr::tool {

// The drawn scene as frames of our own, darkest first. BurstError when there is no memory or a parameter is refused.
// Opens and closes the library's pool: no engine may live meanwhile.
std::vector<Frame> DrawBurst(const SceneParams& params);

// They must live as long. Their names are their numbers.
std::vector<RatioFrame> RatioFramesOf(const std::vector<Frame>& vFrames);

}  // namespace vkr::tool
