#include "align/patch_ssd.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "align/patch_ssd.cpp"
#include <hwy/foreach_target.h>  // compiles this file once per instruction set
#include <hwy/highway.h>

#include <algorithm>
#include <cmath>
#include <cstring>

// Nearly all candidates are far from the patch: what decides the time is how early they are left.
HWY_BEFORE_NAMESPACE();
namespace vkr {
namespace HWY_NAMESPACE {
namespace {

#if HWY_TARGET == HWY_SCALAR

bool SearchGridSimd(const Patch& patch, const PatchGrid& grid, PatchBest& best)
{
    return SearchGridScalar(patch, grid, best);
}

int SearchPatchesSimd(const Patch& patch, const Patch* pCandidates, int nCount, int32_t& nBestSSD)
{
    return SearchPatchesScalar(patch, pCandidates, nCount, nBestSSD);
}

#else

namespace hn = hwy::HWY_NAMESPACE;

alignas(16) constexpr uint8_t kInPatch[kPatchStride] = {255, 255, 255, 255, 255, 255, 255, 255, 255};

// Three rows of the SSD. Even and odd bytes are squared apart: in which order they are summed does not matter.
HWY_INLINE int32_t ThreeRowsSSD(const uint8_t* pPatch, const uint8_t* pCandidate, size_t nStride)
{
    const hn::CappedTag<uint8_t, 16> d8;
    const hn::Repartition<uint16_t, decltype(d8)> du16;
    const hn::Repartition<int16_t, decltype(d8)> d16;
    const hn::Repartition<int32_t, decltype(d8)> d32;
    const auto inPatch = hn::Load(d8, kInPatch);
    auto sum0 = hn::Zero(d32), sum1 = hn::Zero(d32);
    for (int r = 0; r < 3; ++r) {
        const auto a = hn::Load(d8, pPatch + r * kPatchStride);
        const auto b = hn::And(hn::LoadU(d8, pCandidate + static_cast<size_t>(r) * nStride), inPatch);
        const auto diff = hn::BitCast(du16, hn::Sub(hn::Max(a, b), hn::Min(a, b)));
        const auto even = hn::BitCast(d16, hn::And(diff, hn::Set(du16, 0xFF)));
        const auto odd = hn::BitCast(d16, hn::ShiftRight<8>(diff));
        sum0 = hn::ReorderWidenMulAccumulate(d32, even, even, sum0, sum1);
        sum0 = hn::ReorderWidenMulAccumulate(d32, odd, odd, sum0, sum1);
    }
    return hn::GetLane(hn::SumOfLanes(d32, hn::Add(sum0, sum1)));
}

// The SSD when it is below nLimit, else anything not below. The middle, where corners are, tells most.
HWY_INLINE int32_t PatchSSD(const Patch& patch, const uint8_t* pCandidate, size_t nStride, int32_t nLimit)
{
    constexpr int kThird = 3 * kPatchStride;
    const int32_t nMiddle = ThreeRowsSSD(patch.vSamples + kThird, pCandidate + 3 * nStride, nStride);
    if (nMiddle >= nLimit) return nMiddle;
    return nMiddle + ThreeRowsSSD(patch.vSamples, pCandidate, nStride) +
           ThreeRowsSSD(patch.vSamples + 2 * kThird, pCandidate + 6 * nStride, nStride);
}

// A row of nine absolute differences that sum to the result or more has at least the SSD nLimit: squares of integers
// are not below them, and nine of them not below a ninth of the squared sum.
HWY_INLINE int32_t RejectingSum(int32_t nLimit)
{
    if (nLimit > 255 * 255 / kPatchSide) return nLimit;  // the root is above 255, which is all that matters
    int32_t nRoot = static_cast<int32_t>(std::sqrt(static_cast<float>(kPatchSide * nLimit)));
    while (nRoot * nRoot < kPatchSide * nLimit) ++nRoot;
    return std::min(nLimit, nRoot);
}

// Row nRow of the grid, the lanes side by side candidates, sifted by the differences of the patch's middle row.
class GridRow {
public:
    HWY_INLINE GridRow(const Patch& patch, const PatchGrid& grid, int nRow)
        : m_patch(patch),
          m_pRow(grid.pFirst + static_cast<size_t>(nRow) * grid.nStride),
          m_nStride(grid.nStride),
          m_nColumns(grid.nColumns)
    {
    }

