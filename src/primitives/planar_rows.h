#pragma once

#include <cstdint>

namespace vkr {

// Pixels of a row, interleaved in memory, as one plane per channel and back: the arithmetic between the two is then
// plain loops over samples that the compiler vectorises. Nothing beyond nCount pixels is read or written. Planes and
// rows never overlap. Same bytes on every instruction set.

// Pixels handled at a time. The planes of all exposures then stay in the first cache, and on the stack.
constexpr int kRunPixels = 256;

// Any nDim from 1 to 8; 3 is the fast one.
void SplitPixelRow(const uint8_t* pSrc, uint8_t* const* vPlanes, int nCount, int nDim);

// Three channels.
void JoinPixelRow(const uint8_t* const* vPlanes, uint8_t* pDst, int nCount);
void JoinPixelRow(const int16_t* const* vPlanes, int16_t* pDst, int nCount);

}  // namespace vkr
