#pragma once

#include <vector>

#include "burst/photo_burst.h"
#include "library/library_lines.h"
#include "library/stage_listeners.h"
#include "library/stage_times.h"
#include "library/tool_parameters.h"

namespace vkr::tool {

// What came of one run of the library.
struct RenderedBurst {
    Frame result;                     // size and chroma order of the frames
    std::vector<AlignedPair> vPairs;  // what alignment made of neighbours, darkest pair first; empty without alignment
    StageTimes times;
};

// The burst through the library once, with nothing of an earlier run left in it. Takes the process's one engine and its
// one stage probe: no Engine and no StageListeners may live meanwhile.
//
//   vListeners  who looks on between the stages; each is told first that a render begins. What one throws is thrown
//               here, once the library is done.
//   lines       what holds the library's lines at present; its times start anew
//
// BurstError with the library's words when it refuses.
RenderedBurst RenderBurst(const PhotoBurst& burst, const ToolParameters& params,
                          const std::vector<StageListener*>& vListeners, LibraryLines& lines);

}  // namespace vkr::tool
