#pragma once

#include <cstdint>

namespace vkr {

// A face box in pixels; all zero means no face.
struct FaceBox {
    int32_t x1 = 0, y1 = 0, x2 = 0, y2 = 0;
};

// The faces that the host passed with a burst, in frame pixels. A view.
struct HostFaces {
    const FaceBox* pFaces = nullptr;
    int nCount = 0;
};

}  // namespace vkr
