#pragma once

#include <vector>

#include "inspect_page.h"
#include "kept_stages.h"
#include "photo_burst.h"
#include "picture_folder.h"
#include "stage_times.h"
#include "tool_parameters.h"

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
