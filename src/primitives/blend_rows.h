#pragma once

#include <cstddef>
#include <cstdint>

namespace vkr {

// The two directions of a doubling, a row at a time: a source row is widened to twice its pixels, then two widened rows
// (three in the filtered form) are blended into an output row. Widened rows keep fractional bits; what the blends do
// with them is told below.
//
//   w, nDim   pixels of the source row and channels, >= 1
//   nCount    samples of an output row, 2 * w * nDim
//   threads   any number, on different destinations and scratch
//
// Destinations overlap no source. Sources may be the same row. The plain forms are the definitions, sample by sample,
// and need no scratch.

// Samples of a widened row, with the room behind it that Widen* needs, and of the scratch of one thread for widening.
size_t WideRowSamples(int w, int nDim);
size_t WidenScratch(int w, int nDim);

// Filtered form, Q1: pixel 2x is (s(x - 1) + 6 * s(x) + s(x + 1)) / 4, truncated toward zero, pixel 2x + 1 is
// s(x) + s(x + 1); outside the row the nearest pixel repeats.
void WidenRow161(const uint8_t* pRow, uint16_t* pWide, int w, int nDim, uint16_t* pScratch);
void WidenRow161(const int16_t* pRow, int32_t* pWide, int w, int nDim, int32_t* pScratch);
template <class T, class Wide>
void WidenRow161Scalar(const T* pRow, Wide* pWide, int w, int nDim, Wide*);

// 3:1 form, Q2, exact: pixel 2x is s(x - 1) + 3 * s(x), pixel 2x + 1 is 3 * s(x) + s(x + 1), the nearest pixel repeated
// outside, so that the end pixels are 4 * s. The 16-bit rows of signed samples wrap above 8191.
void WidenRow31(const uint8_t* pRow, uint16_t* pWide, int w, int nDim, uint16_t* pScratch);
void WidenRow31(const int16_t* pRow, int16_t* pWide, int w, int nDim, int16_t* pScratch);
void WidenRow31(const int16_t* pRow, int32_t* pWide, int w, int nDim, int32_t* pScratch);
template <class T, class Wide>
void WidenRow31Scalar(const T* pRow, Wide* pWide, int w, int nDim, Wide*);

// Filtered form, sums in Q2 for an even output row, (a + 6 * b + c) / 4 truncated toward zero, b the nearest source
// row, and for an odd one, b + c.
void SumRows161(const uint16_t* pA, const uint16_t* pB, const uint16_t* pC, uint16_t* pSums, int nCount);
void SumRows161(const int32_t* pA, const int32_t* pB, const int32_t* pC, int32_t* pSums, int nCount);
void SumRows11(const uint16_t* pB, const uint16_t* pC, uint16_t* pSums, int nCount);
void SumRows11(const int32_t* pB, const int32_t* pC, int32_t* pSums, int nCount);
template <class Wide>
void SumRows161Scalar(const Wide* pA, const Wide* pB, const Wide* pC, Wide* pSums, int nCount);
template <class Wide>
void SumRows11Scalar(const Wide* pB, const Wide* pC, Wide* pSums, int nCount);

// 3:1 form, sums in Q4: 3 * near + far. Twice the same row gives the end rows.
void SumRows31(const int32_t* pNear, const int32_t* pFar, int32_t* pSums, int nCount);
void SumRows31Scalar(const int32_t* pNear, const int32_t* pFar, int32_t* pSums, int nCount);

// 3:1 form to samples: (3 * near + far) / 16, truncated toward zero. In the signed form the sum wraps at 16 bits, which
// needs samples above 2047; its end rows are QuarterRow, the row / 4, truncated toward zero.
void BlendRows31(const uint16_t* pNear, const uint16_t* pFar, uint8_t* pDst, int nCount);
void BlendRows31(const int16_t* pNear, const int16_t* pFar, int16_t* pDst, int nCount);
template <class Wide, class T>
void BlendRows31Scalar(const Wide* pNear, const Wide* pFar, T* pDst, int nCount);
void QuarterRow(const int16_t* pRow, int16_t* pDst, int nCount);
void QuarterRowScalar(const int16_t* pRow, int16_t* pDst, int nCount);

}  // namespace vkr
