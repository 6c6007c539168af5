#include <unistd.h>

#include <CLI/CLI.hpp>
#include <filesystem>
#include <optional>

#include "align_report.h"
#include "colour_convert.h"
#include "commands.h"
#include "library_lines.h"
#include "stage_pictures.h"
#include "stop_watch.h"
#include "tool_error.h"

namespace vkr::tool {

namespace {

namespace fs = std::filesystem;

// The folder that the library writes its debug files under, as the working folder for one scope.
class WorkingFolder {
public:
    explicit WorkingFolder(const std::string& sFolder) : m_before(fs::current_path()) { fs::current_path(sFolder); }
    ~WorkingFolder()
    {
        std::error_code error;
        fs::current_path(m_before, error);
    }
    WorkingFolder(const WorkingFolder&) = delete;
    WorkingFolder& operator=(const WorkingFolder&) = delete;

private:
    fs::path m_before;
};

// Everything that can be refused before a picture is read.
void CheckUse(const FuseOptions& options)
{
    CheckBurst(options.burst);
    if (!options.burst.IsRaw() && KindOfPath(options.sOutput) == PictureKind::kRaw) {
        throw UsageError("the output ends in .jpg, .jpeg or .png (or --raw is given), not '" + options.sOutput + "'");
    }
    const fs::path folder = fs::absolute(options.sOutput).parent_path();
    std::error_code error;
    if (!fs::is_directory(folder, error)) throw UsageError(folder.string() + ": is no folder; make it first");
    if (access(folder.c_str(), W_OK) != 0) throw BurstError(folder.string() + ": can not be written to");
}

void MakeDumpFolders(const std::string& sFolder)
{
    for (const char* pName : {"result", "Dump", "AISeg", "GhostDump", "WeightDump", "FusionDump", "ReLinearizeDump",
                              "ClusterDump", "FeatureMatchDump", "res"}) {
        MakeFolder(sFolder + "/" + pName);
    }
}

void SayFailedPairs(const PairReports& reports, const ToolParameters& params, const PhotoBurst& burst)
{
    const bool bDropped = params.Get("CMultipleImagesAlignFilter.bDropAlignFail") != 0;
    for (const AlignedPair& pair : reports.Pairs()) {
        if (!pair.bAligned) Say("%s", FailureLine(pair, burst.Names(), burst.nReference, bDropped).c_str());
    }
}

// The render with what the user wants to see of it.
Frame FuseBurst(const FuseOptions& options, const ToolParameters& params, LibraryLines& lines, const PhotoBurst& burst)
{
    PairReports reports;
    std::optional<StagePictures> stages;
    std::vector<StageListener*> vListeners = {&reports};
    if (!options.sStageFolder.empty()) {
        vListeners.push_back(&stages.emplace(options.sStageFolder, options.burst.IsCrFirst()));
    }
    std::optional<WorkingFolder> folder;
    if (!options.sDumpFolder.empty()) {
        MakeDumpFolders(options.sDumpFolder);
        folder.emplace(options.sDumpFolder);
    }
    const StopWatch watch;
    const StageListeners listeners(vListeners);
    Engine engine(params, lines);
    Frame result = RenderBurst(engine, burst);
    SayFailedPairs(reports, params, burst);
    Say("fused in %d ms", watch.Ms());
    listeners.Check();
    if (stages) Say("wrote %d stage pictures to %s", stages->Count(), options.sStageFolder.c_str());
    return result;
}

Bytes EncodeResult(const FuseOptions& options, const Frame& result, const Photo& reference)
{
    switch (KindOfPath(options.sOutput)) {
        case PictureKind::kJpeg:
            return WithMetadataOf(reference.vFile, WriteJpeg(result, options.nQuality), result.nWidth, result.nHeight);
        case PictureKind::kPng:
            return WritePng(TurnUpright(RgbFromFrame(result), reference.info.nOrientation));
        case PictureKind::kRaw:
            break;
    }
    return WriteRaw(result);
}

}  // namespace

CLI::App* DefineFuse(CLI::App& app, FuseOptions& options)
{
    CLI::App* pCommand = app.add_subcommand("fuse", "Fuses JPEG or PNG pictures of one scene and one size.");
    DefineBurst(*pCommand, options.burst);
    pCommand
        ->add_option("-o,--output", options.sOutput,
                     "the result: .jpg keeps the EXIF, .png is turned upright, anything else is as --raw")
        ->required();
    pCommand->add_option("--quality", options.nQuality, "quality of a JPEG result, 1 to 100")
        ->check(CLI::Range(1, 100))
        ->capture_default_str();
    DefineParameters(*pCommand, options.parameters);
    pCommand->add_option("--dump", options.sDumpFolder, "folder for the library's debug files; switches them on");
    pCommand->add_option("--stages", options.sStageFolder,
                         "folder for a PNG of every stage; signed 16-bit values are shown as value / 2 + 128");
    pCommand->add_flag("--timings", options.bTimings, "print the time of every stage at the end");
    return pCommand;
}

void RunFuse(const FuseOptions& options, const CommonOptions& common)
{
    CheckUse(options);
    LibraryLines lines(common.bVerbose);
    ToolParameters params = LoadParameters(options.parameters, lines);
    if (!options.sDumpFolder.empty()) params.SwitchDumpsOn();
    const PhotoBurst burst = ReadBurst(options.burst);
    FitParameters(options.parameters, burst.FrameSize(), params);
    params.SetChromaOrder(options.burst.IsCrFirst());
    const Frame result = FuseBurst(options, params, lines, burst);
    WriteWholeFile(options.sOutput, EncodeResult(options, result, burst.Reference()));
    Say("wrote %s", options.sOutput.c_str());
    if (options.bTimings) lines.Times().Print(stderr);
}

}  // namespace vkr::tool
