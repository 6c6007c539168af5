#include "commands/parameter_options.h"

#include <CLI/CLI.hpp>

namespace vkr::tool {

void DefinePreset(CLI::App& command, std::string& sPreset)
{
    command.add_option("--preset", sPreset, "photo: tuned for photos, by their size; default: the documented defaults")
        ->check(CLI::IsMember({"photo", "default"}));
}

void DefineSets(CLI::App& command, std::vector<std::string>& vSets)
{
    command.add_option("--set", vSets, "one parameter, NAME=VALUE or Filter.NAME=VALUE; may be repeated")
        ->type_name("NAME=VALUE")
        ->allow_extra_args(false);
}

void DefineParameters(CLI::App& command, ParameterChoice& choice)
{
    DefinePreset(command, choice.sPreset);
    command.get_option("--preset")->capture_default_str();
    command.add_option("--params", choice.sParams, "parameter file instead of a preset, taken as it stands")
        ->check(CLI::ExistingFile)
        ->excludes("--preset");
    DefineSets(command, choice.vSets);
}

}  // namespace vkr::tool
