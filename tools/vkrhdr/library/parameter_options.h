#pragma once

#include <string>
#include <vector>

#include "burst/burst_ratios.h"
#include "library/tool_parameters.h"
#include "pictures/picture_size.h"

namespace CLI {
class App;
}

namespace vkr::tool {

// How the user asks for parameters: a preset or a file, and single values on top.
struct ParameterOptions {
    std::string sPreset = "photo", sParams;
    std::vector<std::string> vSets;

    bool IsPhoto() const { return sParams.empty() && sPreset == "photo"; }

    // The parameters that the single values name, the flow's own without a filter in front.
    std::vector<std::string> SetNames() const;
    bool Sets(const std::string& sName) const;
};

void DefineParameters(CLI::App& command, ParameterOptions& options);
void DefinePreset(CLI::App& command, std::string& sPreset);
void DefineSets(CLI::App& command, std::vector<std::string>& vSets);

// Base and file. Refuses all wrong use (UsageError), so that a user hears of it before a picture is read; what the file
// makes the library say goes to standard error. lines must be what holds the library's lines at present.
ToolParameters LoadParameters(const ParameterOptions& options, LibraryLines& lines);

// What depends on the pictures, where the preset has any of it: their size, and the light that each got. The single
// values go over all. With bVerbose the exposure ratios are told on standard error.
void FitParameters(const ParameterOptions& options, const std::vector<RatioFrame>& vFrames, bool bVerbose,
                   ToolParameters& params);

// "preset photo", or the path of the file; with what stands on top.
std::string NameOf(const ParameterOptions& options);

}  // namespace vkr::tool
