#include <CLI/CLI.hpp>
#include <cstdio>

#include "commands/commands.h"
#include "library/align_report.h"
#include "library/aligned_pictures.h"
#include "library/library_lines.h"
#include "library/stop_watch.h"
#include "pictures/tool_error.h"
#include "second_attempt/second_attempt.h"

namespace vkr::tool {

namespace {

struct Alignment {
    std::vector<AlignedPair> vPairs;
    AlignedPictures pictures;
};

// The whole burst is fused, as vkrhdr fuse does it; what is kept is what the stages after alignment were given.
Alignment AlignBurst(const ToolParameters& params, LibraryLines& lines, const PhotoBurst& burst)
{
    PairReports reports;
    Alignment alignment{{}, AlignedPictures(burst.vPhotos[0].frame.bCrFirst)};
    const StageListeners listeners({&reports, &alignment.pictures});
    Engine engine(params, lines);
    RenderBurst(engine, burst);
    listeners.Check();
    alignment.vPairs = reports.Pairs();
    return alignment;
}

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

void RunAlign(const AlignOptions& options, const CommonOptions& common)
{
    CheckBurst(options.burst);
    LibraryLines lines(common.bVerbose);
    ToolParameters params = LoadParameters(options.parameters, lines);
    PhotoBurst burst = ReadBurst(options.burst);
    FitParameters(options.parameters, burst.RatioFrames(), common.bVerbose, params);
    params.SetChromaOrder(options.burst.IsCrFirst());
    ApplyFaces({{"none"}, ""}, options.parameters, burst, params);
    MakeFolder(options.sFolder);

    const StopWatch watch;
    Alignment alignment = AlignBurst(params, lines, burst);
    if (MayTryAgain(options.parameters, alignment.vPairs) &&
        TryAgain(options.parameters, alignment.vPairs, burst, params)) {
        alignment = AlignBurst(params, lines, burst);
    }
    Say("aligned and fused in %d ms", watch.Ms());
    Say("wrote %d frames and their masks to %s", alignment.pictures.Write(options.sFolder, burst.nFirst),
        options.sFolder.c_str());
    PrintPairs(alignment.vPairs, burst.nFirst);
}

}  // namespace vkr::tool
