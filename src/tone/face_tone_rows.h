#pragma once

#include <cstdint>

#include "tone/face_curve.h"

namespace vkr {

// The face curve with both ends: entry 0 for a base below the black level, entries 1 .. span + 1 for the levels, the
// one behind them for a base above the white level.
struct FaceRowLut {
    int32_t nLow, nHigh;  // black and white level
    int32_t nSpan;        // last level of the curve, -1 where it has none
    uint8_t vValue[ToneLut::kEntries + 2];
};

// toneLut with 0 below the black and 255 above the white level.
FaceRowLut MakeFaceRowLut(const ToneLut& toneLut, const StretchLevels& levels);

// One row of fused pixels, six samples each, through the curve into three bytes each. A base outside the levels gives
// 0 or 255 whatever its high frequency. Otherwise bHighInside takes base and high frequency, clamped to the levels,
// through the curve; else the high frequency is added behind it, clamped to 0 .. 255. pOut must not overlap pFused; any
// samples, any width. The plain form is the definition; every instruction set gives its bytes.
void FaceToneRow(const int16_t* pFused, uint8_t* pOut, int nWidth, const FaceRowLut& lut, bool bHighInside);
void FaceToneRowScalar(const int16_t* pFused, uint8_t* pOut, int nWidth, const FaceRowLut& lut, bool bHighInside);

}  // namespace vkr
