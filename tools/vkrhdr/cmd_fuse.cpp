#include <sys/stat.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <chrono>
#include <filesystem>
#include <numeric>
#include <optional>

#include "burst_order.h"
#include "colour_convert.h"
#include "commands.h"
#include "engine.h"
#include "exif_io.h"
#include "library_lines.h"
#include "picture_io.h"
#include "stage_pictures.h"
#include "tool_error.h"
#include "tool_parameters.h"

namespace vkr::tool {

namespace {

namespace fs = std::filesystem;

constexpr size_t kMaxImages = 8;

struct Photo {
    std::string sName;
    Bytes vFile;  // as it came, for its EXIF
    Frame frame;
    PhotoInfo info;
    FrameLight light;
};

// Milliseconds since it was made.
class StopWatch {
public:
    int Ms() const
    {
        const auto elapsed = std::chrono::steady_clock::now() - m_start;
        return static_cast<int>(std::chrono::duration_cast<std::chrono::milliseconds>(elapsed).count());
    }

private:
    std::chrono::steady_clock::time_point m_start = std::chrono::steady_clock::now();
};

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

bool IsRaw(const FuseOptions& options)
{
    return !options.sRaw.empty();
}
bool IsCrFirst(const FuseOptions& options)
{
    return options.sRaw == "nv21";
}

// Everything that can be refused before a picture is read.
void CheckUse(const FuseOptions& options)
{
    if (options.vImages.size() > kMaxImages) {
        throw UsageError("a burst has at most 8 frames, not " + std::to_string(options.vImages.size()));
    }
    if (options.nReference >= static_cast<int>(options.vImages.size())) {
        throw UsageError("--reference is " + std::to_string(options.nReference) + ", the frames are 0 .. " +
                         std::to_string(options.vImages.size() - 1));
    }
    if (IsRaw(options) != !options.sSize.empty()) throw UsageError("--raw and --size WxH go together");
    if (!IsRaw(options) && KindOfPath(options.sOutput) == PictureKind::kRaw) {
        throw UsageError("the output ends in .jpg, .jpeg or .png (or --raw is given), not '" + options.sOutput + "'");
    }
    const fs::path folder = fs::absolute(options.sOutput).parent_path();
    std::error_code error;
    if (!fs::is_directory(folder, error)) throw UsageError(folder.string() + ": is no folder; make it first");
    if (access(folder.c_str(), W_OK) != 0) throw BurstError(folder.string() + ": can not be written to");
}

ToolParameters ParametersFor(const FuseOptions& options, LibraryLines& lines)
{
    ToolParameters params(ToolParameters::Base::kTool);
    if (!options.sParams.empty()) {
        std::string sWarning;
        params.Load(options.sParams, lines, sWarning);
        if (!sWarning.empty()) Say("%s: %s", options.sParams.c_str(), sWarning.c_str());
    }
    if (!options.sDumpFolder.empty()) params.SwitchDumpsOn();
    for (const std::string& sSet : options.vSets) params.Set(sSet);
    params.SetChromaOrder(IsCrFirst(options));
    return params;
}

double MeanOf(const Bytes& vY)
{
    const uint64_t nSum = std::accumulate(vY.begin(), vY.end(), uint64_t{0});
    return static_cast<double>(nSum) / static_cast<double>(vY.size());
}

Frame ReadFrame(const FuseOptions& options, const Bytes& vFile, const std::string& sName)
{
    if (IsRaw(options)) {
        const Size size = ParseSize(options.sSize);
        return ReadRaw(vFile, size.nWidth, size.nHeight, IsCrFirst(options), sName);
    }
    std::string sWarning;
    StoredFrame stored = ReadPicture(vFile, sName, sWarning);
    if (!sWarning.empty()) Say("%s", sWarning.c_str());
    if (stored.nStoredWidth != stored.frame.nWidth || stored.nStoredHeight != stored.frame.nHeight) {
        Say("%s: cut from %dx%d to even sides, %dx%d", sName.c_str(), stored.nStoredWidth, stored.nStoredHeight,
            stored.frame.nWidth, stored.frame.nHeight);
    }
    return std::move(stored.frame);
}

Photo ReadPhoto(const FuseOptions& options, const std::string& sName)
{
    Photo photo;
    photo.sName = sName;
    photo.vFile = ReadWholeFile(sName);
    photo.frame = ReadFrame(options, photo.vFile, sName);
    if (!IsRaw(options)) photo.info = ReadPhotoInfo(photo.vFile);
    photo.light = {photo.info.fExposure, MeanOf(photo.frame.vY)};
    return photo;
}

void CheckSameSize(const Photo& first, const Photo& other)
{
    if (first.frame.nWidth == other.frame.nWidth && first.frame.nHeight == other.frame.nHeight) return;
    throw BurstError("all frames must be of one size: " + first.sName + " is " + std::to_string(first.frame.nWidth) +
                     "x" + std::to_string(first.frame.nHeight) + ", " + other.sName + " is " +
                     std::to_string(other.frame.nWidth) + "x" + std::to_string(other.frame.nHeight));
}

// The burst, darkest frame first.
std::vector<Photo> ReadBurst(const FuseOptions& options)
{
    const StopWatch watch;
    std::vector<Photo> vPhotos;
    std::vector<FrameLight> vLight;
    for (const std::string& sName : options.vImages) {
        vPhotos.push_back(ReadPhoto(options, sName));
        vLight.push_back(vPhotos.back().light);
        CheckSameSize(vPhotos.front(), vPhotos.back());
    }
    const BurstOrder order = OrderBurst(vLight);
    std::vector<Photo> vSorted;
    for (const int i : order.vFrames) vSorted.push_back(std::move(vPhotos[static_cast<size_t>(i)]));
    Say("read %zu frames of %dx%d in %d ms, darkest first by %s", vSorted.size(), vSorted[0].frame.nWidth,
        vSorted[0].frame.nHeight, watch.Ms(), order.bByExif ? "EXIF exposure" : "mean luma");
    return vSorted;
}

void SayBurst(const std::vector<Photo>& vPhotos, int nReference)
{
    for (int k = 0; k < static_cast<int>(vPhotos.size()); ++k) {
        const Photo& photo = vPhotos[static_cast<size_t>(k)];
        Say("  %d: %s, mean luma %.0f%s%s%s", k, photo.sName.c_str(), photo.light.fMeanLuma,
            photo.info.sExposure.empty() ? "" : ", ", photo.info.sExposure.c_str(),
            k == nReference ? ", reference" : "");
    }
}

// How the frames lie, for the face search: quarter turns from a stored picture to an upright one. Mirrored pictures
// count as what they mirror.
int QuarterTurns(int nExifOrientation)
{
    switch (nExifOrientation) {
        case 5:
        case 6:
            return 1;
        case 3:
        case 4:
            return 2;
        case 7:
        case 8:
            return 3;
        default:
            return 0;
    }
}

void MakeDumpFolders(const std::string& sFolder)
{
    for (const char* pName : {"result", "Dump", "AISeg", "GhostDump", "WeightDump", "FusionDump", "ReLinearizeDump",
                              "ClusterDump", "FeatureMatchDump", "res"}) {
        MakeFolder(sFolder + "/" + pName);
    }
}

Frame RenderBurst(Engine& engine, const std::vector<Photo>& vPhotos, int nReference)
{
    const Frame& first = vPhotos[0].frame;
    for (size_t k = 0; k < vPhotos.size(); ++k) engine.AddFrame(static_cast<int>(k), vPhotos[k].frame);
    Frame result;
    result.bCrFirst = first.bCrFirst;
    result.Resize(first.nWidth, first.nHeight);
    const int nOrientation = QuarterTurns(vPhotos[static_cast<size_t>(nReference)].info.nOrientation);
    engine.Render(static_cast<int>(vPhotos.size()), nReference, nOrientation, result);
    return result;
}

// The render with what the user wants to see of it.
Frame FuseBurst(const FuseOptions& options, const ToolParameters& params, LibraryLines& lines,
                const std::vector<Photo>& vPhotos, int nReference)
{
    std::optional<StagePictures> stages;
    if (!options.sStageFolder.empty()) stages.emplace(options.sStageFolder, IsCrFirst(options));
    std::optional<WorkingFolder> folder;
    if (!options.sDumpFolder.empty()) {
        MakeDumpFolders(options.sDumpFolder);
        folder.emplace(options.sDumpFolder);
    }
    const StopWatch watch;
    Engine engine(params, lines);
    Frame result = RenderBurst(engine, vPhotos, nReference);
    Say("fused in %d ms", watch.Ms());
    if (stages) {
        stages->CheckWritten();
        Say("wrote %d stage pictures to %s", stages->Count(), options.sStageFolder.c_str());
    }
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
    pCommand->add_option("IMG", options.vImages, "the frames, 1 to 8, in any order")
        ->required()
        ->check(CLI::ExistingFile);
    pCommand->add_option("-o,--output", options.sOutput, "the result: .jpg keeps the EXIF, .png is turned upright")
        ->required();
    pCommand
        ->add_option("--reference", options.nReference,
                     "the normally exposed frame, 0 the darkest; else the (lower) middle one")
        ->check(CLI::Range(0, 7));
    pCommand->add_option("--quality", options.nQuality, "quality of a JPEG result, 1 to 100")
        ->check(CLI::Range(1, 100))
        ->capture_default_str();
    pCommand->add_option("--raw", options.sRaw, "frames are nv12 or nv21 bytes; so is the result, unless .jpg or .png")
        ->check(CLI::IsMember({"nv12", "nv21"}));
    pCommand->add_option("--size", options.sSize, "WxH of raw frames");
    pCommand->add_option("--params", options.sParams, "parameter file, taken as it stands")->check(CLI::ExistingFile);
    pCommand->add_option("--set", options.vSets, "one parameter, NAME=VALUE or Filter.NAME=VALUE; may be repeated")
        ->type_name("NAME=VALUE")
        ->allow_extra_args(false);
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
    const ToolParameters params = ParametersFor(options, lines);
    const std::vector<Photo> vPhotos = ReadBurst(options);
    const int nReference = options.nReference >= 0 ? options.nReference : MiddleFrame(static_cast<int>(vPhotos.size()));
    SayBurst(vPhotos, nReference);
    const Frame result = FuseBurst(options, params, lines, vPhotos, nReference);
    WriteWholeFile(options.sOutput, EncodeResult(options, result, vPhotos[static_cast<size_t>(nReference)]));
    Say("wrote %s", options.sOutput.c_str());
    if (options.bTimings) lines.Times().Print(stderr);
}

}  // namespace vkr::tool
