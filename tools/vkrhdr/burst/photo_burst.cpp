#include "burst/photo_burst.h"

#include <numeric>
#include <utility>

#include "pictures/tool_error.h"

namespace vkr::tool {

namespace {

constexpr size_t kMaxFrames = 8;

double MeanOf(const Bytes& vY)
{
    const uint64_t nSum = std::accumulate(vY.begin(), vY.end(), uint64_t{0});
    return static_cast<double>(nSum) / static_cast<double>(vY.size());
}

void CheckAlike(const Photo& first, const Photo& other)
{
    if (first.frame.nWidth != other.frame.nWidth || first.frame.nHeight != other.frame.nHeight) {
        throw BurstError("all frames must be of one size: " + first.sName + " is " +
                         std::to_string(first.frame.nWidth) + "x" + std::to_string(first.frame.nHeight) + ", " +
                         other.sName + " is " + std::to_string(other.frame.nWidth) + "x" +
                         std::to_string(other.frame.nHeight));
    }
    if (first.frame.bCrFirst != other.frame.bCrFirst) {
        throw BurstError("all frames must have one order of chroma: " + first.sName + " and " + other.sName +
                         " differ");
    }
}

void CheckPhotos(const std::vector<Photo>& vPhotos, int nReference)
{
    if (vPhotos.empty() || vPhotos.size() > kMaxFrames) {
        throw BurstError("a burst has 1 to 8 frames, not " + std::to_string(vPhotos.size()));
    }
    for (const Photo& photo : vPhotos) CheckAlike(vPhotos.front(), photo);
    if (nReference >= static_cast<int>(vPhotos.size())) {
        throw BurstError("there is no frame " + std::to_string(nReference) + " to be the reference, they are 0 .. " +
                         std::to_string(vPhotos.size() - 1));
    }
}

}  // namespace

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

PhotoBurst ArrangeBurst(std::vector<Photo> vPhotos, int nReference)
{
    CheckPhotos(vPhotos, nReference);
    std::vector<FrameLight> vLight;
    for (Photo& photo : vPhotos) {
        photo.light = {photo.info.fExposure, MeanOf(photo.frame.vY)};
        vLight.push_back(photo.light);
    }
    PhotoBurst burst;
    burst.order = OrderBurst(vLight);
    for (const int i : burst.order.vFrames) burst.vPhotos.push_back(std::move(vPhotos[static_cast<size_t>(i)]));
    burst.nReference = nReference >= 0 ? nReference : MiddleFrame(static_cast<int>(burst.vPhotos.size()));
    return burst;
}

}  // namespace vkr::tool
