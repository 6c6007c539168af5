#pragma once

#include <cstdint>

namespace vkr {

// Pixels of a row, interleaved in memory, as one plane per channel and back: the arithmetic between the two is then
// plain loops over samples that the compiler vectorises. Nothing beyond nCount pixels is read or written. Planes and
// rows never overlap. The plain forms are the definitions; every instruction set gives their bytes.

// Pixels handled at a time. The planes of all exposures then stay in the first cache, and on the stack.
constexpr int kRunPixels = 256;

// Any nDim from 1 to 8; 3 is the fast one.
void SplitPixelRow(const uint8_t* pSrc, uint8_t* const* vPlanes, int nCount, int nDim);
void SplitPixelRowScalar(const uint8_t* pSrc, uint8_t* const* vPlanes, int nCount, int nDim);

// Three channels.
void JoinPixelRow(const uint8_t* const* vPlanes, uint8_t* pDst, int nCount);
void JoinPixelRow(const int16_t* const* vPlanes, int16_t* pDst, int nCount);
template <class T>
void JoinPixelRowScalar(const T* const* vPlanes, T* pDst, int nCount)
{
    for (int i = 0; i < 3 * nCount; ++i) pDst[i] = vPlanes[i % 3][i / 3];
}

}  // namespace vkr