    // Column of the last candidate below nLimit, which becomes its SSD; -1 when there was none.
    HWY_INLINE int Search(int32_t& nLimit) const
    {
        const hn::CappedTag<uint8_t, 64> d8;
        const int nLanes = static_cast<int>(hn::Lanes(d8));
        int nFound = -1;
        int32_t nReject = RejectingSum(nLimit);
        for (int i = 0; i < m_nColumns && nLimit > 0; i += nLanes) {
            uint64_t nLeft = nReject > 255 || m_nColumns < 16 ? ~uint64_t{0} : Sift(i, nReject);
            if (m_nColumns - i < 64) nLeft &= (uint64_t{1} << (m_nColumns - i)) - 1;
            if (nLanes < 64) nLeft &= (uint64_t{1} << nLanes) - 1;
            for (; nLeft != 0; nLeft &= nLeft - 1) {
                const int nColumn = i + static_cast<int>(hwy::Num0BitsBelowLS1Bit_Nonzero64(nLeft));
                const int32_t nSSD = PatchSSD(m_patch, m_pRow + nColumn, m_nStride, nLimit);
                if (nSSD >= nLimit) continue;
                nLimit = nSSD;
                nFound = nColumn;
                nReject = RejectingSum(nLimit);
            }
        }
        return nFound;
    }

private:
    // One bit for each candidate from column i on whose middle row may still be good enough; nReject is 1 .. 255.
    HWY_INLINE uint64_t Sift(int i, int32_t nReject) const
    {
        const hn::CappedTag<uint8_t, 64> d8;
        const uint8_t* pSamples = m_pRow + kPatchRadius * m_nStride + i;
        const uint8_t* pPatch = m_patch.vSamples + kPatchRadius * kPatchStride;
        auto sum = hn::Zero(d8);
        for (int k = 0; k < kPatchSide; ++k) {
            const auto a = hn::LoadU(d8, pSamples + k);
            const auto b = hn::Set(d8, pPatch[k]);
            sum = hn::SaturatedAdd(sum, hn::Sub(hn::Max(a, b), hn::Min(a, b)));
        }
        const auto left = hn::Eq(hn::Min(sum, hn::Set(d8, static_cast<uint8_t>(nReject - 1))), sum);
        uint8_t vBits[8] = {};
        hn::StoreMaskBits(d8, left, vBits);
        uint64_t nBits = 0;
        for (int k = 0; k < 8; ++k) nBits |= static_cast<uint64_t>(vBits[k]) << (8 * k);
        return nBits;
    }

