#include <CLI/CLI.hpp>
#include <cstdio>

#include "align_report.h"
#include "aligned_pictures.h"
#include "commands.h"
#include "library_lines.h"
#include "stop_watch.h"
#include "tool_error.h"

namespace vkr::tool {

namespace {

void PrintPairs(const PairReports& reports)
{
    for (const AlignedPair& pair : reports.Pairs()) std::printf("%s\n", PairLine(pair).c_str());
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
void RunAlign(const AlignOptions& options, const CommonOptions& common)
{
    CheckBurst(options.burst);
    LibraryLines lines(common.bVerbose);
    ToolParameters params = LoadParameters(options.parameters, lines);
    const PhotoBurst burst = ReadBurst(options.burst);
    FitParameters(options.parameters, burst.FrameSize(), params);
    params.SetChromaOrder(options.burst.IsCrFirst());
    MakeFolder(options.sFolder);

    PairReports reports;
    AlignedPictures pictures(options.burst.IsCrFirst());
    {
        const StopWatch watch;
        const StageListeners listeners({&reports, &pictures});
        Engine engine(params, lines);
        RenderBurst(engine, burst);
        listeners.Check();
        Say("aligned and fused in %d ms", watch.Ms());
    }
    Say("wrote %d frames and their masks to %s", pictures.Write(options.sFolder), options.sFolder.c_str());
    PrintPairs(reports);
}

}  // namespace vkr::tool
