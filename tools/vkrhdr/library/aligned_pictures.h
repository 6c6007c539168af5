#pragma once

#include <map>
#include <string>

#include "library/stage_listeners.h"
#include "pictures/picture_io.h"

namespace vkr::tool {

// Keeps the frames and masks that alignment ends with, also those of exposures that are then dropped.
class AlignedPictures : public StageListener {
public:
    explicit AlignedPictures(bool bCrFirst) : m_bCrFirst(bCrFirst) {}

    void OnRenderBegins() override;
    void OnImage(const std::string& sName, const CImage& image) override;
    void OnYuvImage(const std::string& sName, const CYuvImage& image) override;

    // aligned_<k>.png in colour and mask_<k>.png in grey, k the exposure, nFirst the darkest. Returns the number of
    // frames.
    int Write(const std::string& sFolder, int nFirst) const;

private:
    bool m_bCrFirst;
    std::map<int, Frame> m_vFrames;
    std::map<int, Raster> m_vMasks;
};

}  // namespace vkr::tool
