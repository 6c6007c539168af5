#pragma once

#include <cstdint>
#include <vector>

#include "foundation/image.h"
#include "truth/ghost_scene.h"

namespace vkr::truth {

// How a burst is taken.
struct Exposing {
    float fStops = 2;      // from one exposure to the next
    float fNoise = 1;      // times what a small sensor has at its lowest gain
    float fGreyNoise = 0;  // standard deviation added to every byte of the frames, at most 15
    uint32_t nSeed = 0;    // of the noise
};

// Three exposures of a scene, the darkest first, from a camera that stands still.
class GhostBurst {
public:
    static constexpr int kExposures = GhostScene::kPlaces, kReference = 1;

    GhostBurst() = default;
    ~GhostBurst();
    GhostBurst(const GhostBurst&) = delete;
    GhostBurst& operator=(const GhostBurst&) = delete;

    // pPlaces[k]: where the disc stands in exposure k. False when there was no memory in the pool.
    bool Draw(const GhostScene& scene, const unsigned* pPlaces, const Exposing& exposing);

    const CYuvImage& Frame(int k) const { return m_vFrames[k]; }

private:
    CYuvImage m_vFrames[kExposures] = {};
};

// What a pixel of the working pictures (half the frames) is to ghost detection.
enum class GhostTruth : uint8_t {
    kStill,    // no disc in any exposure
    kPassing,  // a disc in one, but next to no difference to see
    kGhost     // the disc is in an exposure and not in the reference or the other way round, and shows
};

// By rows. A difference shows if, between the two without noise and the darker exposed like the brighter, the filter's
// own measure of a brightness difference lies above the middle point of its soft threshold, both at their defaults.
std::vector<GhostTruth> FindGhostTruth(const GhostScene& scene, const Exposing& exposing);

}  // namespace vkr::truth
