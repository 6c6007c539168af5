#include <unistd.h>

#include <CLI/CLI.hpp>
#include <filesystem>
#include <optional>

#include "commands/commands.h"
#include "library/align_report.h"
#include "library/library_lines.h"
#include "library/stage_pictures.h"
#include "library/stop_watch.h"
#include "pictures/colour_convert.h"
#include "pictures/tool_error.h"
#include "second_attempt/second_attempt.h"

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
    CheckFaces(options.faces);
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

void SayFailedPairs(const std::vector<AlignedPair>& vPairs, const ToolParameters& params, const PhotoBurst& burst)
{
    const bool bDropped = params.Get("CMultipleImagesAlignFilter.bDropAlignFail") != 0;
    for (const AlignedPair& pair : vPairs) {
        if (!pair.bAligned) Say("%s", FailureLine(pair, burst.Names(), burst.nReference, bDropped).c_str());
    }
}

struct Fusion {
    Frame result;
    std::vector<AlignedPair> vPairs;
};

// One render. pStages: who else looks on, or null.
Fusion RenderOnce(const ToolParameters& params, LibraryLines& lines, const PhotoBurst& burst, StagePictures* pStages)
{
    PairReports reports;
    std::vector<StageListener*> vListeners = {&reports};
    if (pStages != nullptr) vListeners.push_back(pStages);
    lines.Times() = {};
    const StageListeners listeners(vListeners);
    Engine engine(params, lines);
    Fusion fusion{RenderBurst(engine, burst), reports.Pairs()};
    listeners.Check();
    return fusion;
}

// The render with what the user wants to see of it, and a second one where alignment needs another attempt.
Frame FuseBurst(const FuseOptions& options, ToolParameters& params, LibraryLines& lines, PhotoBurst& burst)
{
    std::optional<StagePictures> stages;
    if (!options.sStageFolder.empty()) stages.emplace(options.sStageFolder, options.burst.IsCrFirst());
    StagePictures* const pStages = stages ? &*stages : nullptr;
    std::optional<WorkingFolder> folder;
    if (!options.sDumpFolder.empty()) {
        MakeDumpFolders(options.sDumpFolder);
        folder.emplace(options.sDumpFolder);
    }
    const StopWatch watch;
    Fusion fusion = RenderOnce(params, lines, burst, pStages);
    if (MayTryAgain(options.parameters, fusion.vPairs) && TryAgain(options.parameters, fusion.vPairs, burst, params)) {
        if (stages) stages->TakeBack();
        fusion = RenderOnce(params, lines, burst, pStages);
    }
    SayFailedPairs(fusion.vPairs, params, burst);
    Say("fused in %d ms", watch.Ms());
    if (stages) Say("wrote %d stage pictures to %s", stages->Count(), options.sStageFolder.c_str());
    return std::move(fusion.result);
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
    DefineFaceOptions(*pCommand, options.faces);
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
    PhotoBurst burst = ReadBurst(options.burst);
    FitParameters(options.parameters, burst.RatioFrames(), common.bVerbose, params);
    params.SetChromaOrder(options.burst.IsCrFirst());
    ApplyFaces(options.faces, options.parameters, burst, params);
    const Frame result = FuseBurst(options, params, lines, burst);
    WriteWholeFile(options.sOutput, EncodeResult(options, result, burst.Reference()));
    Say("wrote %s", options.sOutput.c_str());
    if (options.bTimings) lines.Times().Print(stderr);
}

}  // namespace vkr::tool
