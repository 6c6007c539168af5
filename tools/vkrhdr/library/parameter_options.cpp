#include "library/parameter_options.h"

#include <CLI/CLI.hpp>
#include <algorithm>

#include "commands/commands.h"
#include "library/photo_preset.h"

namespace vkr::tool {

namespace {

void SetSingleValues(const ParameterOptions& options, ToolParameters& params)
{
    for (const std::string& sSet : options.vSets) params.Set(sSet);
}

}  // namespace

std::vector<std::string> ParameterOptions::SetNames() const
{
    const std::string sFlow = "CMultiExposureHDRProcessFlow.";
    std::vector<std::string> vNames;
    for (const std::string& sSet : vSets) {
        const std::string sName = sSet.substr(0, sSet.find('='));
        vNames.push_back(sName.rfind(sFlow, 0) == 0 ? sName.substr(sFlow.size()) : sName);
    }
    return vNames;
}

bool ParameterOptions::Sets(const std::string& sName) const
{
    const std::vector<std::string> vNames = SetNames();
    return std::find(vNames.begin(), vNames.end(), sName) != vNames.end();
}

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

void DefineParameters(CLI::App& command, ParameterOptions& options)
{
    DefinePreset(command, options.sPreset);
    command.get_option("--preset")->capture_default_str();
    command.add_option("--params", options.sParams, "parameter file instead of a preset, taken as it stands")
        ->check(CLI::ExistingFile)
        ->excludes("--preset");
    DefineSets(command, options.vSets);
}

ToolParameters LoadParameters(const ParameterOptions& options, LibraryLines& lines)
{
    ToolParameters params(ToolParameters::Base::kTool);
    if (!options.sParams.empty()) {
        std::string sWarning;
        params.Load(options.sParams, lines, sWarning);
        if (!sWarning.empty()) Say("%s: %s", options.sParams.c_str(), sWarning.c_str());
    }
    if (options.IsPhoto()) params.SetPhotoValues(kPhotoFileSize);
    SetSingleValues(options, params);
    return params;
}

void FitParameters(const ParameterOptions& options, const std::vector<RatioFrame>& vFrames, bool bVerbose,
                   ToolParameters& params)
{
    if (options.IsPhoto()) {
        params.SetPhotoValues({vFrames[0].pFrame->nWidth, vFrames[0].pFrame->nHeight});
        SetMeasuredRatios(vFrames, options.SetNames(), params);
    }
    SetSingleValues(options, params);
    if (bVerbose) SayRatios(vFrames, params);
}

std::string NameOf(const ParameterOptions& options)
{
    std::string sName = options.sParams.empty() ? "preset " + options.sPreset : options.sParams;
    for (const std::string& sSet : options.vSets) sName += ", " + sSet;
    return sName;
}

}  // namespace vkr::tool
