#pragma once

#include <string>
#include <vector>

#include "picture_size.h"
#include "tool_parameters.h"

namespace CLI {
class App;
}

namespace vkr::tool {

// How the user asks for parameters: a preset or a file, and single values on top.
struct ParameterOptions {
    std::string sPreset = "photo", sParams;
    std::vector<std::string> vSets;
};

void DefineParameters(CLI::App& command, ParameterOptions& options);
void DefinePreset(CLI::App& command, std::string& sPreset);
void DefineSets(CLI::App& command, std::vector<std::string>& vSets);

// Base and file. Refuses all wrong use (UsageError), so that a user hears of it before a picture is read; what the file
// makes the library say goes to standard error. lines must be what holds the library's lines at present.
ToolParameters LoadParameters(const ParameterOptions& options, LibraryLines& lines);

// What depends on the pictures' size, where the preset has any of it, and the single values over all.
void FitParameters(const ParameterOptions& options, Size size, ToolParameters& params);

// "preset photo", or the path of the file; with what stands on top.
std::string NameOf(const ParameterOptions& options);

}  // namespace vkr::tool
