#include "primitives/smooth.h"

#include <algorithm>
#include <cstddef>

#include "foundation/fixed_point.h"
#include "foundation/heap_buffer.h"
#include "foundation/parallel_rows.h"
#include "primitives/carry_rows.h"
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

    // A later block would read rows that an earlier one has written, hence one block in place. Otherwise as many as the
    // team has threads, however small the picture: the carry starts at 0 in each, so the blocks are part of the result.
    const auto Smooth = [&](RowBlock rows) { SmoothBlock(src, dst, bInPlace, bDither, rows, scratch); };
    if (bInPlace) {
        Smooth(RowBlock{0, src.nHeight, 0});
    } else {
        ParallelRows(src.nHeight, Smooth);
    }
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
