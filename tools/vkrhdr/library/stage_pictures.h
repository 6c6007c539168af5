#pragma once

#include <map>
#include <mutex>
#include <string>

#include "library/stage_listeners.h"
#include "pictures/picture_io.h"

namespace vkr::tool {

// Writes every picture that the stages show into a folder as PNG. One grey picture for 1 channel, one coloured for 3,
// else three channels a picture. Signed 16-bit samples v are shown as v / 2 + 128, clamped.
class StagePictures : public StageListener {
public:
    // bCrFirst: the chroma order of the frames. BurstError when the folder can not be made; a picture that can not be
    // written is thrown once the library is done, see StageListeners.
    StagePictures(const std::string& sFolder, bool bCrFirst);

    void OnRenderBegins() override;  // removes all it wrote
    void OnImage(const std::string& sName, const CImage& image) override;
    void OnShortImage(const std::string& sName, const CShortImage& image) override;
    void OnYuvImage(const std::string& sName, const CYuvImage& image) override;

    int Count() const { return static_cast<int>(m_vPaths.size()); }

private:
    template <class Image>
    void WriteChannels(const std::string& sName, const Image& image);
    void WriteStage(const std::string& sName, const Raster& raster);

    std::mutex m_mutex;
    std::string m_sFolder;
    bool m_bCrFirst;
    std::vector<std::string> m_vPaths;   // written
    std::map<std::string, int> m_vSeen;  // how often a name came
};

}  // namespace vkr::tool
