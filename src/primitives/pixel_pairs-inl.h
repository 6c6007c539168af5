// Even and odd pixels of a row, apart and together again. Included by files that are compiled once per instruction set.
#if defined(VKR_PRIMITIVES_PIXEL_PAIRS_INL_H) == defined(HWY_TARGET_TOGGLE)
#ifdef VKR_PRIMITIVES_PIXEL_PAIRS_INL_H
#undef VKR_PRIMITIVES_PIXEL_PAIRS_INL_H
#else
#define VKR_PRIMITIVES_PIXEL_PAIRS_INL_H
#endif

#include <hwy/highway.h>

#include <cstddef>
#include <cstring>
#include <type_traits>

HWY_BEFORE_NAMESPACE();
namespace vkr {
namespace HWY_NAMESPACE {
namespace {

// Pixels of several channels are moved by copies of a fixed size, four samples or a multiple, which are one instruction
// or two. What such a copy writes too much is the next pixel, and behind the last one the slack, and it reads as far:
// so every row here has kPixelSlack samples behind its end.
constexpr int kPixelChunk = 4;
constexpr int kPixelSlack = kPixelChunk;

// Copies n pixels that stand nSrcStep samples apart to places nDstStep apart, kCopy samples each, nDim if kCopy is 0.
template <int kCopy, class T>
void CopyPixels(const T* HWY_RESTRICT pSrc, int nSrcStep, T* HWY_RESTRICT pDst, int nDstStep, int n, int nDim)
{
    const size_t nBytes = (kCopy > 0 ? kCopy : nDim) * sizeof(T);
    for (int i = 0; i < n; ++i) std::memcpy(pDst + i * nDstStep, pSrc + i * nSrcStep, nBytes);
}

// fn(std::integral_constant<int, kCopy>) with the copy size for nDim channels.
template <class Fn>
void WithCopySize(int nDim, const Fn& fn)
{
    if (nDim <= kPixelChunk) return fn(std::integral_constant<int, kPixelChunk>());
    if (nDim <= 2 * kPixelChunk) return fn(std::integral_constant<int, 2 * kPixelChunk>());
    if (nDim <= 3 * kPixelChunk) return fn(std::integral_constant<int, 3 * kPixelChunk>());
    fn(std::integral_constant<int, 0>());
}

// pEven and pOdd receive nPairs pixels each.
template <class T>
void SplitPixels(const T* HWY_RESTRICT pSrc, T* HWY_RESTRICT pEven, T* HWY_RESTRICT pOdd, int nPairs, int nDim)
{
    if (nDim == 1) {
        for (int i = 0; i < nPairs; ++i) {
            pEven[i] = pSrc[2 * i];
            pOdd[i] = pSrc[2 * i + 1];
        }
        return;
    }
    WithCopySize(nDim, [&](auto size) {
        CopyPixels<size()>(pSrc, 2 * nDim, pEven, nDim, nPairs, nDim);
        CopyPixels<size()>(pSrc + nDim, 2 * nDim, pOdd, nDim, nPairs, nDim);
    });
}

// pDst receives 2 * nPairs pixels.
template <class T>
void MergePixels(const T* HWY_RESTRICT pEven, const T* HWY_RESTRICT pOdd, T* HWY_RESTRICT pDst, int nPairs, int nDim)
{
    if (nDim == 1) {
        for (int i = 0; i < nPairs; ++i) {
            pDst[2 * i] = pEven[i];
            pDst[2 * i + 1] = pOdd[i];
        }
        return;
    }
    // Pair by pair, since what a copy writes too much belongs to the next pixel.
    WithCopySize(nDim, [&](auto size) {
        for (int i = 0; i < nPairs; ++i) {
            CopyPixels<size()>(pEven + i * nDim, 0, pDst + 2 * i * nDim, 0, 1, nDim);
            CopyPixels<size()>(pOdd + i * nDim, 0, pDst + (2 * i + 1) * nDim, 0, 1, nDim);
        }
    });
}

}  // namespace
}  // namespace HWY_NAMESPACE
}  // namespace vkr
HWY_AFTER_NAMESPACE();
#endif
