#pragma once

#include <vector>

#include "align/aligned_pair.h"
#include "align/multiple_images_align_filter.h"
#include "truth/truth_burst.h"

namespace vkr::truth {

// What the library's alignment made of a burst.
struct AlignResult {
    std::vector<AlignedPair> vPairs;
    Homography vToReference[TruthBurst::kExposures];  // the identity, as far as links failed
    double fMs = 0;                                   // alignment alone, from frames to frames

    bool AllAligned() const;
};

// Runs alignment on copies of bursts.
class AlignRun {
public:
    AlignRun() = default;
    ~AlignRun();
    AlignRun(const AlignRun&) = delete;
    AlignRun& operator=(const AlignRun&) = delete;

    // False when there was no memory. Takes the stage probe for the time of the call.
    bool Align(CMultipleImagesAlignFilterOpt& filter, const TruthBurst& burst, AlignResult& result);

    // The aligned frames of the last run.
    const CYuvImage& Frame(int k) const { return m_vFrames[k]; }

private:
    CYuvImage m_vFrames[TruthBurst::kExposures] = {};
    CImage m_vMasks[kMaxExposures] = {};
};

}  // namespace vkr::truth
