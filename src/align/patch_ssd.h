#pragma once

#include <cstddef>
#include <cstdint>

#include "foundation/image.h"

namespace vkr {

constexpr int kPatchRadius = 4;
constexpr int kPatchSide = 9;
constexpr int kPatchStride = 16;       // bytes from row to row of a Patch
constexpr int32_t kNoSSD = 0x1000000;  // above every sum of squared differences (SSD) of two patches, 81 * 255^2
constexpr size_t kPatchReadAhead = 128;

// A place of a picture, also far outside: sums of any two 32-bit coordinates fit.
struct Place {
    int64_t x, y;
};

// 9 x 9 samples, each row followed by 7 zeros.
struct Patch {
    alignas(16) uint8_t vSamples[kPatchSide * kPatchStride];
};

// Copies the (2 nRadius + 1)^2 samples around place, those outside the picture (nDim 1) taken from its nearest edge; of
// an empty picture zeros. Nothing behind the samples of a row of pDst, nStride bytes apart, is written.
void CopyBlock(const CImage& picture, Place place, int nRadius, uint8_t* pDst, size_t nStride);

// The block of radius 4 as a patch.
Patch CopyPatch(const CImage& picture, Place place);

// Candidates that overlap: the one of column i and row j has its top left sample at pFirst + j * nStride + i and its
// rows nStride apart. kPatchReadAhead bytes behind the last sample of the last candidate may be read, without effect.
struct PatchGrid {
    const uint8_t* pFirst;
    size_t nStride;
    int nColumns, nRows;
    int nLikelyColumn, nLikelyRow;  // where a low SSD is to be expected: saves time, changes nothing; outside: nowhere
};

// The lowest SSD so far and the candidate it belongs to.
struct PatchBest {
    int32_t nSSD;
    int nColumn, nRow;
};

// Compares patch with every candidate of the grid, row by row. A strictly smaller SSD than best.nSSD replaces best, so
// that the first of equal ones stays. True when best was replaced. Any thread.
//
// Both give the same result: SearchGridScalar is the definition, SearchGrid is what to call.
bool SearchGridScalar(const Patch& patch, const PatchGrid& grid, PatchBest& best);
bool SearchGrid(const Patch& patch, const PatchGrid& grid, PatchBest& best);

// The same over nCount separate patches. Index of the candidate that nBestSSD then belongs to, -1 when none was better.
int SearchPatchesScalar(const Patch& patch, const Patch* pCandidates, int nCount, int32_t& nBestSSD);
int SearchPatches(const Patch& patch, const Patch* pCandidates, int nCount, int32_t& nBestSSD);

}  // namespace vkr
