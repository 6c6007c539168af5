#pragma once

#include <cstddef>
#include <cstdint>
#include <type_traits>

namespace vkr {

// One output row of the low-pass filters: the binomial taps 1 4 6 4 1 (weight 16) and 1 5 10 10 5 1 (weight 32), both
// ways. The column sums come first, over the full rows; nothing is rounded between the two directions, so the order
// does not show in the bytes.
//
//   vRows      5 or 6 source rows from top to bottom, w * nDim samples each; rows outside the picture are the caller's
//              choice, the same pointer may stand several times
//   pSums      sums of weight 256 (5 taps) or 1024 (6 taps), nothing dropped
//   w, nDim    pixels of a source row and channels, >= 1; halvings take an even w
//   pScratch   TapScratch(w, nDim) samples of the sum type, this thread's own
//   threads    any number, on different destinations and scratch
//
// Source and destination must not overlap. The plain forms are the definitions, sample by sample, and need no scratch.

// 8-bit samples are summed in 16 bits (255 * 256 = 65280 fits), 16-bit ones in 32.
template <class T>
using TapSum = std::conditional_t<sizeof(T) == 1, uint16_t, int32_t>;

size_t TapScratch(int w, int nDim);

// 5 taps at every pixel, the nearest pixel repeated outside: w * nDim sums.
void SmoothRow5(const uint8_t* const* vRows, uint16_t* pSums, int w, int nDim, uint16_t* pScratch);
void SmoothRow5(const int16_t* const* vRows, int32_t* pSums, int w, int nDim, int32_t* pScratch);
template <class T>
void SmoothRow5Scalar(const T* const* vRows, TapSum<T>* pSums, int w, int nDim, TapSum<T>*);

// 5 taps centred on every even pixel, the nearest pixel repeated outside: w / 2 * nDim sums.
void HalveRow5(const uint8_t* const* vRows, uint16_t* pSums, int w, int nDim, uint16_t* pScratch);
void HalveRow5(const int16_t* const* vRows, int32_t* pSums, int w, int nDim, int32_t* pScratch);
template <class T>
void HalveRow5Scalar(const T* const* vRows, TapSum<T>* pSums, int w, int nDim, TapSum<T>*);

// What the two pixels behind the last one are. Before the first it is always the first one.
enum class FarEdge {
    kRepeatPair,   // the last two again, in their order: the last output weighs them 15 and 11
    kRepeatPixel,  // the last one twice: 16 and 16 where the row has no other pixels
};

// 6 taps centred between every two pixels: w / 2 * nDim samples, the sum shifted right by 10 (a floor, also below 0),
// with FarEdge::kRepeatPair.
void HalveRow6(const uint8_t* const* vRows, uint8_t* pDst, int w, int nDim, uint16_t* pScratch);
void HalveRow6(const int16_t* const* vRows, int16_t* pDst, int w, int nDim, int32_t* pScratch);
template <class T>
void HalveRow6Scalar(const T* const* vRows, T* pDst, int w, int nDim, TapSum<T>*);

// The same up to the sums.
void HalveRow6Sums(const int16_t* const* vRows, int32_t* pSums, int w, int nDim, FarEdge edge, int32_t* pScratch);
void HalveRow6SumsScalar(const int16_t* const* vRows, int32_t* pSums, int w, int nDim, FarEdge edge, int32_t*);

}  // namespace vkr
