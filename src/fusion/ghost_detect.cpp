#include "fusion/ghost_process_filter.h"

namespace vkr {

// Nothing is taken for a ghost: there is no map.
bool CGhostProcessFilter::DetectGhost(const CImage* /*vWorkFrames*/, const CImage* /*vAlignMasks*/,
                                      int /*nExposureNum*/, int /*nReference*/, const PyramidParams& /*pyramid*/,
                                      CImage& /*ghostMap*/)
{
    return false;
}

}  // namespace vkr
