#include <CLI/CLI.hpp>

#include "commands.h"
#include "tool_error.h"
#include "tool_parameters.h"

namespace vkr::tool {

CLI::App* DefineParams(CLI::App& app, ParamsOptions& options)
{
    CLI::App* pCommand =
        app.add_subcommand("params", "Prints a parameter file with every parameter on standard output.");
    pCommand->add_option("--set", options.vSets, "NAME=VALUE or Filter.NAME=VALUE; may be repeated")
        ->type_name("NAME=VALUE")
        ->allow_extra_args(false);
    pCommand->add_flag("--shipped", options.bShipped, "what params/default.txt holds: no debug files");
    return pCommand;
}

void RunParams(const ParamsOptions& options)
{
    ToolParameters params(options.bShipped ? ToolParameters::Base::kShipped : ToolParameters::Base::kRegistered);
    for (const std::string& sSet : options.vSets) params.Set(sSet);
    if (!params.Print(stdout)) throw BurstError("standard output can not be written");
}

}  // namespace vkr::tool
