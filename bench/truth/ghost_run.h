#pragma once

#include "flow/multi_exposure_flow.h"
#include "truth/ghost_burst.h"

namespace vkr::truth {

// The whole flow on copies of bursts, with a look at its ghost map.
class GhostRun {
public:
    GhostRun() = default;
    ~GhostRun();
    GhostRun(const GhostRun&) = delete;
    GhostRun& operator=(const GhostRun&) = delete;

    // flow must not have seen a burst. False when there was no memory. Takes the stage probe for the time of the call.
    bool Fuse(CMultiExposureHDRProcessFlowOpt& flow, const GhostBurst& burst);

    const CImage& Map() const { return m_map; }  // working size, an odd side one larger; empty if the flow made none
    const CYuvImage& Result() const { return m_result; }

private:
    CImage m_map{};
    CYuvImage m_result{};
};

}  // namespace vkr::truth
