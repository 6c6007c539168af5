#include "ghosts/ghost_process_filter.h"

namespace vkr {

void CGhostProcessFilter::SetFilterName()
{
    StoreName("CGhostProcessFilter");
}

void CGhostProcessFilter::RegisterFilters() {}

void CGhostProcessFilter::RegisterParameters()
{
    ADD_PARAM(bDumpDebug);
    ADD_PARAM(nGhostPyramidStartLevel);
    ADD_PARAM(nMinGhostLevel);
    ADD_PARAM(nEdgeTh);
    ADD_PARAM(nDiffEThre);
    ADD_PARAM(nDiffEThre2);
    ADD_PARAM(nDiffBrThre);
    ADD_PARAM(nDiffBrThre2);
    ADD_PARAM(bDiffHVFilterEnable);
    ADD_PARAM(bDiffFinalFilterEnable);
    ADD_PARAM(bDiffSelect);
    ADD_PARAM(nGhostThre);
    ADD_PARAM(bCheckThreEnable);
    ADD_PARAM(nCheckThre);
    ADD_PARAM(nMaxCheckThreIt);
    ADD_PARAM(nGhostDilationIt);
    ADD_PARAM(bRefineGhostAtMinGhostLevel);
    ADD_PARAM(bRefineGhostAtFullRes);
    ADD_PARAM(nRefineMaxItMinGhost);
    ADD_PARAM(nRefineMaxItFullRes);
    ADD_PARAM(nGhostBinaryThresh);
    ADD_PARAM(nRefineGhostEdgeTh);
    ADD_PARAM(nRefineGhostBrTh);
    ADD_PARAM(bCloseBfRefine);
    ADD_PARAM(nGhostCloseIter);
    ADD_PARAM(nGhostCloseIterAft);
    ADD_PARAM(bSaturateNoGhostEnable);
    ADD_PARAM(nGhostLimit);
    ADD_PARAM(nGrayCloseItAtGhostStartLevel);
    ADD_PARAM(nGrayCloseItAtGhostOtherLevel);
    ADD_PARAM(bErodeDiffEnable);
    ADD_PARAM(bErodeSqaureEnable);
}

}  // namespace vkr
