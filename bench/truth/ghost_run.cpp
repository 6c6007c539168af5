#include "truth/ghost_run.h"

#include <cstring>

#include "foundation/stage_probe.h"

namespace vkr::truth {

GhostRun::~GhostRun()
{
    m_map.Release();
    m_result.Release();
}

bool GhostRun::Fuse(CMultiExposureHDRProcessFlowOpt& flow, const GhostBurst& burst)
{
    m_map.Release();
    for (int k = 0; k < GhostBurst::kExposures; ++k) {
        if (!flow.m_YuvFrames[k].CopyFrom(burst.Frame(k))) return false;
    }
    StageProbe probe{};
    probe.pUser = &m_map;
    probe.pOnImage = [](void* pUser, const char* pName, const CImage& image) {
        if (std::strcmp(pName, "ghost") == 0) static_cast<CImage*>(pUser)->CopyGrayFrom(image);
    };
    SetStageProbe(&probe);
    const bool bDone = flow.ProcessImage(GhostBurst::kExposures, GhostBurst::kReference, {}, 0, 0, m_result);
    SetStageProbe(nullptr);
    return bDone;
}

}  // namespace vkr::truth
