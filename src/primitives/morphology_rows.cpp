#include "primitives/morphology_rows.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "primitives/morphology_rows.cpp"
#include <hwy/foreach_target.h>  // compiles this file once per instruction set

#include <hwy/highway.h>

#include <algorithm>

// The loops are plain ones, which the compiler vectorises for each instruction set. Where a destination may be the
// source, the loop is told that samples depend on none but their own place.
HWY_BEFORE_NAMESPACE();
namespace vkr {
namespace HWY_NAMESPACE {
namespace {

struct Min {
    uint8_t operator()(uint8_t a, uint8_t b) const { return a < b ? a : b; }
};
struct Max {
    uint8_t operator()(uint8_t a, uint8_t b) const { return a > b ? a : b; }
};
struct And {
    uint8_t operator()(uint8_t a, uint8_t b) const { return static_cast<uint8_t>(a & b); }
};
struct Or {
    uint8_t operator()(uint8_t a, uint8_t b) const { return static_cast<uint8_t>(a | b); }
};
struct Xor {
    uint8_t operator()(uint8_t a, uint8_t b) const { return static_cast<uint8_t>(a ^ b); }
};

// Columns of three first, then three columns side by side; the end columns, repeated, spare the ends a case of their
// own.
template <class Op>
void Square(const WindowRows& rows, uint8_t* HWY_RESTRICT pDst, int w, uint8_t* HWY_RESTRICT pScratch)
{
    const Op op;
    const uint8_t *HWY_RESTRICT a = rows.pAbove, *HWY_RESTRICT h = rows.pHere, *HWY_RESTRICT b = rows.pBelow;
    uint8_t* const pColumns = pScratch + 1;
    for (int x = 0; x < w; ++x) pColumns[x] = op(op(a[x], b[x]), h[x]);
    pColumns[-1] = pColumns[0];
    pColumns[w] = pColumns[w - 1];
    for (int x = 0; x < w; ++x) pDst[x] = op(op(pColumns[x - 1], pColumns[x + 1]), pColumns[x]);
}

template <class Op>
void Cross(const WindowRows& rows, uint8_t* HWY_RESTRICT pDst, int w)
{
    const Op op;
    const uint8_t *HWY_RESTRICT a = rows.pAbove, *HWY_RESTRICT h = rows.pHere, *HWY_RESTRICT b = rows.pBelow;
    const int nLast = w - 1;
    if (nLast == 0) {
        pDst[0] = op(op(a[0], b[0]), h[0]);
        return;
    }
    pDst[0] = op(op(a[0], b[0]), op(h[0], h[1]));
    for (int x = 1; x < nLast; ++x) pDst[x] = op(op(op(a[x], b[x]), h[x]), op(h[x - 1], h[x + 1]));
    pDst[nLast] = op(op(a[nLast], b[nLast]), op(h[nLast - 1], h[nLast]));
}

template <class Op>
void Combine(const uint8_t* pA, const uint8_t* pB, uint8_t* pDst, size_t nCount)
{
    const Op op;
#pragma omp simd
    for (size_t i = 0; i < nCount; ++i) pDst[i] = op(pA[i], pB[i]);
}

}  // namespace

void SquareOf(WindowOp op, const WindowRows& rows, uint8_t* pDst, int w, uint8_t* pScratch)
{
    switch (op) {
        case WindowOp::kMin:
            return Square<Min>(rows, pDst, w, pScratch);
        case WindowOp::kMax:
            return Square<Max>(rows, pDst, w, pScratch);
        case WindowOp::kAnd:
            return Square<And>(rows, pDst, w, pScratch);
        case WindowOp::kOr:
            return Square<Or>(rows, pDst, w, pScratch);
    }
}

void CrossOf(WindowOp op, const WindowRows& rows, uint8_t* pDst, int w)
{
    switch (op) {
        case WindowOp::kMin:
            return Cross<Min>(rows, pDst, w);
        case WindowOp::kMax:
            return Cross<Max>(rows, pDst, w);
        case WindowOp::kAnd:
            return Cross<And>(rows, pDst, w);
        case WindowOp::kOr:
            return Cross<Or>(rows, pDst, w);
    }
}

void InRange(const uint8_t* pSrc, uint8_t* pDst, size_t nCount, uint8_t nLow, uint8_t nHigh)
{
    const uint8_t nSpan = static_cast<uint8_t>(nHigh - nLow);
#pragma omp simd
    for (size_t i = 0; i < nCount; ++i) {
        // One comparison for both ends: what is below nLow wraps to above the span.
        pDst[i] = static_cast<uint8_t>(pSrc[i] - nLow) <= nSpan ? 255 : 0;
    }
}

void Not(const uint8_t* pSrc, uint8_t* pDst, size_t nCount)
{
#pragma omp simd
    for (size_t i = 0; i < nCount; ++i) pDst[i] = static_cast<uint8_t>(~pSrc[i]);
}

void BitsOf(BitOp op, const uint8_t* pA, const uint8_t* pB, uint8_t* pDst, size_t nCount)
{
    switch (op) {
        case BitOp::kAnd:
            return Combine<And>(pA, pB, pDst, nCount);
        case BitOp::kOr:
            return Combine<Or>(pA, pB, pDst, nCount);
        case BitOp::kXor:
            return Combine<Xor>(pA, pB, pDst, nCount);
    }
}

}  // namespace HWY_NAMESPACE
}  // namespace vkr
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace vkr {

namespace {

uint8_t Combined(WindowOp op, uint8_t a, uint8_t b)
{
    if (op == WindowOp::kMin) return std::min(a, b);
    if (op == WindowOp::kMax) return std::max(a, b);
    return static_cast<uint8_t>(op == WindowOp::kAnd ? a & b : a | b);
}

// The samples of the window around column x that lie in the row.
uint8_t Window(WindowOp op, const WindowRows& rows, int x, int w, bool bCorners)
{
    uint8_t n = Combined(op, rows.pHere[x], Combined(op, rows.pAbove[x], rows.pBelow[x]));
    for (const int i : {x - 1, x + 1}) {
        if (i < 0 || i >= w) continue;
        n = Combined(op, n, rows.pHere[i]);
        if (bCorners) n = Combined(op, n, Combined(op, rows.pAbove[i], rows.pBelow[i]));
    }
    return n;
}

}  // namespace

void SquareRowScalar(WindowOp op, const WindowRows& rows, uint8_t* pDst, int w, uint8_t*)
{
    for (int x = 0; x < w; ++x) pDst[x] = Window(op, rows, x, w, true);
}

void CrossRowScalar(WindowOp op, const WindowRows& rows, uint8_t* pDst, int w)
{
    for (int x = 0; x < w; ++x) pDst[x] = Window(op, rows, x, w, false);
}

void InRangeRowScalar(const uint8_t* pSrc, uint8_t* pDst, size_t nCount, uint8_t nLow, uint8_t nHigh)
{
    for (size_t i = 0; i < nCount; ++i) pDst[i] = nLow <= pSrc[i] && pSrc[i] <= nHigh ? 255 : 0;
}

void NotRowScalar(const uint8_t* pSrc, uint8_t* pDst, size_t nCount)
{
    for (size_t i = 0; i < nCount; ++i) pDst[i] = static_cast<uint8_t>(255 - pSrc[i]);
}

void BitRowScalar(BitOp op, const uint8_t* pA, const uint8_t* pB, uint8_t* pDst, size_t nCount)
{
    for (size_t i = 0; i < nCount; ++i) {
        const int n = op == BitOp::kAnd ? pA[i] & pB[i] : op == BitOp::kOr ? pA[i] | pB[i] : pA[i] ^ pB[i];
        pDst[i] = static_cast<uint8_t>(n);
    }
}

HWY_EXPORT(SquareOf);
HWY_EXPORT(CrossOf);
HWY_EXPORT(InRange);
HWY_EXPORT(Not);
HWY_EXPORT(BitsOf);

void SquareRow(WindowOp op, const WindowRows& rows, uint8_t* pDst, int w, uint8_t* pScratch)
{
    HWY_DYNAMIC_DISPATCH(SquareOf)(op, rows, pDst, w, pScratch);
}

void CrossRow(WindowOp op, const WindowRows& rows, uint8_t* pDst, int w)
{
    HWY_DYNAMIC_DISPATCH(CrossOf)(op, rows, pDst, w);
}

void InRangeRow(const uint8_t* pSrc, uint8_t* pDst, size_t nCount, uint8_t nLow, uint8_t nHigh)
{
    HWY_DYNAMIC_DISPATCH(InRange)(pSrc, pDst, nCount, nLow, nHigh);
}

void NotRow(const uint8_t* pSrc, uint8_t* pDst, size_t nCount)
{
    HWY_DYNAMIC_DISPATCH(Not)(pSrc, pDst, nCount);
}

void BitRow(BitOp op, const uint8_t* pA, const uint8_t* pB, uint8_t* pDst, size_t nCount)
{
    HWY_DYNAMIC_DISPATCH(BitsOf)(op, pA, pB, pDst, nCount);
}

}  // namespace vkr
#endif  // HWY_ONCE
