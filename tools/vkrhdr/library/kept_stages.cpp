#include "library/kept_stages.h"

#include <algorithm>
#include <set>
#include <utility>

#include "pictures/library_pictures.h"

namespace vkr::tool {

namespace {

uint8_t Clipped(int n)
{
    return static_cast<uint8_t>(std::clamp(n, 0, 255));
}

// All channels as they are, clipped to 8 bits.
template <class Image>
Raster ExposureChannels(const Image& image)
{
    Raster raster;
    raster.Resize(image.nWidth, image.nHeight, image.nDim);
    std::transform(image.pData, image.pData + image.Samples(), raster.vSamples.begin(),
                   [](int n) { return Clipped(n); });
    return raster;
}

// Base B, G, R and the high frequencies that belong to it.
Raster WithHighFrequencies(const CShortImage& fused)
{
    Raster raster;
    raster.Resize(fused.nWidth, fused.nHeight, 3);
    for (int y = 0; y < fused.nHeight; ++y) {
        const int16_t* pSrc = fused.Row(y);
        uint8_t* pDst = raster.Row(y);
        for (int x = 0; x < fused.nWidth; ++x, pSrc += 6, pDst += 3) {
            for (int c = 0; c < 3; ++c) pDst[2 - c] = Clipped(pSrc[c] + pSrc[3 + c]);
        }
    }
    return raster;
}

// "work" and a digit.
bool IsWorkFrame(const std::string& sName)
{
    return sName.size() == 5 && sName.rfind("work", 0) == 0;
}

}  // namespace

void KeptStages::Keep(const std::string& sName, Raster raster)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_vPictures[sName] = std::move(raster);
}

void KeptStages::OnRenderBegins()
{
    m_vPictures.clear();
    m_vFrames.clear();
}

void KeptStages::OnImage(const std::string& sName, const CImage& image)
{
    static const std::set<std::string> kWeights = {"builtweights", "edgeweights", "weights0"};
    static const std::set<std::string> kPictures = {"satumask", "ghost", "stretched", "tone"};
    if (kWeights.count(sName) != 0) Keep(sName, ExposureChannels(image));
    if (kPictures.count(sName) != 0 || IsWorkFrame(sName)) Keep(sName, ChannelsOf(image, 0, image.nDim));
}

void KeptStages::OnShortImage(const std::string& sName, const CShortImage& image)
{
    if (sName == "ghostchoice") Keep(sName, ExposureChannels(image));
    if (sName == "fused" && image.nDim == 6) Keep(sName, WithHighFrequencies(image));
    if (sName == "edge") Keep(sName, ChannelsOf(image, 0, 1));
}

void KeptStages::OnYuvImage(const std::string& sName, const CYuvImage& image)
{
    Frame frame = FrameOf(image, m_bCrFirst);
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_vFrames[sName] = std::move(frame);
}

const Raster* KeptStages::Picture(const std::string& sName) const
{
    const auto at = m_vPictures.find(sName);
    return at == m_vPictures.end() ? nullptr : &at->second;
}

const Frame* KeptStages::AlignedFrame(int nExposure) const
{
    const auto at = m_vFrames.find("aligned" + std::to_string(nExposure));
    return at == m_vFrames.end() ? nullptr : &at->second;
}

}  // namespace vkr::tool
