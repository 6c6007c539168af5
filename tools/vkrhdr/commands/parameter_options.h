#pragma once

#include <string>
#include <vector>

#include "library/parameter_choice.h"

namespace CLI {
class App;
}

namespace vkr::tool {

void DefineParameters(CLI::App& command, ParameterChoice& choice);
void DefinePreset(CLI::App& command, std::string& sPreset);
void DefineSets(CLI::App& command, std::vector<std::string>& vSets);

}  // namespace vkr::tool
