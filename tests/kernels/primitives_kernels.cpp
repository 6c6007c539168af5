#include <algorithm>

#include "kernels/kernel_harness.h"
#include "primitives/blend_rows.h"
#include "primitives/carry_rows.h"
#include "primitives/morphology_rows.h"
#include "primitives/planar_rows.h"
#include "primitives/tap_rows.h"

namespace vkr {
namespace {

// Copies of four, eight and twelve samples, and beyond; around the sixteen lanes of the carry.
const std::vector<int> kDims = {1, 2, 3, 4, 5, 6, 7, 8, 9, 13},
                       kCarryDims = {1, 2, 3, 4, 5, 6, 7, 8, 9, 15, 16, 17, 18};
const KernelSizes kAnyWidth = {kDims, 1}, kEvenWidth = {kDims, 2, 1 << 30, 2};

// The source rows of one output row; some stand several times, as at the edges of a picture.
template <class T>
struct Rows {
    const T* v[6];
    explicit Rows(KernelRun& run) : v{run.In<T>(run.Samples())}
    {
        for (int i = 1; i < 6; ++i) v[i] = run.Number(0, 3) == 0 ? v[i - 1] : run.In<T>(run.Samples());
    }
};

#define TAP_KERNEL(Name, Kernel, T, Out_, nSamples, sizes)                           \
    KERNEL(Name, (sizes))                                                            \
    {                                                                                \
        const Rows<T> rows(run);                                                     \
        auto* pDst = run.Out<Out_>(nSamples);                                        \
        auto* pScratch = run.Scratch<TapSum<T>>(TapScratch(run.Count(), run.Dim())); \
        BOTH(Kernel, rows.v, pDst, run.Count(), run.Dim(), pScratch);                \
    }
TAP_KERNEL(SmoothRow5U8, SmoothRow5, uint8_t, uint16_t, run.Samples(), kAnyWidth)
TAP_KERNEL(SmoothRow5S16, SmoothRow5, int16_t, int32_t, run.Samples(), kAnyWidth)
TAP_KERNEL(HalveRow5U8, HalveRow5, uint8_t, uint16_t, run.Samples() / 2, kEvenWidth)
TAP_KERNEL(HalveRow5S16, HalveRow5, int16_t, int32_t, run.Samples() / 2, kEvenWidth)
TAP_KERNEL(HalveRow6U8, HalveRow6, uint8_t, uint8_t, run.Samples() / 2, kEvenWidth)
TAP_KERNEL(HalveRow6S16, HalveRow6, int16_t, int16_t, run.Samples() / 2, kEvenWidth)

KERNEL(HalveRow6Sums, (kEvenWidth))
{
    const Rows<int16_t> rows(run);
    const FarEdge edge = run.Flag() ? FarEdge::kRepeatPair : FarEdge::kRepeatPixel;
    int32_t* pSums = run.Out<int32_t>(run.Samples() / 2);
    int32_t* pScratch = run.Scratch<int32_t>(TapScratch(run.Count(), run.Dim()));
    BOTH(HalveRow6Sums, rows.v, pSums, run.Count(), run.Dim(), edge, pScratch);
}

// A widened row has room behind it, of which nothing is said.
#define WIDEN_KERNEL(Name, Kernel, T, Wide)                                      \
    KERNEL(Name, (kAnyWidth))                                                    \
    {                                                                            \
        const int w = run.Count(), nDim = run.Dim();                             \
        const T* pRow = run.In<T>(run.Samples());                                \
        Wide* pWide = run.Scratch<Wide>(WideRowSamples(w, nDim));                \
        Wide* pScratch = run.Scratch<Wide>(WidenScratch(w, nDim));               \
        BOTH(Kernel, pRow, pWide, w, nDim, pScratch);                            \
        std::copy_n(pWide, 2 * run.Samples(), run.Out<Wide>(2 * run.Samples())); \
    }
WIDEN_KERNEL(WidenRow161U8, WidenRow161, uint8_t, uint16_t)
WIDEN_KERNEL(WidenRow161S16, WidenRow161, int16_t, int32_t)
WIDEN_KERNEL(WidenRow31U8, WidenRow31, uint8_t, uint16_t)
WIDEN_KERNEL(WidenRow31Wrapping, WidenRow31, int16_t, int16_t)
WIDEN_KERNEL(WidenRow31S16, WidenRow31, int16_t, int32_t)

// Widened samples: 0 .. 510 in Q1, 0 .. 1020 in Q2, signed ones a few bits beyond 16.
#define TWO_ROW_KERNEL(Name, Kernel, Wide, T, lo, hi)                                                         \
    KERNEL(Name, {})                                                                                          \
    {                                                                                                         \
        const Wide *pNear = run.In<Wide>(run.Samples(), lo, hi), *pFar = run.In<Wide>(run.Samples(), lo, hi); \
        T* pDst = run.Out<T>(run.Samples());                                                                  \
        BOTH(Kernel, pNear, pFar, pDst, run.Count());                                                         \
    }
TWO_ROW_KERNEL(SumRows11U8, SumRows11, uint16_t, uint16_t, 0, 510)
TWO_ROW_KERNEL(SumRows11S16, SumRows11, int32_t, int32_t, -65536, 65534)
TWO_ROW_KERNEL(SumRows31, SumRows31, int32_t, int32_t, -131072, 131068)
TWO_ROW_KERNEL(BlendRows31U8, BlendRows31, uint16_t, uint8_t, 0, 1020)
TWO_ROW_KERNEL(BlendRows31S16, BlendRows31, int16_t, int16_t, -32768, 32767)

#define SUM161_KERNEL(Name, Wide, lo, hi)                                                                       \
    KERNEL(Name, {})                                                                                            \
    {                                                                                                           \
        const size_t n = run.Samples();                                                                         \
        const Wide *pA = run.In<Wide>(n, lo, hi), *pB = run.In<Wide>(n, lo, hi), *pC = run.In<Wide>(n, lo, hi); \
        Wide* pSums = run.Out<Wide>(n);                                                                         \
        BOTH(SumRows161, pA, pB, pC, pSums, run.Count());                                                       \
    }
SUM161_KERNEL(SumRows161U8, uint16_t, 0, 510)
SUM161_KERNEL(SumRows161S16, int32_t, -65536, 65534)

KERNEL(QuarterRow, {})
{
    const int16_t* pRow = run.In<int16_t>(run.Samples());
    int16_t* pDst = run.Out<int16_t>(run.Samples());
    BOTH(QuarterRow, pRow, pDst, run.Count());
}

KERNEL(DropRowU8, {})
{
    const int nShift = run.Number(1, 8), nRound = run.Flag() ? 1 << (nShift - 1) : 0;
    const uint16_t* pSums = run.In<uint16_t>(run.Samples(), 0, 255 << nShift);
    uint8_t* pDst = run.Out<uint8_t>(run.Samples());
    BOTH(DropRow, pSums, pDst, run.Count(), nShift, nRound);
}

#define SIGNED_DROP_KERNEL(Kernel)                                                                             \
    KERNEL(Kernel##S16, {})                                                                                    \
    {                                                                                                          \
        const int nShift = run.Number(1, 10), nRound = run.Flag() ? 1 << (nShift - 1) : 0;                     \
        const int32_t* pSums = run.In<int32_t>(run.Samples(), -(32768 << nShift), (32767 << nShift) - nRound); \
        int16_t* pDst = run.Out<int16_t>(run.Samples());                                                       \
        BOTH(Kernel, pSums, pDst, run.Count(), nShift, nRound);                                                \
    }
SIGNED_DROP_KERNEL(DropRow)
SIGNED_DROP_KERNEL(FloorRow)

KERNEL(CarryRow, {kCarryDims})
{
    const int nShift = run.Number(1, 8);
    const uint16_t* pSums = run.In<uint16_t>(run.Samples(), 0, 255 << nShift);
    uint8_t* pDst = run.Out<uint8_t>(run.Samples());
    uint8_t* pCarry = run.InOut<uint8_t>(run.Dim());
    BOTH(CarryRow, pSums, pDst, static_cast<int>(run.Samples()), run.Dim(), nShift, pCarry);
}

WindowOp AnyOp(KernelRun& run)
{
    return static_cast<WindowOp>(run.Number(0, 3));
}

KERNEL(SquareRow, {{1}, 1})
{
    const Rows<uint8_t> rows(run);
    const WindowRows window = {rows.v[0], rows.v[1], rows.v[2]};
    const WindowOp op = AnyOp(run);
    uint8_t *pDst = run.Out<uint8_t>(run.Samples()), *pScratch = run.Scratch<uint8_t>(run.Samples() + 2);
    BOTH(SquareRow, op, window, pDst, run.Count(), pScratch);
}

KERNEL(CrossRow, {{1}, 1})
{
    const Rows<uint8_t> rows(run);
    const WindowRows window = {rows.v[0], rows.v[1], rows.v[2]};
    const WindowOp op = AnyOp(run);
    uint8_t* pDst = run.Out<uint8_t>(run.Samples());
    BOTH(CrossRow, op, window, pDst, run.Count());
}

KERNEL(InRangeRow, {})
{
    uint8_t* pRow = run.InOut<uint8_t>(run.Samples());
    const uint8_t nLow = static_cast<uint8_t>(run.Number(0, 255));
    const uint8_t nHigh = static_cast<uint8_t>(run.Number(nLow, 255));
    BOTH(InRangeRow, pRow, pRow, run.Samples(), nLow, nHigh);
}

KERNEL(NotRow, {})
{
    uint8_t* pRow = run.InOut<uint8_t>(run.Samples());
    BOTH(NotRow, pRow, pRow, run.Samples());
}

KERNEL(BitRow, {})
{
    const uint8_t* pA = run.In<uint8_t>(run.Samples());
    uint8_t* pB = run.InOut<uint8_t>(run.Samples());
    const BitOp op = static_cast<BitOp>(run.Number(0, 2));
    BOTH(BitRow, op, pA, pB, pB, run.Samples());
}

KERNEL(SplitPixelRow, {{1, 2, 3, 4, 5, 6, 7, 8}})
{
    const uint8_t* pSrc = run.In<uint8_t>(run.Samples());
    uint8_t* vPlanes[8];
    for (int c = 0; c < run.Dim(); ++c) vPlanes[c] = run.Out<uint8_t>(run.Count());
    BOTH(SplitPixelRow, pSrc, vPlanes, run.Count(), run.Dim());
}

template <class T>
void JoinPlanes(KernelRun& run)
{
    const T* const vPlanes[3] = {run.In<T>(run.Count()), run.In<T>(run.Count()), run.In<T>(run.Count())};
    T* pDst = run.Out<T>(run.Samples());
    BOTH(JoinPixelRow, vPlanes, pDst, run.Count());
}
KERNEL(JoinPixelRowU8, {{3}})
{
    JoinPlanes<uint8_t>(run);
}
KERNEL(JoinPixelRowS16, {{3}})
{
    JoinPlanes<int16_t>(run);
}

}  // namespace
}  // namespace vkr