    const Patch& m_patch;
    const uint8_t* m_pRow;
    size_t m_nStride;
    int m_nColumns;
};

// The limit to start with. The likely candidate lowers it to just above its own SSD, so that it is still found in its
// turn unless one before it is as good.
HWY_INLINE int32_t StartLimit(const Patch& patch, const PatchGrid& grid, int32_t nLimit)
{
    const int i = grid.nLikelyColumn, j = grid.nLikelyRow;
    if (i < 0 || i >= grid.nColumns || j < 0 || j >= grid.nRows) return nLimit;
    const uint8_t* pLikely = grid.pFirst + static_cast<size_t>(j) * grid.nStride + i;
    return std::min(nLimit - 1, PatchSSD(patch, pLikely, grid.nStride, nLimit)) + 1;
}

bool SearchGridSimd(const Patch& patch, const PatchGrid& grid, PatchBest& best)
{
    if (best.nSSD <= 0) return false;
    int32_t nLimit = StartLimit(patch, grid, best.nSSD);
    bool bFound = false;
    for (int j = 0; j < grid.nRows && nLimit > 0; ++j) {
        const int nColumn = GridRow(patch, grid, j).Search(nLimit);
        if (nColumn < 0) continue;
        best = {nLimit, nColumn, j};
        bFound = true;
    }
    return bFound;
}

int SearchPatchesSimd(const Patch& patch, const Patch* pCandidates, int nCount, int32_t& nBestSSD)
{
    int nFound = -1;
    for (int i = 0; i < nCount && nBestSSD > 0; ++i) {
        const int32_t nSSD = PatchSSD(patch, pCandidates[i].vSamples, kPatchStride, nBestSSD);
        if (nSSD >= nBestSSD) continue;
        nBestSSD = nSSD;
        nFound = i;
    }
    return nFound;
}

#endif

}  // namespace
}  // namespace HWY_NAMESPACE
}  // namespace vkr
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace vkr {

namespace {

HWY_EXPORT(SearchGridSimd);
HWY_EXPORT(SearchPatchesSimd);

int32_t WholeSSD(const Patch& patch, const uint8_t* pCandidate, size_t nStride)
{
    int32_t nSSD = 0;
    for (int y = 0; y < kPatchSide; ++y) {
        const uint8_t* pRow = pCandidate + static_cast<size_t>(y) * nStride;
        for (int x = 0; x < kPatchSide; ++x) {
            const int32_t nDiff = patch.vSamples[y * kPatchStride + x] - pRow[x];
            nSSD += nDiff * nDiff;
        }
    }
    return nSSD;
}

// Samples nFirst .. nFirst + nCount - 1 of a row of nWidth.
void CopyClampedRow(const uint8_t* pRow, int nWidth, int nFirst, int nCount, uint8_t* pDst)
{
    if (nFirst >= 0 && nFirst + nCount <= nWidth) {
        std::memcpy(pDst, pRow + nFirst, static_cast<size_t>(nCount));
        return;
    }
    for (int i = 0; i < nCount; ++i) pDst[i] = pRow[std::min(std::max(nFirst + i, 0), nWidth - 1)];
}

}  // namespace

void CopyBlock(const CImage& picture, Place place, int nRadius, uint8_t* pDst, size_t nStride)
{
    const int nSide = 2 * nRadius + 1;
    if (picture.Empty()) {
        for (int j = 0; j < nSide; ++j)
            std::memset(pDst + static_cast<size_t>(j) * nStride, 0, static_cast<size_t>(nSide));
        return;
    }
    // Beyond nRadius outside all samples are the edge's.
    const auto Near = [&](int64_t n, int nSize) {
        return static_cast<int>(std::min(std::max(n, int64_t{-nRadius}), int64_t{nSize} - 1 + nRadius)) - nRadius;
    };
    const int xFirst = Near(place.x, picture.nWidth), yFirst = Near(place.y, picture.nHeight);
    for (int j = 0; j < nSide; ++j) {
        CopyClampedRow(picture.Row(yFirst + j), picture.nWidth, xFirst, nSide, pDst + static_cast<size_t>(j) * nStride);
    }
}

Patch CopyPatch(const CImage& picture, Place place)
{
    Patch patch{};
    CopyBlock(picture, place, kPatchRadius, patch.vSamples, kPatchStride);
    return patch;
}

bool SearchGridScalar(const Patch& patch, const PatchGrid& grid, PatchBest& best)
{
    bool bFound = false;
    for (int j = 0; j < grid.nRows; ++j) {
        const uint8_t* pRow = grid.pFirst + static_cast<size_t>(j) * grid.nStride;
        for (int i = 0; i < grid.nColumns; ++i) {
            const int32_t nSSD = WholeSSD(patch, pRow + i, grid.nStride);
            if (nSSD >= best.nSSD) continue;
            best = {nSSD, i, j};
            bFound = true;
        }
    }
    return bFound;
}

bool SearchGrid(const Patch& patch, const PatchGrid& grid, PatchBest& best)
{
    return HWY_DYNAMIC_DISPATCH(SearchGridSimd)(patch, grid, best);
}

int SearchPatchesScalar(const Patch& patch, const Patch* pCandidates, int nCount, int32_t& nBestSSD)
{
    int nFound = -1;
    for (int i = 0; i < nCount; ++i) {
        const int32_t nSSD = WholeSSD(patch, pCandidates[i].vSamples, kPatchStride);
        if (nSSD >= nBestSSD) continue;
        nBestSSD = nSSD;
        nFound = i;
    }
    return nFound;
}

int SearchPatches(const Patch& patch, const Patch* pCandidates, int nCount, int32_t& nBestSSD)
{
    return HWY_DYNAMIC_DISPATCH(SearchPatchesSimd)(patch, pCandidates, nCount, nBestSSD);
}

}  // namespace vkr
#endif  // HWY_ONCE
