#pragma once

#include <cstdint>
#include <vector>

#include "foundation/image.h"
#include "truth/light_map.h"
#include "truth/plane_homography.h"

namespace vkr::truth {

struct BurstParams {
    int nWidth = 640, nHeight = 480;  // even
    uint32_t nSeed = 0;               // of the scene, the motion and the noise
    float fStops = 2;                 // from one exposure to the next
    float fNoise = 1;                 // times what a small sensor has at its lowest gain
};

// A hand-held burst of three exposures, the darkest first, whose motion is known: one scene, sampled by every frame
// through its own homography, then exposed, with the noise of its light and of its reading, clipped at white, coded
// with the curve of displays and converted to full-range 4:2:0, Cb first. The same bytes from any number of threads.
class TruthBurst {
public:
    static constexpr int kExposures = 3, kReference = 1;

    TruthBurst() = default;
    ~TruthBurst();
    TruthBurst(const TruthBurst&) = delete;
    TruthBurst& operator=(const TruthBurst&) = delete;

    // False when there was no memory in the pool. Buffers are kept for the next burst.
    bool Draw(const BurstParams& params);

    const CYuvImage& Frame(int k) const { return m_vFrames[k]; }

    // Takes pixels of frame k to pixels of the reference.
    const Homography& ToReference(int k) const { return m_vToReference[k]; }

    // CornerError of frame k when vToReference[k] is what takes it to the reference; the largest of them over the
    // frames; and whether any frame would lie further off than it did as it came.
    double FrameError(const Homography* vToReference, int k) const;
    double WorstCornerError(const Homography* vToReference) const;
    bool IsWorseThanNothing(const Homography* vToReference) const;

private:
    void DrawFrame(const BurstParams& params, const Homography& toMap, float fGain, int k);

    LightMap m_map;
    CYuvImage m_vFrames[kExposures] = {};
    Homography m_vToReference[kExposures];
};

}  // namespace vkr::truth
