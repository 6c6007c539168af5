#pragma once

#include <vector>

#include "face/face_box.h"

namespace vkr::tool {

enum class FaceSource {
    kByPreset,  // the photo preset lets the network look; else as the parameters say
    kNone,
    kNetwork,
    kBoxes,
};

enum class FaceLook { kByParameters, kCurve, kHsv };

// Whose face the tone follows, and how.
struct FaceChoice {
    FaceSource source = FaceSource::kByPreset;
    std::vector<FaceBox> vBoxes;  // with kBoxes, 1 or more: pixels of the frames as they are stored
    FaceLook look = FaceLook::kByParameters;
};

}  // namespace vkr::tool
