#pragma once

#include <string>

namespace vkr::tool {

// Writes every picture that the stages show into a folder as PNG, from the constructor to the destructor; one at a
// time. One grey picture for 1 channel, one coloured for 3, else three channels a picture. Signed 16-bit samples v are
// shown as v / 2 + 128, clamped.
class StagePictures {
public:
    // bCrFirst: the chroma order of the frames. BurstError when the folder can not be made.
    StagePictures(const std::string& sFolder, bool bCrFirst);
    ~StagePictures();
    StagePictures(const StagePictures&) = delete;
    StagePictures& operator=(const StagePictures&) = delete;

    int Count() const;

    // Throws the first error that writing met, as a BurstError.
    void CheckWritten() const;
};

}  // namespace vkr::tool
