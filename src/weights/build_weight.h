#pragma once

#include "foundation/image.h"
#include "foundation/ready_flags.h"
#include "foundation/work_burst.h"
#include "primitives/pyramid_levels.h"
#include "weights/weight_params.h"

namespace vkr {

// A weight, Q7, for every pixel of every exposure, as a pyramid: vWeights has kMaxLevels records, level 0 of the
// frames' size, nDim = nExposureNum, each level half of the one above until the width is at most 1 << nTopLevel. At
// level 0 the weights of a pixel sum to 128 when bNormalizeWeightEnable is set; at the others to about 128.
//
// The frames are smoothed first (5 x 5, with carry). Same bytes from any number of threads. Returns the number of
// levels; 0 when there was no memory.

// First build: takes each frame when its flag says that it is ready, and sleeps 5 ms when none is. Runs on a thread of
// its own beside ghost detection.
int BuildWeight(const WorkBurst& burst, const WeightParams& params, const FaceAim& face, const PyramidParams& pyramid,
                ReadyFlags& flags, CImage* vWeights);

// Second build, after the frames were re-linearised: no waiting, exposures smoothed in parallel. With
// nFusionWeightSelect other than 1 the plain brightness is the raw weight, without the table.
int RebuildWeight(const WorkBurst& burst, const WeightParams& params, const FaceAim& face, const PyramidParams& pyramid,
                  CImage* vWeights);

}  // namespace vkr
