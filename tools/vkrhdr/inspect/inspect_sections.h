#pragma once

#include <vector>

#include "burst/photo_burst.h"
#include "inspect/inspect_page.h"
#include "inspect/picture_folder.h"
#include "library/kept_stages.h"
#include "library/stage_times.h"
#include "library/tool_parameters.h"

namespace vkr::tool {

// All that is known of one burst once it is fused.
struct InspectedBurst {
    const PhotoBurst& burst;
    const ToolParameters& params;
    const KeptStages& stages;
    const std::vector<AlignedPair>& vPairs;
    const Frame& result;
};

// The page's sections in the order of the stages; their pictures go into folder. A section without anything to show
// says why.
std::vector<PageSection> StageSections(const InspectedBurst& inspected, PictureFolder& folder);

PageSection TimesSection(const StageTimes& times);
PageSection ParametersSection(const ToolParameters& params);

}  // namespace vkr::tool
