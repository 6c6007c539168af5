#pragma once

#include <vector>

#include "picture_io.h"
#include "scene/demo_scene.h"

namespace vkr::tool {

// The drawn scene as frames of our own, darkest first. BurstError when there is no memory or a parameter is refused.
std::vector<Frame> DrawBurst(const SceneParams& params);

}  // namespace vkr::tool
