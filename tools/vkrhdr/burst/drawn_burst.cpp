#include "burst/drawn_burst.h"

#include "foundation/image_scope.h"
#include "foundation/mem_pool.h"
#include "pictures/library_pictures.h"
#include "pictures/tool_error.h"

namespace vkr::tool {

namespace {

// The pictures of the library come from its pool, which is open for this scope; an engine opens its own later.
class PoolScope {
public:
    explicit PoolScope(size_t nBytes) { PoolInit(nBytes); }
    ~PoolScope() { PoolRelease(); }
    PoolScope(const PoolScope&) = delete;
    PoolScope& operator=(const PoolScope&) = delete;
};

}  // namespace

std::vector<Frame> DrawBurst(const SceneParams& params)
{
    const size_t nFrame = static_cast<size_t>(params.nWidth) * params.nHeight / 2 * 3;
    const PoolScope pool((nFrame + 4096) * params.nExposures);
    CYuvImage vImages[8] = {};
    const ImageScope<CYuvImage[8]> scope(vImages);
    if (!DrawDemoBurst(params, vImages)) throw BurstError("the scene can not be drawn: not enough memory");
    std::vector<Frame> vFrames;
    for (int k = 0; k < params.nExposures; ++k) {
        vFrames.push_back(FrameOf(vImages[k]));
        vImages[k].Release();
    }
    return vFrames;
}

std::vector<RatioFrame> RatioFramesOf(const std::vector<Frame>& vFrames)
{
    std::vector<RatioFrame> vRatioFrames;
    for (const Frame& frame : vFrames) vRatioFrames.push_back({&frame, "frame " + std::to_string(vRatioFrames.size())});
    return vRatioFrames;
}

}  // namespace vkr::tool
