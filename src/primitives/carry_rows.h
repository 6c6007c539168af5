#pragma once

#include <cstdint>
#include <type_traits>

namespace vkr {

// The end of every filter: a row of sums in fixed point becomes samples, and the remainder is either dropped or carried
// along the raster, from each pixel to the next of its channel and across the ends of rows.
//
//   pSums     nCount sums, 8-bit samples in unsigned 16 bits (0 .. 255 << nShift, nShift 1 .. 8), signed samples in 32
//   pDst      nCount samples; overlaps no source
//   nCount    samples of the row, a multiple of nDim where there is a carry
//   nShift    a sample is sum / (1 << nShift), truncated toward zero, or rounded down in the Floor forms; unsigned sums
//             know no difference
//   nRound    added first; the sum must fit the type then
//   pCarry    nDim remainders, 0 at the start of the raster; Remainder tells the type, what it holds is private to
//             these functions
//   threads   any number, on different destinations and remainders

// In 8 bits the fraction of a sample in 1/256, so that behind sums of shift 8 it is their total modulo 256; in 16 bits
// the remainder itself, which has the sign of the sum, or in the Floor forms is never below 0. The two do not mix along
// one raster.
template <class T>
using Remainder = std::conditional_t<sizeof(T) == 1, uint8_t, int32_t>;

void DropRow(const uint16_t* pSums, uint8_t* pDst, int nCount, int nShift, int nRound);
void DropRow(const int32_t* pSums, int16_t* pDst, int nCount, int nShift, int nRound);
template <class Sum, class T>
void DropRowScalar(const Sum* pSums, T* pDst, int nCount, int nShift, int nRound)
{
    for (int i = 0; i < nCount; ++i) pDst[i] = static_cast<T>((pSums[i] + nRound) / (1 << nShift));
}

// The 8-bit carry has a vector form; the plain forms are the definitions and give the same bytes.
void CarryRow(const uint16_t* pSums, uint8_t* pDst, int nCount, int nDim, int nShift, uint8_t* pCarry);
void CarryRow(const int32_t* pSums, int16_t* pDst, int nCount, int nDim, int nShift, int32_t* pCarry);
void CarryRowScalar(const uint16_t* pSums, uint8_t* pDst, int nCount, int nDim, int nShift, uint8_t* pCarry);

// Signed sums rounded down, as a plain shift does: the pyramids truncate, the smoothing floors.
void FloorRow(const int32_t* pSums, int16_t* pDst, int nCount, int nShift, int nRound);
void FloorRowScalar(const int32_t* pSums, int16_t* pDst, int nCount, int nShift, int nRound);
void FloorCarryRow(const int32_t* pSums, int16_t* pDst, int nCount, int nDim, int nShift, int32_t* pCarry);

// Either of the truncating two, without rounding where the remainder is dropped.
template <class T, class Sum>
void FinishRow(const Sum* pSums, T* pDst, int nCount, int nDim, int nShift, bool bCarry, Remainder<T>* pCarry)
{
    if (bCarry) {
        CarryRow(pSums, pDst, nCount, nDim, nShift, pCarry);
    } else {
        DropRow(pSums, pDst, nCount, nShift, 0);
    }
}

}  // namespace vkr
