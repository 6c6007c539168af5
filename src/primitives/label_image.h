#pragma once

#include <cstddef>
#include <cstdint>

namespace vkr {

// One label per pixel: 0 background, regions from 1. A plain record under the rules of foundation/image.h: zero-filled
// is empty, the buffer comes from the pool and is given back by Release, two records never share one. Rows are tight.
struct CLabelImage {
    int32_t nWidth, nHeight;
    int32_t* pData;
    uint32_t nCapacity;  // bytes held by pData

    // Keeps the old labels of a reused buffer. False, with the record empty, when there is no memory, a size is
    // negative or the labels do not fit 32 bits of bytes.
    bool Allocate(int w, int h);
    void Release();

    // 0 <= y < nHeight.
    int32_t* Row(int y) { return pData + static_cast<size_t>(y) * static_cast<size_t>(nWidth); }
    const int32_t* Row(int y) const { return pData + static_cast<size_t>(y) * static_cast<size_t>(nWidth); }
    size_t Samples() const { return static_cast<size_t>(nWidth) * static_cast<size_t>(nHeight); }
    bool Empty() const { return pData == nullptr || nWidth <= 0 || nHeight <= 0; }
};

}  // namespace vkr
