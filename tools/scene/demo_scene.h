#pragma once

#include <cstdint>

#include "foundation/image.h"

namespace vkr {

// A burst that needs no camera: a room with a bright window, a lamp, fine texture and a face, rendered once and exposed
// nExposures times through a display curve.
struct SceneParams {
    int nWidth = 960, nHeight = 640;  // even, 2 .. 16384
    int nExposures = 3;   // 1 .. 8, the darkest first; frame (nExposures - 1) / 2 is the normally exposed one
    uint32_t nSeed = 1;   // of the noise; the room stays the same
    float fStops = 2.0f;  // from one exposure to the next, 0 .. 8
    float fNoise = 1.0f;  // standard deviation of the luma, grey levels
};

// Fills vFrames[0 .. nExposures - 1], Cb first. The bytes are the same on every machine and from any number of threads.
// False, all frames released, when a parameter is out of its range or there is no memory.
bool DrawDemoBurst(const SceneParams& params, CYuvImage* vFrames);

}  // namespace vkr
