#pragma once

#include <cstdint>

#include "face/face_box.h"
#include "face/face_params.h"
#include "foundation/image.h"
#include "foundation/stage_dumps.h"
#include "tone/face_tone_params.h"
#include "tone/tone_params.h"

namespace vkr {

// What a stretch that follows the face starts from. A view: the flow keeps the pictures, all of one size.
struct FusedFace {
    const FaceBox& box;       // working pixels
    CShortImage& fused;       // nDim 6, signed 16 bits; its base is clipped in place under bCheckSatuEnable
    const CImage& reference;  // the reference exposure, B, G, R
    const CImage& satuMask;   // nDim 1; may be empty when bCheckSatuEnable is 0
};

// What it goes by.
struct FaceStretch {
    const ToneParams& tone;
    const FaceParams& face;
    const FaceToneParams& faceTone;
    int32_t bCheckSatuEnable = 0;   // clip the base under the saturation mask first
    int32_t bAddHighFrequency = 0;  // the detail goes through the curve, else it is added behind it
    StageDumps dumps = {};          // pictures under Dump/, more lines
};

}  // namespace vkr
