#include <CLI/CLI.hpp>

#include "commands/commands.h"
#include "commands/parameter_options.h"
#include "library/parameter_list.h"
#include "library/photo_preset.h"
#include "pictures/tool_error.h"

namespace vkr::tool {

namespace {

// What a person who names parameters gets without a preset is what vkrhdr fuse takes without one.
bool IsPhoto(const ParamsOptions& options)
{
    const bool bExplains = !options.vNames.empty() && !options.bJson && !options.bShipped;
    return options.sPreset == "photo" || !options.sForSize.empty() || (options.sPreset.empty() && bExplains);
}

bool IsDefault(const ParamsOptions& options)
{
    return options.bShipped || options.sPreset == "default";
}

Size PhotoSize(const ParamsOptions& options)
{
    return options.sForSize.empty() ? kPhotoFileSize : ParseSize(options.sForSize, "--for");
}

std::string PresetName(const ParamsOptions& options)
{
    if (IsDefault(options)) return "default";
    if (!IsPhoto(options)) return "registered";
    const Size size = PhotoSize(options);
    return "photo, " + std::to_string(size.nWidth) + "x" + std::to_string(size.nHeight);
}

ToolParameters ParametersAskedFor(const ParamsOptions& options)
{
    const bool bNoDumps = IsPhoto(options) || IsDefault(options);
    ToolParameters params(bNoDumps ? ToolParameters::Base::kShipped : ToolParameters::Base::kRegistered);
    if (IsPhoto(options)) params.SetPhotoValues(PhotoSize(options));
    for (const std::string& sSet : options.vSets) params.Set(sSet);
    return params;
}

std::string Described(const ParamsOptions& options, ToolParameters& params)
{
    const std::vector<ListedParameter> vAll = ListParameters(params);
    std::vector<ListedParameter> vNamed;
    for (const std::string& sName : options.vNames) {
        const std::vector<ListedParameter> vFound = FindListed(vAll, sName);
        vNamed.insert(vNamed.end(), vFound.begin(), vFound.end());
    }
    if (options.bJson) return ParametersAsJson(options.vNames.empty() ? vAll : vNamed, PresetName(options));
    std::string sText;
    for (const ListedParameter& parameter : vNamed) sText += ExplainParameter(parameter, PresetName(options));
    return sText;
}

bool Write(const std::string& sText)
{
    return std::fputs(sText.c_str(), stdout) >= 0 && std::fflush(stdout) == 0;
}

}  // namespace

CLI::App* DefineParams(CLI::App& app, ParamsOptions& options)
{
    CLI::App* pCommand = app.add_subcommand(
        "params", "Prints a parameter file with every parameter on standard output, or explains some of them.");
    pCommand->add_option("names", options.vNames, "what to explain: NAME or Filter.NAME")->type_name("NAME");
    pCommand->add_flag("--json", options.bJson, "for programs: ranges, defaults, values, units and meanings");
    DefinePreset(*pCommand, options.sPreset);
    pCommand->add_option("--for", options.sForSize, "WxH: the photo preset for pictures of that size");
    DefineSets(*pCommand, options.vSets);
    pCommand
        ->add_flag("--shipped", options.bShipped, "what params/default.txt holds, as --preset default: no debug files")
        ->excludes("--preset")
        ->excludes("--for");
    return pCommand;
}

void RunParams(const ParamsOptions& options)
{
    if (IsPhoto(options) && IsDefault(options)) {
        throw UsageError("--for is of the photo preset; the default one is the same for all sizes");
    }
    ToolParameters params = ParametersAskedFor(options);
    const bool bFile = options.vNames.empty() && !options.bJson;
    if (!(bFile ? params.Print(stdout) : Write(Described(options, params)))) {
        throw BurstError("standard output can not be written");
    }
}

}  // namespace vkr::tool
