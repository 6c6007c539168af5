#pragma once

#include <cstdint>

namespace vkr {

// Halving, doubling, padding, differences and sums of interleaved samples: sample (x, y, c) stands at (y * w + x) *
// nDim
// + c, rows are tight. Stateless; every operation may run on several threads at once, on different destinations. Source
// and destination never overlap. False only when there is no scratch memory; the destination is undefined then.
//
// Two families. The filtered pair (Burt-Adelson taps 1 4 6 4 1, and its polyphase form for doubling) runs on one thread
// and can carry what a shift drops; the fast pair (taps 1 5 10 10 5 1 between two samples; 3:1 for doubling) is
// row-parallel and carries nothing, or runs on one thread with a carry. The carry of bDither is one remainder per
// channel, 0 at the start, along the raster of the output, across row ends.
//
// A halving writes (w >> 1) x (h >> 1); an odd last column or row is not read, so callers pad to even sizes first. A
// doubling writes 2w x 2h. Rows and columns fewer than the taps are repeated like any edge; a size without a single
// output, or nDim below 1, writes nothing. Same bytes from any number of threads.
struct CGaussianPyramid2 {
    // Filtered, one thread.
    static bool DownScaleImage(const uint8_t* pSrc, uint8_t* pDst, int w, int h, int nDim, bool bDither);
    static bool UpScaleImage(const uint8_t* pSrc, uint8_t* pDst, int w, int h, int nDim, bool bDither);
    static bool DownScaleShort(const int16_t* pSrc, int16_t* pDst, int w, int h, int nDim, bool bDither);
    static bool UpScaleShort(const int16_t* pSrc, int16_t* pDst, int w, int h, int nDim, bool bDither);

    // Fast, row-parallel, no carry. A doubling of one row (h = 1) writes nothing.
    static bool DownScaleImageFast(const uint8_t* pSrc, uint8_t* pDst, int w, int h, int nDim);
    static bool UpScaleImageFast(const uint8_t* pSrc, uint8_t* pDst, int w, int h, int nDim);
    static bool DownScaleShortParallel(const int16_t* pSrc, int16_t* pDst, int w, int h, int nDim);
    static bool UpScaleShortParallel(const int16_t* pSrc, int16_t* pDst, int w, int h, int nDim);

    // Fast, one thread, with the carry.
    static bool DownScaleShortFast(const int16_t* pSrc, int16_t* pDst, int w, int h, int nDim, bool bDither);
    static bool UpScaleShortFast(const int16_t* pSrc, int16_t* pDst, int w, int h, int nDim, bool bDither);

    // Copies w x h into w2 x h2 (w2 >= w, h2 >= h), repeating the last pixel and the last row.
    static void ExpandImage(const uint8_t* pSrc, uint8_t* pDst, int w, int h, int w2, int h2, int nDim);
    static void ExpandShort(const int16_t* pSrc, int16_t* pDst, int w, int h, int w2, int h2, int nDim);

    // pDst = pA - pB in 16 bits. pA and pDst are w x h and tight, the rows of pB are nWidthB pixels.
    static void SubtractImage(const uint8_t* pA, const uint8_t* pB, int16_t* pDst, int w, int h, int nWidthB, int nDim);

    // pDst = pA + pB, wrapping at 16 bits. pB and pDst are w x h and tight, the rows of pA are nWidthA pixels.
    static void AddShort(const int16_t* pA, const int16_t* pB, int16_t* pDst, int w, int h, int nWidthA, int nDim);
};

}  // namespace vkr
