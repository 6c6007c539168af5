#include <CLI/CLI.hpp>
#include <cstdio>

#include "commands/commands.h"
#include "commands/parameter_options.h"
#include "fuse/fuse_burst.h"
#include "library/align_report.h"
#include "library/aligned_pictures.h"
#include "pictures/tool_error.h"

namespace vkr::tool {

namespace {

void PrintPairs(const std::vector<AlignedPair>& vPairs, int nFirst)
{
    for (const AlignedPair& pair : vPairs) std::printf("%s\n", PairLine(pair, nFirst).c_str());
    if (std::fflush(stdout) != 0) throw BurstError("standard output can not be written");
}

}  // namespace

CLI::App* DefineAlign(CLI::App& app, AlignOptions& options)
{
    CLI::App* pCommand = app.add_subcommand(
        "align",
        "Aligns a burst: the frames as they are fused, their masks, and a line about each pair of neighbours.");
    DefineBurst(*pCommand, options.burst);
    pCommand
        ->add_option("-o,--output", options.sFolder,
                     "folder for aligned_0.png, mask_0.png and so on, 0 the darkest, the way the pictures are stored")
        ->required();
    DefineParameters(*pCommand, options.parameters);
    return pCommand;
}

// The whole burst is fused, as vkrhdr fuse does it; what is kept is what the stages after alignment were given.
void RunAlign(const AlignOptions& options, Remarks& remarks)
{
    const BurstChoice choice = ChosenBurst(options.burst);
    ProtectFile(options.parameters.sParams);
    BurstFuser fuser({options.parameters, {FaceSource::kNone, {}}}, remarks);
    PhotoBurst burst = ReadBurst(choice, remarks);
    MakeFolder(options.sFolder);

    AlignedPictures pictures(choice.bCrFirst);
    const FusedBurst fused = std::move(fuser).Fuse(std::move(burst), {&pictures});
    remarks.Say("aligned and fused in %d ms", fused.nMs);
    remarks.Say("wrote %d frames and their masks to %s", pictures.Write(options.sFolder, fused.burst.nFirst),
                options.sFolder.c_str());
    PrintPairs(fused.vPairs, fused.burst.nFirst);
}

}  // namespace vkr::tool
