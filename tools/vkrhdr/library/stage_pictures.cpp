#include "library/stage_pictures.h"

#include <algorithm>
#include <filesystem>

#include "pictures/colour_convert.h"
#include "pictures/library_pictures.h"

namespace vkr::tool {

// The absolute path: the working folder may change while the burst runs.
StagePictures::StagePictures(const std::string& sFolder, bool bCrFirst)
    : m_sFolder(std::filesystem::absolute(sFolder).string()), m_bCrFirst(bCrFirst)
{
    MakeFolder(m_sFolder);
}

void StagePictures::WriteStage(const std::string& sName, const Raster& raster)
{
    std::string sPath;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        const int nTime = ++m_vSeen[sName];
        sPath = m_sFolder + "/" + sName + (nTime > 1 ? "_" + std::to_string(nTime) : "") + ".png";
        m_vPaths.push_back(sPath);
    }
    WriteWholeFile(sPath, WritePng(raster, true));
}

void StagePictures::OnRenderBegins()
{
    std::error_code error;
    for (const std::string& sPath : m_vPaths) std::filesystem::remove(sPath, error);
    m_vPaths.clear();
    m_vSeen.clear();
}

template <class Image>
void StagePictures::WriteChannels(const std::string& sName, const Image& image)
{
    if (image.nDim <= 3) {
        WriteStage(sName, ChannelsOf(image, 0, image.nDim));
        return;
    }
    for (int nFirst = 0; nFirst < image.nDim; nFirst += 3) {
        WriteStage(sName + "." + std::to_string(nFirst), ChannelsOf(image, nFirst, std::min(3, image.nDim - nFirst)));
    }
}

void StagePictures::OnImage(const std::string& sName, const CImage& image)
{
    WriteChannels(sName, image);
}

void StagePictures::OnShortImage(const std::string& sName, const CShortImage& image)
{
    WriteChannels(sName, image);
}

void StagePictures::OnYuvImage(const std::string& sName, const CYuvImage& image)
{
    WriteStage(sName, RgbFromFrame(FrameOf(image, m_bCrFirst)));
}

}  // namespace vkr::tool
