#include <unistd.h>

#include <CLI/CLI.hpp>
#include <filesystem>
#include <optional>

#include "commands/commands.h"
#include "commands/parameter_options.h"
#include "fuse/fuse_burst.h"
#include "library/stage_pictures.h"
#include "pictures/colour_convert.h"
#include "pictures/tool_error.h"

namespace vkr::tool {

namespace {

namespace fs = std::filesystem;

void MakeDumpFolders(const std::string& sFolder)
{
    for (const char* pName : {"result", "Dump", "AISeg", "GhostDump", "WeightDump", "FusionDump", "ReLinearizeDump",
                              "ClusterDump", "FeatureMatchDump", "res"}) {
        MakeFolder(sFolder + "/" + pName);
    }
}

// The folder that the library writes its debug files under: the working folder from the first render to scope end.
class DumpFolder : public StageListener {
public:
    explicit DumpFolder(const std::string& sFolder) : m_sFolder(sFolder) {}
    ~DumpFolder() override
    {
        std::error_code error;
        if (!m_before.empty()) fs::current_path(m_before, error);
    }
    DumpFolder(const DumpFolder&) = delete;
    DumpFolder& operator=(const DumpFolder&) = delete;

    void OnRenderBegins() override
    {
        if (!m_before.empty()) return;
        MakeDumpFolders(m_sFolder);
        m_before = fs::current_path();
        fs::current_path(m_sFolder);
    }

private:
    std::string m_sFolder;
    fs::path m_before;  // empty until the first render
};

// Where the result can not go. The pictures of the burst are protected by now.
void CheckOutput(const FuseOptions& options)
{
    if (options.burst.sRaw.empty() && KindOfPath(options.sOutput) == PictureKind::kRaw) {
        throw UsageError("the output ends in .jpg, .jpeg or .png (or --raw is given), not '" + options.sOutput + "'");
    }
    const fs::path folder = fs::absolute(options.sOutput).parent_path();
    std::error_code error;
    if (!fs::is_directory(folder, error)) throw UsageError(folder.string() + ": is no folder; make it first");
    if (access(folder.c_str(), W_OK) != 0) throw BurstError(folder.string() + ": can not be written to");
    ProtectFile(options.parameters.sParams);
    CheckPlace(options.sOutput);
}

// The burst with what the user wants to see of it.
FusedBurst FuseAndShow(const FuseOptions& options, BurstFuser& fuser, PhotoBurst burst, Remarks& remarks)
{
    std::vector<StageListener*> vListeners;
    std::optional<StagePictures> stages;
    if (!options.sStageFolder.empty()) vListeners.push_back(&stages.emplace(options.sStageFolder, burst.IsCrFirst()));
    std::optional<DumpFolder> dumps;
    if (!options.sDumpFolder.empty()) vListeners.push_back(&dumps.emplace(options.sDumpFolder));
    FusedBurst fused = std::move(fuser).Fuse(std::move(burst), vListeners);
    SayFailedPairs(fused, remarks);
    remarks.Say("fused in %d ms", fused.nMs);
    if (stages) remarks.Say("wrote %d stage pictures to %s", stages->Count(), options.sStageFolder.c_str());
    return fused;
}

Bytes EncodeResult(const FuseOptions& options, const Frame& result, const Photo& reference)
{
    switch (KindOfPath(options.sOutput)) {
        case PictureKind::kJpeg:
            return WithMetadataOf(reference.vFile, WriteJpeg(result, options.nQuality, reference.vProfile),
                                  result.nWidth, result.nHeight, reference.info.nOrientation);
        case PictureKind::kPng: {
            const Raster upright = TurnUpright(RgbFromFrame(result), reference.info.nOrientation);
            return WithMetadataOf(reference.vFile, WritePng(upright, false, reference.vProfile), upright.nWidth,
                                  upright.nHeight, 1);
        }
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
        ->add_option(
            "-o,--output", options.sOutput,
            "the result: .jpg as it is stored, .png turned upright, both with the reference's metadata and colour "
            "profile; anything else is as --raw")
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

void RunFuse(const FuseOptions& options, Remarks& remarks)
{
    const BurstChoice choice = ChosenBurst(options.burst);
    const BurstWishes wishes{options.parameters, ChosenFaces(options.faces), !options.sDumpFolder.empty()};
    CheckOutput(options);
    BurstFuser fuser(wishes, remarks);
    const FusedBurst fused = FuseAndShow(options, fuser, ReadBurst(choice, remarks), remarks);
    WriteWholeFile(options.sOutput, EncodeResult(options, fused.result, fused.burst.Reference()));
    remarks.Say("wrote %s", options.sOutput.c_str());
    if (options.bTimings) fused.times.Print(stderr);
}

}  // namespace vkr::tool
