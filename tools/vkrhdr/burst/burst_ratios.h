#pragma once

#include <string>
#include <vector>

#include "library/tool_parameters.h"
#include "pictures/picture_io.h"

namespace vkr::tool {

// One frame of a burst, darkest first, as far as its light matters.
struct RatioFrame {
    const Frame* pFrame;
    std::string sName;
    double fExposure = 0;  // relative light by EXIF; 0: unknown
};

// Measures how much more light each frame got than its next darker one and sets nRatio_K, K the darker of the pair,
// brought into the parameter's range. What can not be measured stays as it is, and so does what vKept names
// ("nRatio_0"). EXIF only checks: one line on standard error when it differs by more than a stop.
void SetMeasuredRatios(const std::vector<RatioFrame>& vFrames, const std::vector<std::string>& vKept,
                       ToolParameters& params);

// The ratios as they now are, a line on standard error for each pair.
void SayRatios(const std::vector<RatioFrame>& vFrames, const ToolParameters& params);

}  // namespace vkr::tool
