#include <CLI/CLI.hpp>
#include <utility>

#include "commands/commands.h"
#include "commands/parameter_options.h"
#include "fuse/fuse_burst.h"
#include "inspect/inspect_sections.h"

namespace vkr::tool {

namespace {

std::string PageWords(const PhotoBurst& burst, const ParameterChoice& parameters)
{
    const Size size = burst.FrameSize();
    return std::to_string(burst.vPhotos.size()) + " frames of " + std::to_string(size.nWidth) + "x" +
           std::to_string(size.nHeight) + " with " + NameOf(parameters) +
           ". A click on a picture shows it at full size.";
}

void WritePage(const InspectOptions& options, const Page& page)
{
    const std::string sHtml = PageHtml(page);
    WriteWholeFile(options.sFolder + "/index.html", Bytes(sHtml.begin(), sHtml.end()));
}

}  // namespace

CLI::App* DefineInspect(CLI::App& app, InspectOptions& options)
{
    CLI::App* pCommand = app.add_subcommand(
        "inspect", "Fuses a burst and makes a page about it: every stage as a picture, times, parameters.");
    DefineBurst(*pCommand, options.burst);
    pCommand->add_option("-o,--output", options.sFolder, "folder for index.html and its pictures, all upright")
        ->required();
    DefineParameters(*pCommand, options.parameters);
    DefineFaceOptions(*pCommand, options.faces);
    return pCommand;
}

// The burst goes the way that vkrhdr fuse takes it.
void RunInspect(const InspectOptions& options, Remarks& remarks)
{
    const BurstChoice choice = ChosenBurst(options.burst);
    ProtectFile(options.parameters.sParams);
    BurstFuser fuser({options.parameters, ChosenFaces(options.faces)}, remarks);
    PhotoBurst burst = ReadBurst(choice, remarks);
    PictureFolder folder(options.sFolder, burst.Reference().info.nOrientation);

    KeptStages stages(choice.bCrFirst);
    const FusedBurst fused = std::move(fuser).Fuse(std::move(burst), {&stages});
    remarks.Say("fused in %d ms", fused.nMs);

    Page page{"vkrhdr inspect: " + fused.burst.Reference().sName, PageWords(fused.burst, options.parameters), {}};
    page.vSections = StageSections({fused.burst, fused.params, stages, fused.vPairs, fused.result}, folder);
    page.vSections.push_back(TimesSection(fused.times));
    page.vSections.push_back(ParametersSection(fused.params));
    WritePage(options, page);
    remarks.Say("wrote %s/index.html and %d pictures", options.sFolder.c_str(), folder.Count());
}

}  // namespace vkr::tool
