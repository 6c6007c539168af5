#include "primitives/tap_rows.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "primitives/tap_rows.cpp"
#include <hwy/foreach_target.h>  // compiles this file once per instruction set

#include <hwy/highway.h>

#include <algorithm>

#include "primitives/pixel_pairs-inl.h"

// The loops are plain ones over flat rows of samples, which the compiler vectorises for each instruction set: a
// neighbour pixel stands nDim samples away, whatever nDim is.
HWY_BEFORE_NAMESPACE();
namespace vkr {
namespace HWY_NAMESPACE {
namespace {

struct Taps5 {
    template <class T, class Sum>
    static void Columns(const T* const* vRows, Sum* HWY_RESTRICT pDst, int nCount)
    {
        const T *HWY_RESTRICT r0 = vRows[0], *HWY_RESTRICT r1 = vRows[1], *HWY_RESTRICT r2 = vRows[2];
        const T *HWY_RESTRICT r3 = vRows[3], *HWY_RESTRICT r4 = vRows[4];
        for (int i = 0; i < nCount; ++i) {
            pDst[i] = static_cast<Sum>(r0[i] + r4[i] + 4 * (r1[i] + r3[i]) + 6 * r2[i]);
        }
    }
};

struct Taps6 {
    template <class T, class Sum>
    static void Columns(const T* const* vRows, Sum* HWY_RESTRICT pDst, int nCount)
    {
        const T *HWY_RESTRICT r0 = vRows[0], *HWY_RESTRICT r1 = vRows[1], *HWY_RESTRICT r2 = vRows[2];
        const T *HWY_RESTRICT r3 = vRows[3], *HWY_RESTRICT r4 = vRows[4], *HWY_RESTRICT r5 = vRows[5];
        for (int i = 0; i < nCount; ++i) {
            pDst[i] = static_cast<Sum>(r0[i] + r5[i] + 5 * (r1[i] + r4[i]) + 10 * (r2[i] + r3[i]));
        }
    }
};

// Column sums of one row, its even and its odd pixels apart, each with one pixel more on either side.
template <class Sum>
struct SplitRow {
    const Sum* pEven;
    const Sum* pOdd;
    int nCount;  // samples of either, without the edges
};

template <class Taps, class T, class Sum>
SplitRow<Sum> SplitColumns(const T* const* vRows, int w, int nDim, FarEdge edge, Sum* pScratch)
{
    const int nCount = w / 2 * nDim;
    Sum* const pColumns = pScratch;
    Sum* const pEven = pColumns + 2 * nCount + kPixelSlack + nDim;
    Sum* const pOdd = pEven + nCount + kPixelSlack + 2 * nDim;
    Taps::Columns(vRows, pColumns, 2 * nCount);
    SplitPixels(pColumns, pEven, pOdd, w / 2, nDim);
    const int nLast = nCount - nDim;
    for (int c = 0; c < nDim; ++c) {
        pEven[c - nDim] = pOdd[c - nDim] = pEven[c];
        pEven[nCount + c] = edge == FarEdge::kRepeatPair ? pEven[nLast + c] : pOdd[nLast + c];
        pOdd[nCount + c] = pOdd[nLast + c];
    }
    return {pEven, pOdd, nCount};
}

template <class Sum>
void SumPairs5(const SplitRow<Sum>& row, int nDim, Sum* HWY_RESTRICT pSums)
{
    const Sum *HWY_RESTRICT e = row.pEven, *HWY_RESTRICT o = row.pOdd;
    const Sum *HWY_RESTRICT eBefore = e - nDim, *HWY_RESTRICT oBefore = o - nDim, *HWY_RESTRICT eAfter = e + nDim;
    for (int i = 0; i < row.nCount; ++i) {
        pSums[i] = static_cast<Sum>(eBefore[i] + eAfter[i] + 4 * (oBefore[i] + o[i]) + 6 * e[i]);
    }
}

template <class Finish, class Out>
void SumPairs6(const SplitRow<int32_t>& row, int nDim, Out* HWY_RESTRICT pDst, const Finish& finish)
{
    const int32_t *HWY_RESTRICT e = row.pEven, *HWY_RESTRICT o = row.pOdd;
    const int32_t *HWY_RESTRICT eBefore = e - nDim, *HWY_RESTRICT oBefore = o - nDim;
    const int32_t *HWY_RESTRICT eAfter = e + nDim, *HWY_RESTRICT oAfter = o + nDim;
    for (int i = 0; i < row.nCount; ++i) {
        pDst[i] = finish(eBefore[i] + oAfter[i] + 5 * (oBefore[i] + eAfter[i]) + 10 * (e[i] + o[i]));
    }
}

// The 18-bit sum a + 5 * b + 10 * c, shifted right by 10, without leaving 16 bits. A column sum is at most 8160. With
// d = b + 2 * c (at most 48960) the sum is 4 * d + (d + a), so that its quotient by 1024 is that of d + (d + a) / 4 by
// 256: d + a and d + (d + a) / 4 are at most 65280 both.
void ShiftPairs6(const SplitRow<uint16_t>& row, int nDim, uint8_t* HWY_RESTRICT pDst)
{
    const uint16_t *HWY_RESTRICT e = row.pEven, *HWY_RESTRICT o = row.pOdd;
    const uint16_t *HWY_RESTRICT eBefore = e - nDim, *HWY_RESTRICT oBefore = o - nDim;
    const uint16_t *HWY_RESTRICT eAfter = e + nDim, *HWY_RESTRICT oAfter = o + nDim;
    for (int i = 0; i < row.nCount; ++i) {
        const uint16_t a = static_cast<uint16_t>(eBefore[i] + oAfter[i]);
        const uint16_t d = static_cast<uint16_t>(oBefore[i] + eAfter[i] + 2 * (e[i] + o[i]));
        const uint16_t nQuarter = static_cast<uint16_t>(static_cast<uint16_t>(a + d) >> 2);
        pDst[i] = static_cast<uint8_t>(static_cast<uint16_t>(d + nQuarter) >> 8);
    }
}

template <class T, class Sum>
void Smooth5(const T* const* vRows, Sum* HWY_RESTRICT pSums, int w, int nDim, Sum* pScratch)
{
    const int nCount = w * nDim;
    Sum* const pRow = pScratch + 2 * nDim;
    Taps5::Columns(vRows, pRow, nCount);
    for (int c = 0; c < nDim; ++c) {
        pRow[c - 2 * nDim] = pRow[c - nDim] = pRow[c];
        pRow[nCount + c] = pRow[nCount + nDim + c] = pRow[nCount - nDim + c];
    }
    const Sum *HWY_RESTRICT s0 = pRow - 2 * nDim, *HWY_RESTRICT s1 = pRow - nDim, *HWY_RESTRICT s2 = pRow;
    const Sum *HWY_RESTRICT s3 = pRow + nDim, *HWY_RESTRICT s4 = pRow + 2 * nDim;
    for (int i = 0; i < nCount; ++i) pSums[i] = static_cast<Sum>(s0[i] + s4[i] + 4 * (s1[i] + s3[i]) + 6 * s2[i]);
}

template <class T, class Sum>
void Halve5(const T* const* vRows, Sum* pSums, int w, int nDim, Sum* pScratch)
{
    SumPairs5(SplitColumns<Taps5>(vRows, w, nDim, FarEdge::kRepeatPixel, pScratch), nDim, pSums);
}

}  // namespace

void Smooth5U8(const uint8_t* const* vRows, uint16_t* pSums, int w, int nDim, uint16_t* pScratch)
{
    Smooth5(vRows, pSums, w, nDim, pScratch);
}

void Smooth5S16(const int16_t* const* vRows, int32_t* pSums, int w, int nDim, int32_t* pScratch)
{
    Smooth5(vRows, pSums, w, nDim, pScratch);
}

void Halve5U8(const uint8_t* const* vRows, uint16_t* pSums, int w, int nDim, uint16_t* pScratch)
{
    Halve5(vRows, pSums, w, nDim, pScratch);
}

void Halve5S16(const int16_t* const* vRows, int32_t* pSums, int w, int nDim, int32_t* pScratch)
{
    Halve5(vRows, pSums, w, nDim, pScratch);
}

void Halve6U8(const uint8_t* const* vRows, uint8_t* pDst, int w, int nDim, uint16_t* pScratch)
{
    ShiftPairs6(SplitColumns<Taps6>(vRows, w, nDim, FarEdge::kRepeatPair, pScratch), nDim, pDst);
}

void Halve6S16(const int16_t* const* vRows, int16_t* pDst, int w, int nDim, int32_t* pScratch)
{
    SumPairs6(SplitColumns<Taps6>(vRows, w, nDim, FarEdge::kRepeatPair, pScratch), nDim, pDst,
              [](int32_t nSum) { return static_cast<int16_t>(nSum >> 10); });
}

void Halve6S16Sums(const int16_t* const* vRows, int32_t* pSums, int w, int nDim, FarEdge edge, int32_t* pScratch)
{
    SumPairs6(SplitColumns<Taps6>(vRows, w, nDim, edge, pScratch), nDim, pSums, [](int32_t nSum) { return nSum; });
}

}  // namespace HWY_NAMESPACE
}  // namespace vkr
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace vkr {

// The columns, then the even and the odd pixels with their edges; smoothing needs less.
size_t TapScratch(int w, int nDim)
{
    return static_cast<size_t>(2) * w * nDim + static_cast<size_t>(8) * nDim + 3 * HWY_NAMESPACE::kPixelSlack;
}

namespace {

constexpr int kTaps5[] = {1, 4, 6, 4, 1}, kTaps6[] = {1, 5, 10, 10, 5, 1};

// Weighted sum of channel c over the columns x .. x + nTaps - 1. Left of the row stands its first pixel; right of it
// the last one, or the last two once more.
template <class T>
int32_t WindowSum(const T* const* vRows, const int* pTaps, int nTaps, int x, int c, int w, int nDim, FarEdge edge)
{
    int32_t nSum = 0;
    for (int k = 0; k < nTaps; ++k) {
        int nColumn = std::max(x + k, 0);
        if (nColumn >= w) nColumn = edge == FarEdge::kRepeatPair && nColumn == w ? w - 2 : w - 1;
        for (int j = 0; j < nTaps; ++j) nSum += pTaps[k] * pTaps[j] * vRows[j][nColumn * nDim + c];
    }
    return nSum;
}

}  // namespace

template <class T>
void SmoothRow5Scalar(const T* const* vRows, TapSum<T>* pSums, int w, int nDim, TapSum<T>*)
{
    for (int i = 0; i < w * nDim; ++i) {
        const int32_t nSum = WindowSum(vRows, kTaps5, 5, i / nDim - 2, i % nDim, w, nDim, FarEdge::kRepeatPixel);
        pSums[i] = static_cast<TapSum<T>>(nSum);
    }
}
template void SmoothRow5Scalar(const uint8_t* const*, uint16_t*, int, int, uint16_t*);
template void SmoothRow5Scalar(const int16_t* const*, int32_t*, int, int, int32_t*);

template <class T>
void HalveRow5Scalar(const T* const* vRows, TapSum<T>* pSums, int w, int nDim, TapSum<T>*)
{
    for (int i = 0; i < w / 2 * nDim; ++i) {
        const int x = 2 * (i / nDim) - 2;
        pSums[i] = static_cast<TapSum<T>>(WindowSum(vRows, kTaps5, 5, x, i % nDim, w, nDim, FarEdge::kRepeatPixel));
    }
}
template void HalveRow5Scalar(const uint8_t* const*, uint16_t*, int, int, uint16_t*);
template void HalveRow5Scalar(const int16_t* const*, int32_t*, int, int, int32_t*);

template <class T>
void HalveRow6Scalar(const T* const* vRows, T* pDst, int w, int nDim, TapSum<T>*)
{
    for (int i = 0; i < w / 2 * nDim; ++i) {
        const int x = 2 * (i / nDim) - 2;
        pDst[i] = static_cast<T>(WindowSum(vRows, kTaps6, 6, x, i % nDim, w, nDim, FarEdge::kRepeatPair) >> 10);
    }
}
template void HalveRow6Scalar(const uint8_t* const*, uint8_t*, int, int, uint16_t*);
template void HalveRow6Scalar(const int16_t* const*, int16_t*, int, int, int32_t*);

void HalveRow6SumsScalar(const int16_t* const* vRows, int32_t* pSums, int w, int nDim, FarEdge edge, int32_t*)
{
    for (int i = 0; i < w / 2 * nDim; ++i) {
        pSums[i] = WindowSum(vRows, kTaps6, 6, 2 * (i / nDim) - 2, i % nDim, w, nDim, edge);
    }
}

HWY_EXPORT(Smooth5U8);
HWY_EXPORT(Smooth5S16);
HWY_EXPORT(Halve5U8);
HWY_EXPORT(Halve5S16);
HWY_EXPORT(Halve6U8);
HWY_EXPORT(Halve6S16);
HWY_EXPORT(Halve6S16Sums);

void SmoothRow5(const uint8_t* const* vRows, uint16_t* pSums, int w, int nDim, uint16_t* pScratch)
{
    HWY_DYNAMIC_DISPATCH(Smooth5U8)(vRows, pSums, w, nDim, pScratch);
}

void SmoothRow5(const int16_t* const* vRows, int32_t* pSums, int w, int nDim, int32_t* pScratch)
{
    HWY_DYNAMIC_DISPATCH(Smooth5S16)(vRows, pSums, w, nDim, pScratch);
}

void HalveRow5(const uint8_t* const* vRows, uint16_t* pSums, int w, int nDim, uint16_t* pScratch)
{
    HWY_DYNAMIC_DISPATCH(Halve5U8)(vRows, pSums, w, nDim, pScratch);
}

void HalveRow5(const int16_t* const* vRows, int32_t* pSums, int w, int nDim, int32_t* pScratch)
{
    HWY_DYNAMIC_DISPATCH(Halve5S16)(vRows, pSums, w, nDim, pScratch);
}

void HalveRow6(const uint8_t* const* vRows, uint8_t* pDst, int w, int nDim, uint16_t* pScratch)
{
    HWY_DYNAMIC_DISPATCH(Halve6U8)(vRows, pDst, w, nDim, pScratch);
}

void HalveRow6(const int16_t* const* vRows, int16_t* pDst, int w, int nDim, int32_t* pScratch)
{
    HWY_DYNAMIC_DISPATCH(Halve6S16)(vRows, pDst, w, nDim, pScratch);
}

void HalveRow6Sums(const int16_t* const* vRows, int32_t* pSums, int w, int nDim, FarEdge edge, int32_t* pScratch)
{
    HWY_DYNAMIC_DISPATCH(Halve6S16Sums)(vRows, pSums, w, nDim, edge, pScratch);
}

}  // namespace vkr
#endif  // HWY_ONCE
