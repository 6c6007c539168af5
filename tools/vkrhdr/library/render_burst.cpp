#include "library/render_burst.h"

#include <utility>

#include "library/align_report.h"
#include "library/engine.h"

namespace vkr::tool {

namespace {

Frame Rendered(Engine& engine, const PhotoBurst& burst)
{
    const std::vector<Photo>& vPhotos = burst.vPhotos;
    for (size_t k = 0; k < vPhotos.size(); ++k) engine.AddFrame(static_cast<int>(k), vPhotos[k].frame);
    Frame result;
    result.bCrFirst = burst.IsCrFirst();
    result.Resize(burst.FrameSize().nWidth, burst.FrameSize().nHeight);
    engine.Render(static_cast<int>(vPhotos.size()), burst.nReference, QuarterTurns(burst.Reference().info.nOrientation),
                  burst.vFaces, burst.nFaceSource, result);
    return result;
}

}  // namespace

RenderedBurst RenderBurst(const PhotoBurst& burst, const ToolParameters& params,
                          const std::vector<StageListener*>& vListeners, LibraryLines& lines)
{
    for (StageListener* pListener : vListeners) pListener->OnRenderBegins();
    lines.Times() = {};
    PairReports reports;
    std::vector<StageListener*> vAll = {&reports};
    vAll.insert(vAll.end(), vListeners.begin(), vListeners.end());
    RenderedBurst rendered;
    {
        const StageListeners listeners(vAll);
        Engine engine(params, lines);
        rendered.result = Rendered(engine, burst);
        listeners.Check();
    }
    rendered.vPairs = reports.Pairs();
    rendered.times = lines.Times();
    return rendered;
}

}  // namespace vkr::tool
