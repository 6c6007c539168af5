#pragma once

#include <cstddef>
#include <cstdint>

namespace vkr {

// Rows of thresholds, bit logic, and of erosion and dilation over 3 x 3 windows.
//
//   w, nCount  samples of a row of a window, >= 1, or of any run of samples; nothing beyond is read or written
//   threads    any number, on different destinations and scratch

// How the samples of a window are combined: kMin and kAnd erode, kMax and kOr dilate. The bitwise ones are those of
// binary pictures (0 and 255); on grey values they combine the bits.
enum class WindowOp { kMin, kMax, kAnd, kOr };

// The rows above, at and below the destination's. At the border the row itself stands in for the one outside: the
// window holds its samples anyway, so that nothing is added, and the kernels do the same at the ends of rows.
struct WindowRows {
    const uint8_t* pAbove;
    const uint8_t* pHere;
    const uint8_t* pBelow;
};

// The sample and its eight neighbours. pDst overlaps no row; pScratch holds w + 2 samples, this thread's own.
void SquareRow(WindowOp op, const WindowRows& rows, uint8_t* pDst, int w, uint8_t* pScratch);
void SquareRowScalar(WindowOp op, const WindowRows& rows, uint8_t* pDst, int w, uint8_t*);

// The sample and its four direct neighbours. pDst overlaps no row.
void CrossRow(WindowOp op, const WindowRows& rows, uint8_t* pDst, int w);
void CrossRowScalar(WindowOp op, const WindowRows& rows, uint8_t* pDst, int w);

// 255 where nLow <= sample <= nHigh (nLow <= nHigh), else 0. pDst may be pSrc, no other overlap.
void InRangeRow(const uint8_t* pSrc, uint8_t* pDst, size_t nCount, uint8_t nLow, uint8_t nHigh);
void InRangeRowScalar(const uint8_t* pSrc, uint8_t* pDst, size_t nCount, uint8_t nLow, uint8_t nHigh);

// Bit logic, sample by sample. pDst may be a source, no other overlap.
void NotRow(const uint8_t* pSrc, uint8_t* pDst, size_t nCount);
void NotRowScalar(const uint8_t* pSrc, uint8_t* pDst, size_t nCount);
enum class BitOp { kAnd, kOr, kXor };
void BitRow(BitOp op, const uint8_t* pA, const uint8_t* pB, uint8_t* pDst, size_t nCount);
void BitRowScalar(BitOp op, const uint8_t* pA, const uint8_t* pB, uint8_t* pDst, size_t nCount);

}  // namespace vkr
