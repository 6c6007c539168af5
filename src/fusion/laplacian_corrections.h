#pragma once

#include <cstdint>

#include "fusion/fusion_params.h"
#include "primitives/planar_rows.h"

namespace vkr {

// A run of one exposure's Laplacian level, one plane per channel B, G, R: the level, and what was subtracted from it.
struct LaplacianRun {
    int nCount;                      // pixels, at most kRunPixels
    int16_t vDetail[3][kRunPixels];  // level minus doubled coarser level
    uint8_t vUp[3][kRunPixels];      // doubled coarser level
};

// pLevel, pUp: nCount pixels B, G, R of the level and of the doubled coarser one at the same place.
void SubtractUp(const uint8_t* pLevel, const uint8_t* pUp, int nCount, LaplacianRun& run);
void SubtractUpScalar(const uint8_t* pLevel, const uint8_t* pUp, int nCount, LaplacianRun& run);

// Corrections of a run before it is blended; they change vDetail alone. Any number of threads, on different runs. The
// plain forms are the definitions; every instruction set gives their bytes.

// Gain of each luma of the doubled level, Q4: 16 leaves the detail alone, 32 doubles it; 0 .. 128.
struct DetailGains {
    int16_t vByLuma[256];
};

// Lookup luma to gain, Q4, before the strength of a level is applied. No luma reaches the entries from 256 on.
struct SharpenTable {
    int32_t vGains[512];
};
void FillSharpenTable(SharpenTable& table, const FusionParams& params);

// False, gains undefined, where level nLevel gets no boost: switched off, strength 0, or coarser than the lists.
bool FillDetailGains(DetailGains& gains, const SharpenTable& table, int nLevel, const FusionParams& params);

// Each sample becomes (gain * sample) / 16, truncated toward zero; samples -255 .. 255.
void ApplyShadowDetailBoost(const DetailGains& gains, LaplacianRun& run);
void ApplyShadowDetailBoostScalar(const DetailGains& gains, LaplacianRun& run);

// Gain 16.16 by the smallest of B, G, R of the doubled level, from nLowest on. Levels beyond the lists take their last
// entry.
struct HighlightGains {
    int32_t nLowest;
    int32_t vBySmallest[256];
};
void FillHighlightGains(HighlightGains& gains, int nLevel, const FusionParams& params);

// Where that smallest reaches nLowest, each sample becomes (gain * sample) >> 16, toward minus infinity.
void ApplyExtendHL(const HighlightGains& gains, LaplacianRun& run);

// Each sample becomes (coefficient * sample) / 128, truncated toward zero; what exceeds 16 bits wraps. One coefficient
// per pixel, Q7, nStep entries apart.
void ApplyEdgeCompensation(const int16_t* pCoefs, int nStep, LaplacianRun& run);
void ApplyEdgeCompensationScalar(const int16_t* pCoefs, int nStep, LaplacianRun& run);

}  // namespace vkr
