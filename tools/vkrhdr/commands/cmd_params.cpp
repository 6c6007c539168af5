#include <CLI/CLI.hpp>

#include "commands/commands.h"
#include "commands/parameter_options.h"
#include "library/photo_preset.h"
#include "pictures/tool_error.h"

namespace vkr::tool {

CLI::App* DefineParams(CLI::App& app, ParamsOptions& options)
{
    CLI::App* pCommand =
        app.add_subcommand("params", "Prints a parameter file with every parameter on standard output.");
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
    const bool bPhoto = options.sPreset == "photo" || !options.sForSize.empty();
    const bool bShipped = options.bShipped || options.sPreset == "default";
    if (bPhoto && bShipped) throw UsageError("--for is of the photo preset; the default one is the same for all sizes");
    ToolParameters params(bPhoto || bShipped ? ToolParameters::Base::kShipped : ToolParameters::Base::kRegistered);
    if (bPhoto) {
        params.SetPhotoValues(options.sForSize.empty() ? kPhotoFileSize : ParseSize(options.sForSize, "--for"));
    }
    for (const std::string& sSet : options.vSets) params.Set(sSet);
    if (!params.Print(stdout)) throw BurstError("standard output can not be written");
}

}  // namespace vkr::tool
