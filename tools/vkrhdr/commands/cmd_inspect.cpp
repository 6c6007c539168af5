#include <CLI/CLI.hpp>
#include <memory>

#include "commands/commands.h"
#include "inspect/inspect_sections.h"
#include "library/align_report.h"
#include "library/library_lines.h"
#include "library/stop_watch.h"
#include "second_attempt/second_attempt.h"

namespace vkr::tool {

namespace {

// A burst as it was fused, with all that its stages showed.
struct Fusion {
    KeptStages stages;
    PairReports reports;
    Frame result;

    explicit Fusion(bool bCrFirst) : stages(bCrFirst) {}
};

std::unique_ptr<Fusion> FuseOnce(const ToolParameters& params, LibraryLines& lines, const PhotoBurst& burst,
                                 bool bCrFirst)
{
    auto pFusion = std::make_unique<Fusion>(bCrFirst);
    lines.Times() = {};
    const StageListeners listeners({&pFusion->reports, &pFusion->stages});
    Engine engine(params, lines);
    pFusion->result = RenderBurst(engine, burst);
    listeners.Check();
    return pFusion;
}

std::unique_ptr<Fusion> FuseAndLook(const InspectOptions& options, ToolParameters& params, LibraryLines& lines,
                                    PhotoBurst& burst)
{
    const StopWatch watch;
    const bool bCrFirst = options.burst.IsCrFirst();
    auto pFusion = FuseOnce(params, lines, burst, bCrFirst);
    const std::vector<AlignedPair> vPairs = pFusion->reports.Pairs();
    if (MayTryAgain(options.parameters, vPairs) && TryAgain(options.parameters, vPairs, burst, params)) {
        pFusion.reset();
        pFusion = FuseOnce(params, lines, burst, bCrFirst);
    }
    Say("fused in %d ms", watch.Ms());
    return pFusion;
}

std::string PageWords(const PhotoBurst& burst, const ParameterOptions& parameters)
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
void RunInspect(const InspectOptions& options, const CommonOptions& common)
{
    CheckBurst(options.burst);
    CheckFaces(options.faces);
    LibraryLines lines(common.bVerbose);
    ToolParameters params = LoadParameters(options.parameters, lines);
    PhotoBurst burst = ReadBurst(options.burst);
    FitParameters(options.parameters, burst.RatioFrames(), common.bVerbose, params);
    params.SetChromaOrder(options.burst.IsCrFirst());
    ApplyFaces(options.faces, options.parameters, burst, params);
    PictureFolder folder(options.sFolder, burst.Reference().info.nOrientation);

    const std::unique_ptr<Fusion> pFusion = FuseAndLook(options, params, lines, burst);

    Page page{"vkrhdr inspect: " + burst.Reference().sName, PageWords(burst, options.parameters), {}};
    page.vSections = StageSections({burst, params, pFusion->stages, pFusion->reports.Pairs(), pFusion->result}, folder);
    page.vSections.push_back(TimesSection(lines.Times()));
    page.vSections.push_back(ParametersSection(params));
    WritePage(options, page);
    Say("wrote %s/index.html and %d pictures", options.sFolder.c_str(), folder.Count());
}

}  // namespace vkr::tool
