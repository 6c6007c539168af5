#pragma once

#include <map>
#include <mutex>
#include <string>

#include "library/stage_listeners.h"
#include "pictures/picture_io.h"

namespace vkr::tool {

// Keeps what the stages of one burst show, as far as a page about it wants to see it.
class KeptStages : public StageListener {
public:
    explicit KeptStages(bool bCrFirst) : m_bCrFirst(bCrFirst) {}

    void OnRenderBegins() override;
    void OnImage(const std::string& sName, const CImage& image) override;
    void OnShortImage(const std::string& sName, const CShortImage& image) override;
    void OnYuvImage(const std::string& sName, const CYuvImage& image) override;

    // What a stage showed under that name, null when it did not. Colours are R, G, B, the fused picture with its high
    // frequencies, clipped to 8 bits; the edge layer is value / 2 + 128. Weights and shares have a channel per
    // exposure.
    const Raster* Picture(const std::string& sName) const;
    const Frame* AlignedFrame(int nExposure) const;

private:
    void Keep(const std::string& sName, Raster raster);

    bool m_bCrFirst;
    std::mutex m_mutex;
    std::map<std::string, Raster> m_vPictures;
    std::map<std::string, Frame> m_vFrames;
};

}  // namespace vkr::tool
