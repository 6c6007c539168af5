#include "burst/photo_burst.h"

#include <CLI/CLI.hpp>
#include <numeric>

#include "commands/commands.h"
#include "library/stop_watch.h"
#include "pictures/tool_error.h"

namespace vkr::tool {

namespace {

constexpr size_t kMaxImages = 8;

double MeanOf(const Bytes& vY)
{
    const uint64_t nSum = std::accumulate(vY.begin(), vY.end(), uint64_t{0});
    return static_cast<double>(nSum) / static_cast<double>(vY.size());
}

Frame ReadFrame(const BurstOptions& options, const Bytes& vFile, const std::string& sName)
{
    if (options.IsRaw()) {
        const Size size = ParseSize(options.sSize);
        return ReadRaw(vFile, size.nWidth, size.nHeight, options.IsCrFirst(), sName);
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

Photo ReadPhoto(const BurstOptions& options, const std::string& sName)
{
    Photo photo;
    photo.sName = sName;
    photo.vFile = ReadWholeFile(sName);
    photo.frame = ReadFrame(options, photo.vFile, sName);
    if (!options.IsRaw()) photo.info = ReadPhotoInfo(photo.vFile);
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

void SayBurst(const PhotoBurst& burst)
{
    for (int k = 0; k < static_cast<int>(burst.vPhotos.size()); ++k) {
        const Photo& photo = burst.vPhotos[static_cast<size_t>(k)];
        Say("  %d: %s, mean luma %.0f%s%s%s", k, photo.sName.c_str(), photo.light.fMeanLuma,
            photo.info.sExposure.empty() ? "" : ", ", photo.info.sExposure.c_str(),
            k == burst.nReference ? ", reference" : "");
    }
}

}  // namespace

void DefineBurst(CLI::App& command, BurstOptions& options)
{
    command.add_option("IMG", options.vImages, "the frames, 1 to 8, in any order")
        ->required()
        ->check(CLI::ExistingFile);
    command
        .add_option("--reference", options.nReference,
                    "the normally exposed frame, 0 the darkest; else the (lower) middle one")
        ->check(CLI::Range(0, 7));
    command.add_option("--raw", options.sRaw, "frames are nv12 or nv21 bytes")->check(CLI::IsMember({"nv12", "nv21"}));
    command.add_option("--size", options.sSize, "WxH of raw frames");
}

void CheckBurst(const BurstOptions& options)
{
    if (options.vImages.size() > kMaxImages) {
        throw UsageError("a burst has at most 8 frames, not " + std::to_string(options.vImages.size()));
    }
    if (options.nReference >= static_cast<int>(options.vImages.size())) {
        throw UsageError("--reference is " + std::to_string(options.nReference) + ", the frames are 0 .. " +
                         std::to_string(options.vImages.size() - 1));
    }
    if (options.IsRaw() != !options.sSize.empty()) throw UsageError("--raw and --size WxH go together");
    if (options.IsRaw()) ParseSize(options.sSize);
}

std::vector<std::string> PhotoBurst::Names() const
{
    std::vector<std::string> vNames;
    for (const Photo& photo : vPhotos) vNames.push_back(photo.sName);
    return vNames;
}

std::vector<RatioFrame> PhotoBurst::RatioFrames() const
{
    std::vector<RatioFrame> vFrames;
    for (const Photo& photo : vPhotos) vFrames.push_back({&photo.frame, photo.sName, photo.info.fExposure});
    return vFrames;
}

PhotoBurst ReadBurst(const BurstOptions& options)
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
    PhotoBurst burst;
    for (const int i : order.vFrames) burst.vPhotos.push_back(std::move(vPhotos[static_cast<size_t>(i)]));
    const int nFrames = static_cast<int>(burst.vPhotos.size());
    burst.nReference = options.nReference >= 0 ? options.nReference : MiddleFrame(nFrames);
    const Size size = burst.FrameSize();
    Say("read %d frames of %dx%d in %d ms, darkest first by %s", nFrames, size.nWidth, size.nHeight, watch.Ms(),
        order.bByExif ? "EXIF exposure" : "mean luma");
    SayBurst(burst);
    return burst;
}

Frame RenderBurst(Engine& engine, const PhotoBurst& burst)
{
    const std::vector<Photo>& vPhotos = burst.vPhotos;
    for (size_t k = 0; k < vPhotos.size(); ++k) engine.AddFrame(static_cast<int>(k), vPhotos[k].frame);
    Frame result;
    result.bCrFirst = vPhotos[0].frame.bCrFirst;
    result.Resize(vPhotos[0].frame.nWidth, vPhotos[0].frame.nHeight);
    engine.Render(static_cast<int>(vPhotos.size()), burst.nReference, QuarterTurns(burst.Reference().info.nOrientation),
                  burst.vFaces, burst.nFaceSource, result);
    return result;
}

}  // namespace vkr::tool
