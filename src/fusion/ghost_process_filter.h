#pragma once

#include <cstdint>

#include "foundation/filter.h"
#include "foundation/image.h"
#include "primitives/pyramid_levels.h"

namespace vkr {

// Finds the places where the exposures of a burst disagree because something moved.
class CGhostProcessFilter : public CMultiFilterProcessFlow {
public:
    void SetFilterName() override;
    void RegisterFilters() override;  // none
    void RegisterParameters() override;

    // ghostMap takes the working frames' size, nDim 1: 0 no motion .. 128 strong. True when a map was made.
    bool DetectGhost(const CImage* vWorkFrames, const CImage* vAlignMasks, int nExposureNum, int nReference,
                     const PyramidParams& pyramid, CImage& ghostMap);

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
