#pragma once

#include <cstdint>

#include "tone/tone_params.h"

namespace vkr {

// Output value by level above the black one: entry i for level m_nLowLevel + i, 0 behind the white level. The limits of
// the levels, -255 .. 255 and 0 .. 512, leave at most 768 of them.
struct ToneLut {
    static constexpr int32_t kEntries = 768;
    uint8_t vValue[kEntries];
};

// Greatest, middle and smallest of three levels.
struct SortedLevels {
    int32_t nHigh, nMid, nLow;
};
SortedLevels SortLevels(const int32_t (&vLevels)[3]);

// Where the curve puts the levels of a face: MinFus and MaxFus of the fused picture to MinRef and MaxRef.
struct CurveAnchors {
    int32_t nMinRef, nMaxRef, nMinFus, nMaxFus;
};

// The anchors of two faces. MaxRef lies between the middle and the greatest reference level, nCombineWeight, 1/256, of
// the way; MinRef below it as the smallest lies below the greatest (0 where that is 0).
CurveAnchors MakeAnchors(const SortedLevels& reference, const SortedLevels& fusion, int32_t nCombineWeight);

// The broken line through (black level, 0), (MinFus, MinRef), (MaxFus, MaxRef), (white level, 255), in 32-bit floats,
// rounded; what does not fit 8 bits keeps its low byte. Where two of the four meet, a slope is not finite: its values
// saturate, and what is not a number becomes 0. All 0 where the white level lies below the black one. The values are
// printed, behind "LUT:".
void BuildFaceCurve(const CurveAnchors& anchors, const StretchLevels& levels, ToneLut& toneLut);

}  // namespace vkr
