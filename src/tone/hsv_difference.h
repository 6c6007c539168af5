#pragma once

#include <cstdint>

#include "face/face_box.h"
#include "foundation/image.h"

namespace vkr {

// How the colours of a fused picture lie beside those of the reference, on average. Both wrap at 16 bits.
struct HSVFix {
    int16_t nHueFix = 0;     // 1/256 hue steps to add
    int16_t nSatGain = 512;  // 1/512: saturation of the reference over that of the fused picture; 0 over a grey one
};

// All forms take pictures of one size, print their lines and time themselves. Rows are shared among the team where the
// whole picture counts; sums have no order, so the results are the same from any number of threads.
//
// Hues are compared on a circle of 255 steps, as bytes: a difference below -128 gains 255; over the whole picture one
// above 128 loses as much.

// The skin of the box: pixels that the reference shows with value >= 50, saturation >= 48 and hue < 15. Both ends of
// the box count; beyond the picture as face/box_runs.h tells. Without skin: no change of hue and a gain of 1 / 512.
void GetFaceDiffHSV(const FaceBox& box, const CImage& refHsv, const CImage& fusHsv, HSVFix& fix);

// The whole picture.
void GetBackgroundDiffHSV(const CImage& refHsv, const CImage& fusHsv, HSVFix& fix);

// Both in one pass. Here a pixel belongs to the box if its own place does.
void GetFaceAndBackgroundDiffHSV(const FaceBox& box, const CImage& refHsv, const CImage& fusHsv, HSVFix& backFix,
                                 HSVFix& faceFix);

// The same from a reference in B, G, R and a fused picture of 16 bits (nDim 6), of which the base counts, within 0 ..
// 255. Fills fusHsv (nDim 3) with it and excess (nDim 1) with what its largest component lies above 255, the low byte;
// both have its size.
void GetFaceAndBackgroundDiffHSV(const FaceBox& box, const CImage& reference, const CShortImage& fused, CImage& fusHsv,
                                 CImage& excess, HSVFix& backFix, HSVFix& faceFix);

}  // namespace vkr
