#include "pictures/picture_io.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <utility>

#include "pictures/colour_convert.h"
#include "pictures/png_chunks.h"
#include "pictures/tool_error.h"

namespace vkr::tool {

void Frame::Resize(int w, int h)
{
    nWidth = w;
    nHeight = h;
    vY.resize(static_cast<size_t>(w) * h);
    vUV.resize(static_cast<size_t>(w) * h / 2);
}

void Raster::Resize(int w, int h, int nChannelCount)
{
    nWidth = w;
    nHeight = h;
    nChannels = nChannelCount;
    vSamples.resize(static_cast<size_t>(w) * h * nChannelCount);
}

PictureKind KindOfBytes(const Bytes& vBytes)
{
    const uint8_t vJpeg[] = {0xFF, 0xD8, 0xFF};
    const uint8_t vPng[] = {0x89, 'P', 'N', 'G'};
    const auto startsWith = [&](const uint8_t* pMark, size_t n) {
        return vBytes.size() >= n && std::equal(pMark, pMark + n, vBytes.begin());
    };
    if (startsWith(vJpeg, sizeof(vJpeg))) return PictureKind::kJpeg;
    return startsWith(vPng, sizeof(vPng)) ? PictureKind::kPng : PictureKind::kRaw;
}

PictureKind KindOfPath(const std::string& sPath)
{
    std::string sEnd = std::filesystem::path(sPath).extension().string();
    std::transform(sEnd.begin(), sEnd.end(), sEnd.begin(), [](unsigned char c) { return std::tolower(c); });
    if (sEnd == ".jpg" || sEnd == ".jpeg") return PictureKind::kJpeg;
    return sEnd == ".png" ? PictureKind::kPng : PictureKind::kRaw;
}

size_t RawFrameBytes(int w, int h)
{
    return static_cast<size_t>(w) * h / 2 * 3;
}

Frame ReadRaw(const Bytes& vBytes, int w, int h, bool bCrFirst, const std::string& sName)
{
    const size_t nWant = RawFrameBytes(w, h);
    if (vBytes.size() != nWant) {
        throw BurstError(sName + ": has " + std::to_string(vBytes.size()) + " bytes, a frame of " + std::to_string(w) +
                         "x" + std::to_string(h) + " has " + std::to_string(nWant));
    }
    Frame frame;
    frame.bCrFirst = bCrFirst;
    frame.Resize(w, h);
    const auto chroma = vBytes.begin() + static_cast<std::ptrdiff_t>(frame.vY.size());
    std::copy(vBytes.begin(), chroma, frame.vY.begin());
    std::copy(chroma, vBytes.end(), frame.vUV.begin());
    return frame;
}

Bytes WriteRaw(const Frame& frame)
{
    Bytes vBytes(frame.vY);
    vBytes.insert(vBytes.end(), frame.vUV.begin(), frame.vUV.end());
    return vBytes;
}

namespace {

std::string LossOf(const PngFacts& facts, const std::string& sName)
{
    std::string sLoss = facts.bDeep ? "16 bits a sample are rounded to 8" : "";
    if (facts.bTransparent) sLoss += (sLoss.empty() ? "" : ", ") + std::string("transparent parts stand before black");
    return sLoss.empty() ? sLoss : sName + ": " + sLoss;
}

}  // namespace

StoredFrame ReadPicture(const Bytes& vBytes, const std::string& sName, std::string& sWarning)
{
    const PictureKind kind = KindOfBytes(vBytes);
    if (kind == PictureKind::kJpeg) return ReadJpeg(vBytes, sName, sWarning);
    if (kind != PictureKind::kPng) throw BurstError(sName + ": is neither a JPEG nor a PNG file");
    const Raster raster = ReadPng(vBytes, sName);
    PngFacts facts = ReadPngFacts(vBytes);
    sWarning = LossOf(facts, sName);
    return {FrameFromRgb(raster, sName), raster.nWidth, raster.nHeight, std::move(facts.vProfile)};
}

}  // namespace vkr::tool
