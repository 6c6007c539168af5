#pragma once

#include <cstdint>

#include "foundation/image.h"
#include "foundation/stage_dumps.h"
#include "foundation/work_burst.h"
#include "ghosts/ghost_detect_params.h"
#include "parameters/filter.h"
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
    //   vAlignMasks   as many masks, nDim 1; that of the reference is read, and marks by values other than 0 which
    //                 pixels of the frames count for the brightness match of the pairs. It is read at the same x and y
    //                 as the frames whatever its size; beyond it, and without one, nothing counts
    //   dumps         narrowed by bDumpDebug: pictures under GhostDump/
    //   ghostMap      nDim 1, 0 no motion .. 128 strong; the size of the frames, an odd side one larger
    //   threads       the team shares exposures and pairs; same bytes from any number
    //
    // True when a map was made. A pair without memory adds what it has found so far. False when the burst is none or
    // there is no memory for the pyramids or the map; ghostMap is undefined then.
    bool DetectGhost(const WorkBurst& burst, const CImage* vAlignMasks, const PyramidParams& pyramid,
                     const StageDumps& dumps, CImage& ghostMap);
};

}  // namespace vkr
