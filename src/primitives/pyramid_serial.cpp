#include <algorithm>
#include <cstddef>

#include "foundation/fixed_point.h"
#include "foundation/heap_buffer.h"
#include "primitives/blend_rows.h"
#include "primitives/carry_rows.h"
#include "primitives/gaussian_pyramid.h"
#include "primitives/tap_rows.h"

// The operations that run on one thread, because what a shift drops may be carried through the whole picture. A kernel
// is the taps of a filter and the scale of its sums; the walk along the rows is the same for all.
namespace vkr {

namespace {

struct Halving5 {
    static constexpr int kTaps = 5;
    static constexpr int kShift = 8;
    template <class T>
    static void Sum(const T* const* vRows, TapSum<T>* pSums, int w, int nDim, TapSum<T>* pScratch)
    {
        HalveRow5(vRows, pSums, w, nDim, pScratch);
    }
    static FarEdge Edge(int) { return FarEdge::kRepeatPixel; }
};

struct Halving6 {
    static constexpr int kTaps = 6;
    static constexpr int kShift = 10;
    static void Sum(const int16_t* const* vRows, int32_t* pSums, int w, int nDim, int32_t* pScratch)
    {
        HalveRow6Sums(vRows, pSums, w, nDim, Edge(w), pScratch);
    }
    // A side of 2 is a case of its own: both pixels weigh 16. The row-parallel forms give 21 and 11 there.
    static FarEdge Edge(int nSide) { return nSide == 2 ? FarEdge::kRepeatPixel : FarEdge::kRepeatPair; }
};

struct Doubling161 {
    static constexpr int kShift = 2;
    template <class T>
    static void Widen(const T* pRow, TapSum<T>* pWide, int w, int nDim, TapSum<T>* pScratch)
    {
        WidenRow161(pRow, pWide, w, nDim, pScratch);
    }
    template <class Sum>
    static void SumEven(const Sum* pBefore, const Sum* pHere, const Sum* pAfter, Sum* pSums, int nCount)
    {
        SumRows161(pBefore, pHere, pAfter, pSums, nCount);
    }
    template <class Sum>
    static void SumOdd(const Sum* pHere, const Sum* pAfter, Sum* pSums, int nCount)
    {
        SumRows11(pHere, pAfter, pSums, nCount);
    }
};

struct Doubling31 {
    static constexpr int kShift = 4;
    static void Widen(const int16_t* pRow, int32_t* pWide, int w, int nDim, int32_t* pScratch)
    {
        WidenRow31(pRow, pWide, w, nDim, pScratch);
    }
    static void SumEven(const int32_t* pBefore, const int32_t* pHere, const int32_t*, int32_t* pSums, int nCount)
    {
        SumRows31(pHere, pBefore, pSums, nCount);
    }
    static void SumOdd(const int32_t* pHere, const int32_t* pAfter, int32_t* pSums, int nCount)
    {
        SumRows31(pHere, pAfter, pSums, nCount);
    }
};

// Row y of the picture or what stands for it outside; h is even where a pair is repeated.
int RowInside(int y, int h, FarEdge edge)
{
    if (y >= h && edge == FarEdge::kRepeatPair) return y - 2;
    return Clamp(y, 0, h - 1);
}

template <class Kernel, class T>
bool HalveSerial(const T* pSrc, T* pDst, int w, int h, int nDim, bool bDither)
{
    const int w2 = w >> 1, h2 = h >> 1;
    if (w2 < 1 || h2 < 1 || nDim < 1) return true;
    const size_t nStride = static_cast<size_t>(w) * nDim, nStride2 = static_cast<size_t>(w2) * nDim;
    HeapBuffer<TapSum<T>> sums, scratch;
    HeapBuffer<Remainder<T>> carry;
    if (!sums.Allocate(nStride2) || !scratch.Allocate(TapScratch(2 * w2, nDim)) || !carry.AllocateZero(nDim)) {
        return false;
    }
    for (int y = 0; y < h2; ++y) {
        const T* vRows[Kernel::kTaps];
        for (int k = 0; k < Kernel::kTaps; ++k) {
            const int nRow = RowInside(2 * y + k - 2, 2 * h2, Kernel::Edge(2 * h2));
            vRows[k] = pSrc + nStride * static_cast<size_t>(nRow);
        }
        Kernel::Sum(vRows, sums.Data(), 2 * w2, nDim, scratch.Data());
        FinishRow(sums.Data(), pDst + nStride2 * y, w2 * nDim, nDim, Kernel::kShift, bDither, carry.Data());
    }
    return true;
}

template <class Kernel, class T>
bool DoubleSerial(const T* pSrc, T* pDst, int w, int h, int nDim, bool bDither)
{
    using Sum = TapSum<T>;
    if (w < 1 || h < 1 || nDim < 1) return true;
    const size_t nStride = static_cast<size_t>(w) * nDim;
    const int nCount = 2 * w * nDim;
    const size_t nWide = WideRowSamples(w, nDim);
    HeapBuffer<Sum> wide, sums, scratch;
    HeapBuffer<Remainder<T>> carry;
    if (!wide.Allocate(3 * nWide) || !sums.Allocate(nCount) || !scratch.Allocate(WidenScratch(w, nDim)) ||
        !carry.AllocateZero(nDim)) {
        return false;
    }
    // Source row y, widened, stays in slot y mod 3 while its neighbours need it.
    const auto WideRow = [&](int y) { return wide.Data() + nWide * (Clamp(y, 0, h - 1) % 3); };
    const auto Widen = [&](int y) { Kernel::Widen(pSrc + nStride * y, WideRow(y), w, nDim, scratch.Data()); };
    const auto Finish = [&](int y) {
        FinishRow(sums.Data(), pDst + 2 * nStride * y, nCount, nDim, Kernel::kShift, bDither, carry.Data());
    };
    Widen(0);
    for (int y = 0; y < h; ++y) {
        if (y + 1 < h) Widen(y + 1);
        Kernel::SumEven(WideRow(y - 1), WideRow(y), WideRow(y + 1), sums.Data(), nCount);
        Finish(2 * y);
        Kernel::SumOdd(WideRow(y), WideRow(y + 1), sums.Data(), nCount);
        Finish(2 * y + 1);
    }
    return true;
}

}  // namespace

bool CGaussianPyramid2::DownScaleImage(const uint8_t* pSrc, uint8_t* pDst, int w, int h, int nDim, bool bDither)
{
    return HalveSerial<Halving5>(pSrc, pDst, w, h, nDim, bDither);
}

bool CGaussianPyramid2::DownScaleShort(const int16_t* pSrc, int16_t* pDst, int w, int h, int nDim, bool bDither)
{
    return HalveSerial<Halving5>(pSrc, pDst, w, h, nDim, bDither);
}

bool CGaussianPyramid2::DownScaleShortFast(const int16_t* pSrc, int16_t* pDst, int w, int h, int nDim, bool bDither)
{
    return HalveSerial<Halving6>(pSrc, pDst, w, h, nDim, bDither);
}

bool CGaussianPyramid2::UpScaleImage(const uint8_t* pSrc, uint8_t* pDst, int w, int h, int nDim, bool bDither)
{
    return DoubleSerial<Doubling161>(pSrc, pDst, w, h, nDim, bDither);
}

bool CGaussianPyramid2::UpScaleShort(const int16_t* pSrc, int16_t* pDst, int w, int h, int nDim, bool bDither)
{
    return DoubleSerial<Doubling161>(pSrc, pDst, w, h, nDim, bDither);
}

bool CGaussianPyramid2::UpScaleShortFast(const int16_t* pSrc, int16_t* pDst, int w, int h, int nDim, bool bDither)
{
    return DoubleSerial<Doubling31>(pSrc, pDst, w, h, nDim, bDither);
}

}  // namespace vkr
