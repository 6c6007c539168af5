#pragma once

#include "face/face_box.h"
#include "foundation/image.h"
#include "foundation/stage_dumps.h"
#include "tone/face_tone_params.h"
#include "tone/hsv_difference.h"

namespace vkr {

// Moves hue and saturation of the tone picture out (B, G, R, nDim 3) back to those of the reference exposure, which has
// its size, in place; the value of a pixel stays. The correction comes from the averages of hsv_difference.h:
//
//   bHSVSmooth set   the skin's pair for all, taken n / 2^(n - 2) times, n being nHSVSmoothSize: 4 is all of it, 3 one
//                    and a half, 0 makes grey
//   not set          the pair as it is. HSVTone gives skin of the fused picture the pair of the whole picture and all
//                    else that of the skin (crossed, and to stay so); HSVToneFace gives all that of the skin
//
// Hue moves by at most nHSVHueChangeThres either way. The result is dumped as Dump/AfterHSVTone.bmp. Rows are
// shared among the team, same bytes from any number of threads. False, out unchanged, when there was no memory or the
// sizes differ.

// The whole picture but for pixels with a component of 255 in the reference, which has no colour to give there.
bool HSVTone(const FaceBox& box, const CImage& reference, const FaceToneParams& params, const StageDumps& dumps,
             CImage& out);

// The box alone, any box; beyond the picture as face/box_runs.h tells, a pixel that counts several times is corrected
// as often. Blown-out pixels of the reference count like any other.
bool HSVToneFace(const FaceBox& box, const CImage& reference, const FaceToneParams& params, const StageDumps& dumps,
                 CImage& out);

// The two size lines of the HSV stages.
void PrintHsvSizes(int nWidth, int nHeight, const CImage& reference);

// One correction of hue, saturation, value.
struct HsvCorrection {
    int32_t nHueShift;
    uint8_t vSaturation[256];  // by saturation; 0 makes a pixel grey at its value
};
HsvCorrection MakeCorrection(const HSVFix& fix, const FaceToneParams& params);

}  // namespace vkr
