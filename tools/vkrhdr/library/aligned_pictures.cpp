#include "library/aligned_pictures.h"

#include "pictures/colour_convert.h"
#include "pictures/library_pictures.h"

namespace vkr::tool {

namespace {

// The exposure of a stage's name, "aligned2"; below 0 when it is another stage's.
int ExposureOf(const std::string& sName, const std::string& sStage)
{
    if (sName.rfind(sStage, 0) != 0 || sName.size() != sStage.size() + 1) return -1;
    const char cDigit = sName.back();
    return cDigit >= '0' && cDigit <= '9' ? cDigit - '0' : -1;
}

}  // namespace

void AlignedPictures::OnRenderBegins()
{
    m_vFrames.clear();
    m_vMasks.clear();
}

void AlignedPictures::OnImage(const std::string& sName, const CImage& image)
{
    const int k = ExposureOf(sName, "mask");
    if (k >= 0) m_vMasks[k] = ChannelsOf(image, 0, 1);
}

void AlignedPictures::OnYuvImage(const std::string& sName, const CYuvImage& image)
{
    const int k = ExposureOf(sName, "aligned");
    if (k >= 0) m_vFrames[k] = FrameOf(image, m_bCrFirst);
}

int AlignedPictures::Write(const std::string& sFolder, int nFirst) const
{
    for (const auto& [k, frame] : m_vFrames) {
        WriteWholeFile(sFolder + "/aligned_" + std::to_string(k + nFirst) + ".png", WritePng(RgbFromFrame(frame)));
    }
    for (const auto& [k, mask] : m_vMasks) {
        WriteWholeFile(sFolder + "/mask_" + std::to_string(k + nFirst) + ".png", WritePng(mask));
    }
    return static_cast<int>(m_vFrames.size());
}

}  // namespace vkr::tool
