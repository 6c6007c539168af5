#pragma once

#include <cstdint>

#include "foundation/filter.h"
#include "foundation/image.h"
#include "foundation/stage_dumps.h"
#include "foundation/work_burst.h"
#include "primitives/pyramid_levels.h"

namespace vkr {

// Finds the places where the exposures of a burst disagree because something moved.
class CGhostProcessFilter : public CMultiFilterProcessFlow {
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

    static constexpr int kLevelLists = 8;  // entries of the per-level lists; coarser levels take the last one

    int32_t bDumpDebug = 0;
    int32_t nGhostPyramidStartLevel = 0;
    int32_t nMinGhostLevel = 0;
    int32_t nEdgeTh[kLevelLists] = {};
    int32_t nDiffEThre[kLevelLists] = {};
    int32_t nDiffEThre2[kLevelLists] = {};
    int32_t nDiffBrThre[kLevelLists] = {};
    int32_t nDiffBrThre2[kLevelLists] = {};
    int32_t bDiffHVFilterEnable = 0;
    int32_t bDiffFinalFilterEnable = 0;
    int32_t bDiffSelect = 0;
    int32_t nGhostThre[kLevelLists][3] = {};
    int32_t bCheckThreEnable = 0;
    int32_t nCheckThre[2] = {};
    int32_t nMaxCheckThreIt = 0;
    int32_t nGhostDilationIt = 0;
    int32_t bRefineGhostAtMinGhostLevel = 0;
    int32_t bRefineGhostAtFullRes = 0;
    int32_t nRefineMaxItMinGhost = 0;
    int32_t nRefineMaxItFullRes = 0;
    int32_t nGhostBinaryThresh = 0;
    int32_t nRefineGhostEdgeTh = 0;
    int32_t nRefineGhostBrTh = 0;
    int32_t bCloseBfRefine = 0;
    int32_t nGhostCloseIter = 0;
    int32_t nGhostCloseIterAft = 0;
    int32_t bSaturateNoGhostEnable = 0;
    int32_t nGhostLimit[2] = {};
    int32_t nGrayCloseItAtGhostStartLevel = 0;
    int32_t nGrayCloseItAtGhostOtherLevel = 0;
    int32_t bErodeDiffEnable = 0;
    int32_t bErodeSqaureEnable = 0;
};

}  // namespace vkr
