#include "fuse/fuse_burst.h"

#include <utility>

#include "burst/stop_watch.h"
#include "library/align_report.h"
#include "library/chosen_faces.h"
#include "library/render_burst.h"
#include "second_attempt/second_attempt.h"

namespace vkr::tool {

BurstFuser::BurstFuser(const BurstWishes& wishes, Remarks& remarks)
    : m_wishes(wishes),
      m_remarks(remarks),
      m_lines(&remarks),
      m_params(LoadParameters(wishes.parameters, m_lines, remarks))
{
    if (wishes.bDebugFiles) m_params.SwitchDumpsOn();
}

FusedBurst BurstFuser::Fuse(PhotoBurst burst, const std::vector<StageListener*>& vListeners) &&
{
    FitParameters(m_wishes.parameters, burst.RatioFrames(), m_remarks, m_params);
    m_params.SetChromaOrder(burst.IsCrFirst());
    ChooseFaces(m_wishes.faces, m_wishes.parameters, m_remarks, burst, m_params);

    const StopWatch watch;
    RenderedBurst rendered = RenderBurst(burst, m_params, vListeners, m_lines);
    if (MayTryAgain(m_wishes.parameters, rendered.vPairs) &&
        TryAgain(m_wishes.parameters, rendered.vPairs, m_remarks, burst, m_params)) {
        rendered = RenderBurst(burst, m_params, vListeners, m_lines);
    }
    return {std::move(rendered.result), std::move(burst),          std::move(m_params),
            std::move(rendered.vPairs), std::move(rendered.times), watch.Ms()};
}

void SayFailedPairs(const FusedBurst& fused, Remarks& remarks)
{
    const bool bDropped = fused.params.Get("CMultipleImagesAlignFilter.bDropAlignFail") != 0;
    const std::vector<std::string> vNames = fused.burst.Names();
    for (const AlignedPair& pair : fused.vPairs) {
        if (!pair.bAligned) remarks.Say("%s", FailureLine(pair, vNames, fused.burst.nReference, bDropped).c_str());
    }
}

}  // namespace vkr::tool
