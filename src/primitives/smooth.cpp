#include "primitives/smooth.h"

#include <algorithm>
#include <cstddef>

#include "foundation/fixed_point.h"
#include "foundation/heap_buffer.h"
#include "foundation/parallel_rows.h"
#include "primitives/carry_rows.h"
#include "primitives/share_rows.h"
#include "primitives/tap_rows.h"

namespace vkr {

namespace {

constexpr int kShift = 8;  // 1 4 6 4 1 both ways weigh 256

// Working memory of the blocks of one picture.
template <class T>
struct SmoothScratch {
    bool Allocate(int nBlocks, int w, int nDim)
    {
        nRow = static_cast<size_t>(w) * nDim;
        nSums = nRow + TapScratch(w, nDim);
        nChannels = static_cast<size_t>(nDim);
        return sums.Allocate(nSums * nBlocks) && kept.Allocate(2 * nRow) && carry.AllocateZero(nChannels * nBlocks);
    }
    TapSum<T>* Sums(int nBlock) { return sums.Data() + nSums * nBlock; }  // one row, then the scratch of the taps
    TapSum<T>* Taps(int nBlock) { return Sums(nBlock) + nRow; }
    Remainder<T>* Carry(int nBlock) { return carry.Data() + nChannels * nBlock; }
    T* KeptRow(int y) { return kept.Data() + nRow * (y & 1); }  // in place: the two rows above as they were

    HeapBuffer<TapSum<T>> sums;
    HeapBuffer<T> kept;
    HeapBuffer<Remainder<T>> carry;
    size_t nRow, nSums, nChannels;
};

// Both roundings are floors. The sums of 8-bit samples have no sign to care for.
void FinishSmooth(const uint16_t* pSums, uint8_t* pDst, int nCount, int nDim, bool bDither, uint8_t* pCarry)
{
    if (bDither) return CarryRow(pSums, pDst, nCount, nDim, kShift, pCarry);
    DropRow(pSums, pDst, nCount, kShift, 1 << (kShift - 1));
}
void FinishSmooth(const int32_t* pSums, int16_t* pDst, int nCount, int nDim, bool bDither, int32_t* pCarry)
{
    if (bDither) return FloorCarryRow(pSums, pDst, nCount, nDim, kShift, pCarry);
    FloorRow(pSums, pDst, nCount, kShift, 1 << (kShift - 1));
}

// How much row r weighs, by the taps down the picture, in the sums of rows 0 .. nRows - 1 of h rows.
int RowWeight(int r, int nRows, int h)
{
    constexpr int kTaps[] = {1, 4, 6, 4, 1};
    if (r >= 2 && r + 2 < nRows) return 16;  // all of its five rows are among them
    int nWeight = 0;
    for (int y = std::max(r - 2, 0); y <= std::min(r + 2, nRows - 1); ++y) {
        for (int k = 0; k < 5; ++k) nWeight += Clamp(y + k - 2, 0, h - 1) == r ? kTaps[k] : 0;
    }
    return nWeight;
}

// The remainders behind rows 0 .. nRows - 1, without their sums. A remainder is the total of all sums before it modulo
// 256. Along a row the taps weigh every sample 16, and at both ends the outermost one more and its neighbour one less;
// down the picture a row weighs 16 except at the ends of the rows. 16 times 16 leaves nothing, so that the whole cost
// is six rows and the ends of all. pCarry comes as 0.
void CarryBehindRows(const CImage& src, int nRows, uint8_t* pCarry)
{
    const int w = src.nWidth, h = src.nHeight, nDim = src.nDim;
    for (int r = 0; r < std::min(nRows + 2, h); ++r) {
        const int nWeight = RowWeight(r, nRows, h);
        for (int c = 0; c < nDim; ++c) {
            const auto Sample = [p = src.Row(r) + c, w, nDim](int x) { return int{p[Clamp(x, 0, w - 1) * nDim]}; };
            unsigned nSum = static_cast<unsigned>(Sample(0) - Sample(1) + Sample(w - 1) - Sample(w - 2));
            for (int x = 0; nWeight != 16 && x < w; ++x) nSum += 16U * static_cast<unsigned>(Sample(x));
            pCarry[c] = static_cast<uint8_t>(pCarry[c] + static_cast<unsigned>(nWeight) * nSum);
        }
    }
}

// src and dst may be the same picture if the block is all of it.
template <class Image, class T>
void SmoothBlock(const Image& src, Image& dst, bool bInPlace, bool bDither, RowBlock rows, SmoothScratch<T>& scratch)
{
    const int nCount = src.RowSamples();
    TapSum<T>* pSums = scratch.Sums(rows.nIndex);
    for (int y = rows.nBegin; y < rows.nEnd; ++y) {
        const T* vRows[5];
        for (int k = 0; k < 5; ++k) {
            const int nRow = Clamp(y + k - 2, 0, src.nHeight - 1);
            vRows[k] = bInPlace && nRow < y ? scratch.KeptRow(nRow) : src.Row(nRow);
        }
        SmoothRow5(vRows, pSums, src.nWidth, src.nDim, scratch.Taps(rows.nIndex));
        if (bInPlace) std::copy_n(src.Row(y), nCount, scratch.KeptRow(y));
        FinishSmooth(pSums, dst.Row(y), nCount, src.nDim, bDither, scratch.Carry(rows.nIndex));
    }
}

}  // namespace

bool CSmoothFilter5x5::SmoothImage8(const CImage& src, CImage& dst, bool bDither)
{
    const bool bInPlace = &src == &dst;
    if (!bInPlace && !dst.AllocateDim(src.nWidth, src.nHeight, src.nDim)) return false;
    if (src.Empty() || src.nDim < 1) return true;
    SmoothScratch<uint8_t> scratch;
    if (!scratch.Allocate(bInPlace ? 1 : MaxTeam(), src.nWidth, src.nDim)) return false;

    if (bInPlace) {  // a later block would read rows that an earlier one has written
        SmoothBlock(src, dst, true, bDither, RowBlock{0, src.nHeight, 0}, scratch);
        return true;
    }
    ShareRows(src.nHeight, src.RowSamples(), [&](RowBlock rows) {
        if (bDither && rows.nBegin > 0) CarryBehindRows(src, rows.nBegin, scratch.Carry(rows.nIndex));
        SmoothBlock(src, dst, false, bDither, rows, scratch);
    });
    return true;
}

bool CSmoothFilter5x5::SmoothImage16(const CShortImage& src, CShortImage& dst, bool bDither)
{
    const bool bInPlace = &src == &dst;
    if (!bInPlace) {
        if (!dst.AllocateDim(src.nWidth, src.nHeight, src.nDim)) return false;
        dst.nRangeMax = src.nRangeMax;
        dst.nRangeMin = src.nRangeMin;
    }
    if (src.Empty() || src.nDim < 1) return true;
    SmoothScratch<int16_t> scratch;
    if (!scratch.Allocate(1, src.nWidth, src.nDim)) return false;
    SmoothBlock(src, dst, bInPlace, bDither, RowBlock{0, src.nHeight, 0}, scratch);
    return true;
}

}  // namespace vkr
