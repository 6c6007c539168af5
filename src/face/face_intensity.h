#pragma once

#include <cstdint>

#include "face/face_box.h"
#include "face/face_params.h"
#include "foundation/image.h"
#include "foundation/stage_dumps.h"

namespace vkr {

// Levels of the skin in a face box, grey values: blue, green, red. The low levels, or the medians in their place.
struct FaceIntensity {
    int32_t vLow[3] = {};
    int32_t vHigh[3] = {};
};

// One face, measured twice in a burst: in the reference exposure and in the fused picture. Zero at its start.
struct MeasuredFace {
    FaceIntensity reference, fusion;
};

// What the measurements need to know besides the parameters of the face.
struct FaceMeasure {
    int32_t bHSVStretch = 0;  // 1: low and high levels are wanted, not medians
    StageDumps dumps = {};    // more lines
};

// Both look at the pixels of the box (both ends inclusive, any box; beyond the picture as face/box_runs.h tells) that
// are skin: the largest and the smallest component more than 15 apart, red more than 15 from green, and red the
// largest. A level that the box does not tell, as when it holds no skin, keeps the value that intensity had. They run
// on the caller's thread; the pictures are only read, and need not be filled.

// The face in the reference exposure (B, G, R, nDim 3). The levels leave out nFaceHistDropLowLightRate and
// nFaceHistDropHighLightRate percent of the skin at either end. A sum of high levels more than nBrightDarkFaceThres
// above that of the low ones sets bBrightDarkFace (nothing clears it here) and leaves the levels in the record;
// otherwise, unless bHSVStretch is set, the medians take the place of the low levels.
void GetReferenceFaceIntensity(const FaceBox& box, const CImage& image, const FaceParams& params,
                               const FaceMeasure& measure, FaceIntensity& intensity, int32_t& bBrightDarkFace);

// The face in the fused picture (nDim 3 or more, the base first) as it will lie behind a stretch from nLowLevel: only
// the low byte of a base component counts, the level is taken off, and a pixel with a component below 1 is left out.
// Medians, or with bHSVStretch or bBrightDarkFace low and high levels.
void GetFusionFaceIntensity(const FaceBox& box, const CShortImage& fused, int32_t nLowLevel, const FaceParams& params,
                            const FaceMeasure& measure, int32_t bBrightDarkFace, FaceIntensity& intensity);

// What the reference exposure's weights aim at, from the low levels. nFusionWeightSelect: 0 luma, 1 the largest, 2 the
// smallest.
int32_t FaceBrightness(const FaceIntensity& intensity, int32_t nFusionWeightSelect);

}  // namespace vkr
