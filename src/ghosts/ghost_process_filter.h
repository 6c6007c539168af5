#pragma once

#include <cstdint>

#include "foundation/filter.h"
#include "foundation/image.h"
#include "ghosts/ghost_detect_params.h"
#include "primitives/pyramid_levels.h"

namespace vkr {

// Finds the places where the exposures of a burst disagree because something moved.
class CGhostProcessFilter : public CMultiFilterProcessFlow, public GhostDetectParams {
public:
    void SetFilterName() override;
    void RegisterFilters() override;  // none
    void RegisterParameters() override;

    // Compares neighbouring exposures pair by pair, coarse to fine, on pyramids whose level 0 is half the frames.
    //
    //   vWorkFrames   nExposureNum (1 .. 8) pictures B, G, R of one size, darkest first
    //   vAlignMasks   as many masks, nDim 1; that of the reference is read, and marks by values other than 0 which
    //                 pixels of the frames count for the brightness match of the pairs. It is read at the same x and y
    //                 as the frames whatever its size; beyond it, and without one, nothing counts
    //   ghostMap      nDim 1, 0 no motion .. 128 strong; the size of the frames, an odd side one larger
    //   threads       the team shares exposures and pairs; same bytes from any number
    //
    // True when a map was made. A pair without memory adds what it has found so far. False when the burst is none or
    // there is no memory for the pyramids or the map; ghostMap is undefined then.
    bool DetectGhost(const CImage* vWorkFrames, const CImage* vAlignMasks, int nExposureNum, int nReference,
                     const PyramidParams& pyramid, CImage& ghostMap);

    int32_t m_bDumpAllowed = 1;  // the flow's switch: without it bDumpDebug writes nothing
};

}  // namespace vkr
