#include "stage_pictures.h"

#include <algorithm>
#include <exception>
#include <filesystem>
#include <map>
#include <mutex>

#include "colour_convert.h"
#include "foundation/stage_probe.h"
#include "picture_io.h"
#include "tool_error.h"

namespace vkr::tool {

namespace {

// Stages show their pictures from several threads, and nothing may be thrown through them.
struct State {
    std::mutex mutex;
    std::string sFolder, sError;
    bool bCrFirst = false;
    int nCount = 0;
    std::map<std::string, int> vSeen;  // how often a name came
};
State g_state;
StageProbe g_probe{};

void WriteStage(const std::string& sName, const Raster& raster)
{
    std::string sPath;
    {
        const std::lock_guard<std::mutex> lock(g_state.mutex);
        const int nTime = ++g_state.vSeen[sName];
        ++g_state.nCount;
        sPath = g_state.sFolder + "/" + sName + (nTime > 1 ? "_" + std::to_string(nTime) : "") + ".png";
    }
    WriteWholeFile(sPath, WritePng(raster, true));
}

template <class Fn>
void KeepError(const Fn& fn)
{
    try {
        fn();
    } catch (const std::exception& error) {
        const std::lock_guard<std::mutex> lock(g_state.mutex);
        if (g_state.sError.empty()) g_state.sError = error.what();
    }
}

uint8_t Shown(uint8_t n)
{
    return n;
}
uint8_t Shown(int16_t n)
{
    return static_cast<uint8_t>(std::clamp(n / 2 + 128, 0, 255));
}

// Channels nFirst .. nFirst + nCount - 1 of an interleaved picture; three are B, G, R there.
template <class Image>
Raster ChannelsOf(const Image& image, int nFirst, int nCount)
{
    Raster raster;
    raster.Resize(image.nWidth, image.nHeight, nCount == 1 ? 1 : 3);
    for (int y = 0; y < image.nHeight; ++y) {
        const auto* pSrc = image.Row(y) + nFirst;
        uint8_t* pDst = raster.Row(y);
        for (int x = 0; x < image.nWidth; ++x, pSrc += image.nDim, pDst += raster.nChannels) {
            for (int c = 0; c < nCount; ++c) pDst[nCount == 1 ? 0 : 2 - c] = Shown(pSrc[c]);
        }
    }
    return raster;
}

template <class Image>
void WriteChannels(const char* pName, const Image& image)
{
    if (image.nDim <= 3) {
        WriteStage(pName, ChannelsOf(image, 0, image.nDim));
        return;
    }
    for (int nFirst = 0; nFirst < image.nDim; nFirst += 3) {
        const int nCount = std::min(3, image.nDim - nFirst);
        WriteStage(std::string(pName) + "." + std::to_string(nFirst), ChannelsOf(image, nFirst, nCount));
    }
}

void OnImage(void* /*pUser*/, const char* pName, const CImage& image)
{
    KeepError([&] { WriteChannels(pName, image); });
}

void OnShortImage(void* /*pUser*/, const char* pName, const CShortImage& image)
{
    KeepError([&] { WriteChannels(pName, image); });
}

void OnYuvImage(void* /*pUser*/, const char* pName, const CYuvImage& image)
{
    KeepError([&] {
        Frame frame;
        frame.bCrFirst = g_state.bCrFirst;
        frame.Resize(image.nWidth, image.nHeight);
        std::copy_n(image.pY, frame.vY.size(), frame.vY.begin());
        std::copy_n(image.pUV, frame.vUV.size(), frame.vUV.begin());
        WriteStage(pName, RgbFromFrame(frame));
    });
}

}  // namespace

StagePictures::StagePictures(const std::string& sFolder, bool bCrFirst)
{
    MakeFolder(sFolder);
    g_state.sFolder = std::filesystem::absolute(sFolder).string();
    g_state.sError.clear();
    g_state.vSeen.clear();
    g_state.bCrFirst = bCrFirst;
    g_state.nCount = 0;
    g_probe = {&OnImage, &OnShortImage, &OnYuvImage, nullptr, nullptr};
    SetStageProbe(&g_probe);
}

StagePictures::~StagePictures()
{
    SetStageProbe(nullptr);
}

int StagePictures::Count() const
{
    return g_state.nCount;
}

void StagePictures::CheckWritten() const
{
    if (!g_state.sError.empty()) throw BurstError(g_state.sError);
}

}  // namespace vkr::tool
