#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace vkr {

// A face as the network sees it: corners x1, y1, x2, y2 in pixels of the picture it was looked for in, not clipped.
struct FaceBoxRecord {
    double dScore;
    std::array<double, 4> vCoord;
};

// One output of the network; the interpreter owns the samples.
struct TensorRecord {
    bool bFloat;    // samples are 32-bit floats
    int32_t nDims;  // of vDims only the first 4 are held
    int32_t vDims[4];
    const void* pData;
    size_t nBytes;
};

}  // namespace vkr
