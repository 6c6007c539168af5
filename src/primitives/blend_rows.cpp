#include "primitives/blend_rows.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "primitives/blend_rows.cpp"
#include <hwy/foreach_target.h>  // compiles this file once per instruction set

#include <hwy/highway.h>

#include <algorithm>

#include "primitives/pixel_pairs-inl.h"

// As in the tap rows the compiler vectorises plain loops over flat rows, where a neighbour pixel is nDim samples away.
HWY_BEFORE_NAMESPACE();
namespace vkr {
namespace HWY_NAMESPACE {
namespace {

struct Widen161 {
    template <class Wide>
    static Wide Even(int32_t nBefore, int32_t nHere, int32_t nAfter)
    {
        return static_cast<Wide>((nBefore + 6 * nHere + nAfter) / 4);
    }
    template <class Wide>
    static Wide Odd(int32_t nHere, int32_t nAfter)
    {
        return static_cast<Wide>(nHere + nAfter);
    }
};

struct Widen31 {
    template <class Wide>
    static Wide Even(int32_t nBefore, int32_t nHere, int32_t)
    {
        return static_cast<Wide>(nBefore + 3 * nHere);
    }
    template <class Wide>
    static Wide Odd(int32_t nHere, int32_t nAfter)
    {
        return static_cast<Wide>(3 * nHere + nAfter);
    }
};

// The row with the edge pixels repeated once on either side, in the wide type, stands at the start of the scratch; the
// even and the odd output pixels behind it.
template <class Kernel, class T, class Wide>
void Widen(const T* HWY_RESTRICT pRow, Wide* HWY_RESTRICT pWide, int w, int nDim, Wide* pScratch)
{
    const int nCount = w * nDim;
    Wide* const pHere = pScratch + nDim;
    for (int i = 0; i < nCount; ++i) pHere[i] = pRow[i];
    for (int c = 0; c < nDim; ++c) {
        pHere[c - nDim] = pHere[c];
        pHere[nCount + c] = pHere[nCount - nDim + c];
    }
    const Wide *HWY_RESTRICT b = pHere - nDim, *HWY_RESTRICT h = pHere, *HWY_RESTRICT a = pHere + nDim;
    if (nDim == 1) {
        for (int i = 0; i < nCount; ++i) {
            pWide[2 * i] = Kernel::template Even<Wide>(b[i], h[i], a[i]);
            pWide[2 * i + 1] = Kernel::template Odd<Wide>(h[i], a[i]);
        }
        return;
    }
    Wide* HWY_RESTRICT pEven = pHere + nCount + nDim;
    Wide* HWY_RESTRICT pOdd = pEven + nCount + kPixelSlack;
    for (int i = 0; i < nCount; ++i) {
        pEven[i] = Kernel::template Even<Wide>(b[i], h[i], a[i]);
        pOdd[i] = Kernel::template Odd<Wide>(h[i], a[i]);
    }
    MergePixels(pEven, pOdd, pWide, w, nDim);
}

template <class Wide>
void Sum161(const Wide* HWY_RESTRICT a, const Wide* HWY_RESTRICT b, const Wide* HWY_RESTRICT c,
            Wide* HWY_RESTRICT pSums, int nCount)
{
    for (int i = 0; i < nCount; ++i) pSums[i] = static_cast<Wide>((a[i] + 6 * b[i] + c[i]) / 4);
}

template <class Wide>
void Sum11(const Wide* HWY_RESTRICT b, const Wide* HWY_RESTRICT c, Wide* HWY_RESTRICT pSums, int nCount)
{
    for (int i = 0; i < nCount; ++i) pSums[i] = static_cast<Wide>(b[i] + c[i]);
}

}  // namespace

void Widen161U8(const uint8_t* pRow, uint16_t* pWide, int w, int nDim, uint16_t* pScratch)
{
    Widen<Widen161>(pRow, pWide, w, nDim, pScratch);
}

void Widen161S16(const int16_t* pRow, int32_t* pWide, int w, int nDim, int32_t* pScratch)
{
    Widen<Widen161>(pRow, pWide, w, nDim, pScratch);
}

void Widen31U8(const uint8_t* pRow, uint16_t* pWide, int w, int nDim, uint16_t* pScratch)
{
    Widen<Widen31>(pRow, pWide, w, nDim, pScratch);
}

void Widen31S16Wrap(const int16_t* pRow, int16_t* pWide, int w, int nDim, int16_t* pScratch)
{
    Widen<Widen31>(pRow, pWide, w, nDim, pScratch);
}

void Widen31S16(const int16_t* pRow, int32_t* pWide, int w, int nDim, int32_t* pScratch)
{
    Widen<Widen31>(pRow, pWide, w, nDim, pScratch);
}

void Sum161U16(const uint16_t* pA, const uint16_t* pB, const uint16_t* pC, uint16_t* pSums, int nCount)
{
    Sum161(pA, pB, pC, pSums, nCount);
}

void Sum161S32(const int32_t* pA, const int32_t* pB, const int32_t* pC, int32_t* pSums, int nCount)
{
    Sum161(pA, pB, pC, pSums, nCount);
}

void Sum11U16(const uint16_t* pB, const uint16_t* pC, uint16_t* pSums, int nCount)
{
    Sum11(pB, pC, pSums, nCount);
}

void Sum11S32(const int32_t* pB, const int32_t* pC, int32_t* pSums, int nCount)
{
    Sum11(pB, pC, pSums, nCount);
}

void Sum31S32(const int32_t* HWY_RESTRICT pNear, const int32_t* HWY_RESTRICT pFar, int32_t* HWY_RESTRICT pSums,
              int nCount)
{
    for (int i = 0; i < nCount; ++i) pSums[i] = 3 * pNear[i] + pFar[i];
}

// 3 * 1020 + 1020 = 4080 needs 12 bits.
void Blend31U8(const uint16_t* HWY_RESTRICT pNear, const uint16_t* HWY_RESTRICT pFar, uint8_t* HWY_RESTRICT pDst,
               int nCount)
{
    for (int i = 0; i < nCount; ++i) {
        pDst[i] = static_cast<uint8_t>(static_cast<uint16_t>(3 * pNear[i] + pFar[i]) >> 4);
    }
}

void Blend31S16(const int16_t* HWY_RESTRICT pNear, const int16_t* HWY_RESTRICT pFar, int16_t* HWY_RESTRICT pDst,
                int nCount)
{
    for (int i = 0; i < nCount; ++i) {
        const int16_t nSum = static_cast<int16_t>(3 * pNear[i] + pFar[i]);  // wraps
        pDst[i] = static_cast<int16_t>(nSum / 16);
    }
}

void QuarterS16(const int16_t* HWY_RESTRICT pRow, int16_t* HWY_RESTRICT pDst, int nCount)
{
    for (int i = 0; i < nCount; ++i) pDst[i] = static_cast<int16_t>(pRow[i] / 4);
}

}  // namespace HWY_NAMESPACE
}  // namespace vkr
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace vkr {

size_t WideRowSamples(int w, int nDim)
{
    return static_cast<size_t>(2) * w * nDim + HWY_NAMESPACE::kPixelSlack;
}

// The row with its edges, the even and the odd pixels.
size_t WidenScratch(int w, int nDim)
{
    return static_cast<size_t>(3) * w * nDim + static_cast<size_t>(2) * nDim + 2 * HWY_NAMESPACE::kPixelSlack;
}

HWY_EXPORT(Widen161U8);
HWY_EXPORT(Widen161S16);
HWY_EXPORT(Widen31U8);
HWY_EXPORT(Widen31S16Wrap);
HWY_EXPORT(Widen31S16);
HWY_EXPORT(Sum161U16);
HWY_EXPORT(Sum161S32);
HWY_EXPORT(Sum11U16);
HWY_EXPORT(Sum11S32);
HWY_EXPORT(Sum31S32);
HWY_EXPORT(Blend31U8);
HWY_EXPORT(Blend31S16);
HWY_EXPORT(QuarterS16);

void WidenRow161(const uint8_t* pRow, uint16_t* pWide, int w, int nDim, uint16_t* pScratch)
{
    HWY_DYNAMIC_DISPATCH(Widen161U8)(pRow, pWide, w, nDim, pScratch);
}

void WidenRow161(const int16_t* pRow, int32_t* pWide, int w, int nDim, int32_t* pScratch)
{
    HWY_DYNAMIC_DISPATCH(Widen161S16)(pRow, pWide, w, nDim, pScratch);
}

void WidenRow31(const uint8_t* pRow, uint16_t* pWide, int w, int nDim, uint16_t* pScratch)
{
    HWY_DYNAMIC_DISPATCH(Widen31U8)(pRow, pWide, w, nDim, pScratch);
}

void WidenRow31(const int16_t* pRow, int16_t* pWide, int w, int nDim, int16_t* pScratch)
{
    HWY_DYNAMIC_DISPATCH(Widen31S16Wrap)(pRow, pWide, w, nDim, pScratch);
}

void WidenRow31(const int16_t* pRow, int32_t* pWide, int w, int nDim, int32_t* pScratch)
{
    HWY_DYNAMIC_DISPATCH(Widen31S16)(pRow, pWide, w, nDim, pScratch);
}

void SumRows161(const uint16_t* pA, const uint16_t* pB, const uint16_t* pC, uint16_t* pSums, int nCount)
{
    HWY_DYNAMIC_DISPATCH(Sum161U16)(pA, pB, pC, pSums, nCount);
}

void SumRows161(const int32_t* pA, const int32_t* pB, const int32_t* pC, int32_t* pSums, int nCount)
{
    HWY_DYNAMIC_DISPATCH(Sum161S32)(pA, pB, pC, pSums, nCount);
}

void SumRows11(const uint16_t* pB, const uint16_t* pC, uint16_t* pSums, int nCount)
{
    HWY_DYNAMIC_DISPATCH(Sum11U16)(pB, pC, pSums, nCount);
}

void SumRows11(const int32_t* pB, const int32_t* pC, int32_t* pSums, int nCount)
{
    HWY_DYNAMIC_DISPATCH(Sum11S32)(pB, pC, pSums, nCount);
}

void SumRows31(const int32_t* pNear, const int32_t* pFar, int32_t* pSums, int nCount)
{
    HWY_DYNAMIC_DISPATCH(Sum31S32)(pNear, pFar, pSums, nCount);
}

void BlendRows31(const uint16_t* pNear, const uint16_t* pFar, uint8_t* pDst, int nCount)
{
    HWY_DYNAMIC_DISPATCH(Blend31U8)(pNear, pFar, pDst, nCount);
}

void BlendRows31(const int16_t* pNear, const int16_t* pFar, int16_t* pDst, int nCount)
{
    HWY_DYNAMIC_DISPATCH(Blend31S16)(pNear, pFar, pDst, nCount);
}

void QuarterRow(const int16_t* pRow, int16_t* pDst, int nCount)
{
    HWY_DYNAMIC_DISPATCH(QuarterS16)(pRow, pDst, nCount);
}

namespace {

// Sample i of a row of w pixels of nDim, its pixel moved by nMove and kept inside.
template <class T>
int32_t Neighbour(const T* pRow, int i, int nMove, int w, int nDim)
{
    return pRow[std::min(std::max(i / nDim + nMove, 0), w - 1) * nDim + i % nDim];
}

// Place of channel c of pixel 2x or 2x + 1 for sample i of the source row.
int WidePlace(int i, int nOdd, int nDim)
{
    return (2 * (i / nDim) + nOdd) * nDim + i % nDim;
}

}  // namespace

template <class T, class Wide>
void WidenRow161Scalar(const T* pRow, Wide* pWide, int w, int nDim, Wide*)
{
    for (int i = 0; i < w * nDim; ++i) {
        const int32_t nBefore = Neighbour(pRow, i, -1, w, nDim), nAfter = Neighbour(pRow, i, 1, w, nDim);
        pWide[WidePlace(i, 0, nDim)] = static_cast<Wide>((nBefore + 6 * pRow[i] + nAfter) / 4);
        pWide[WidePlace(i, 1, nDim)] = static_cast<Wide>(pRow[i] + nAfter);
    }
}
template void WidenRow161Scalar(const uint8_t*, uint16_t*, int, int, uint16_t*);
template void WidenRow161Scalar(const int16_t*, int32_t*, int, int, int32_t*);

template <class T, class Wide>
void WidenRow31Scalar(const T* pRow, Wide* pWide, int w, int nDim, Wide*)
{
    for (int i = 0; i < w * nDim; ++i) {
        pWide[WidePlace(i, 0, nDim)] = static_cast<Wide>(Neighbour(pRow, i, -1, w, nDim) + 3 * pRow[i]);
        pWide[WidePlace(i, 1, nDim)] = static_cast<Wide>(3 * pRow[i] + Neighbour(pRow, i, 1, w, nDim));
    }
}
template void WidenRow31Scalar(const uint8_t*, uint16_t*, int, int, uint16_t*);
template void WidenRow31Scalar(const int16_t*, int16_t*, int, int, int16_t*);
template void WidenRow31Scalar(const int16_t*, int32_t*, int, int, int32_t*);

template <class Wide>
void SumRows161Scalar(const Wide* pA, const Wide* pB, const Wide* pC, Wide* pSums, int nCount)
{
    for (int i = 0; i < nCount; ++i) {
        pSums[i] = static_cast<Wide>((int64_t{pA[i]} + int64_t{6} * pB[i] + pC[i]) / 4);
    }
}
template void SumRows161Scalar(const uint16_t*, const uint16_t*, const uint16_t*, uint16_t*, int);
template void SumRows161Scalar(const int32_t*, const int32_t*, const int32_t*, int32_t*, int);

template <class Wide>
void SumRows11Scalar(const Wide* pB, const Wide* pC, Wide* pSums, int nCount)
{
    for (int i = 0; i < nCount; ++i) pSums[i] = static_cast<Wide>(pB[i] + pC[i]);
}
template void SumRows11Scalar(const uint16_t*, const uint16_t*, uint16_t*, int);
template void SumRows11Scalar(const int32_t*, const int32_t*, int32_t*, int);

void SumRows31Scalar(const int32_t* pNear, const int32_t* pFar, int32_t* pSums, int nCount)
{
    for (int i = 0; i < nCount; ++i) pSums[i] = 3 * pNear[i] + pFar[i];
}

template <class Wide, class T>
void BlendRows31Scalar(const Wide* pNear, const Wide* pFar, T* pDst, int nCount)
{
    for (int i = 0; i < nCount; ++i) {
        const Wide nSum = static_cast<Wide>(3 * pNear[i] + pFar[i]);  // the signed one wraps
        pDst[i] = static_cast<T>(nSum / 16);
    }
}
template void BlendRows31Scalar(const uint16_t*, const uint16_t*, uint8_t*, int);
template void BlendRows31Scalar(const int16_t*, const int16_t*, int16_t*, int);

void QuarterRowScalar(const int16_t* pRow, int16_t* pDst, int nCount)
{
    for (int i = 0; i < nCount; ++i) pDst[i] = static_cast<int16_t>(pRow[i] / 4);
}

}  // namespace vkr
#endif  // HWY_ONCE
