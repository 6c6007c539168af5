#pragma once

#include <string>
#include <vector>

#include "burst/burst_ratios.h"
#include "library/library_lines.h"
#include "library/tool_parameters.h"
#include "pictures/remarks.h"

namespace vkr::tool {

// Which parameters are wished: a preset or a file, and single values on top.
struct ParameterChoice {
    std::string sPreset = "photo";   // or default; not read where there is a file
    std::string sParams;             // path of a parameter file; empty: none
    std::vector<std::string> vSets;  // as ToolParameters::Set takes them, later ones over earlier ones

    bool IsPhoto() const { return sParams.empty() && sPreset == "photo"; }

    // The parameters that the single values name, the flow's own without a filter in front.
    std::vector<std::string> SetNames() const;
    bool Sets(const std::string& sName) const;
};

// Base and file. Refuses all wrong use (UsageError), so that a user hears of it before a picture is read; what the file
// makes the library say is a remark. lines must be what holds the library's lines at present.
ToolParameters LoadParameters(const ParameterChoice& choice, LibraryLines& lines, Remarks& remarks);

// What depends on the pictures, where the preset has any of it: their size, and the light that each got. The single
// values go over all. Tells the exposure ratios as they then are.
//
//   vFrames   1 or more of one size, darkest first
//   params    as LoadParameters left them
void FitParameters(const ParameterChoice& choice, const std::vector<RatioFrame>& vFrames, Remarks& remarks,
                   ToolParameters& params);

// The name of the ratio between frames k and k + 1 among the parameters, "nRatio_0".
std::string RatioName(size_t k);

// "preset photo", or the path of the file; with what stands on top.
std::string NameOf(const ParameterChoice& choice);

}  // namespace vkr::tool
