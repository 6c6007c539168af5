#include "ghosts/ghost_process_filter.h"

namespace vkr {

void CGhostProcessFilter::SetFilterName()
{
    StoreName("CGhostProcessFilter");
}

void CGhostProcessFilter::RegisterFilters() {}

// clang-format off
void CGhostProcessFilter::RegisterParameters()
{
    //    member                        min  max  default  meaning; lists of 8 go by pyramid level
    PARAM(bDumpDebug,                     0,   1,   0);     // write the pictures under GhostDump/
    PARAM(nGhostPyramidStartLevel,        0,   8,   4);     // coarsest level of detection
    PARAM(nMinGhostLevel,                 0,   8,   2);     // finest level; coarser than the start: that one alone, or no ghosts
    PARAM_ARRAY(nEdgeTh,                  0, 255,   4, 4, 4, 4, 4, 4, 4, 4);  // grey values: coring of the Laplacian
    PARAM_ARRAY(nDiffEThre,               1, 256,   8, 8, 8, 8, 8, 8, 8, 8);  // regularises the structure difference
    PARAM_ARRAY(nDiffEThre2,              0, 256,   0, 0, 0, 0, 0, 0, 0, 0);  // taken from the structure difference
    PARAM_ARRAY(nDiffBrThre,              1, 256,   8, 8, 8, 8, 8, 8, 8, 8);  // dead zone of the brightness difference
    PARAM_ARRAY(nDiffBrThre2,             0, 256,   0, 0, 0, 0, 0, 0, 0, 0);  // taken from the brightness difference
    PARAM(bDiffHVFilterEnable,            0,   1,   1);     // smooth the terms of the ratio
    PARAM(bDiffFinalFilterEnable,         0,   1,   1);     // smooth the difference picture
    PARAM(bDiffSelect,                    0,   2,   2);     // kept with the parameters
    for (int nLevel = 0; nLevel < kLevelLists; ++nLevel) {  // points of the soft threshold, difference values
        AddParameterArray2D(m_Params, "nGhostThre", nGhostThre[nLevel], nLevel, 3, 0, 255);
        nGhostThre[nLevel][0] = 32;
        nGhostThre[nLevel][1] = 64;
        nGhostThre[nLevel][2] = 96;
    }
    PARAM(bCheckThreEnable,               0,   1,   1);     // keep weak ghosts only beside strong ones
    PARAM_ARRAY(nCheckThre,               0, 255,  32, 120);  // ghost values: weak, strong
    PARAM(nMaxCheckThreIt,                1,  16,   4);     // rounds of that
    PARAM(nGhostDilationIt,               0,   8,   0);     // rounds of dilation
    PARAM(bRefineGhostAtMinGhostLevel,    0,   1,   1);     // fit the borders to the pictures at the finest level
    PARAM(bRefineGhostAtFullRes,          0,   1,   1);     // and at the largest
    PARAM(nRefineMaxItMinGhost,           0,  16,   4);     // rounds of the first
    PARAM(nRefineMaxItFullRes,            0,  16,   4);     // rounds of the second
    PARAM(nGhostBinaryThresh,             0, 128,  64);     // ghost value above which a pixel counts there
    PARAM(nRefineGhostEdgeTh,             1, 255,   8);     // grey values
    PARAM(nRefineGhostBrTh,               0, 255, 220);     // grey value
    PARAM(bCloseBfRefine,                 0,   1,   1);     // close the map before the borders are fitted
    PARAM(nGhostCloseIter,                0, 128,  16);     // rounds of that
    PARAM(nGhostCloseIterAft,             0, 128,   4);     // rounds of closing afterwards
    PARAM(bSaturateNoGhostEnable,         0,   1,   0);     // blown-out pixels are no ghosts
    PARAM_ARRAY(nGhostLimit,              0, 255, 220, 220);  // grey values of that
    PARAM(nGrayCloseItAtGhostStartLevel,  0,  32,  16);     // closing rounds at the coarsest level
    PARAM(nGrayCloseItAtGhostOtherLevel,  0,   8,   2);     // closing rounds at the others
    PARAM(bErodeDiffEnable,               0,   1,   1);     // clean the difference picture
    PARAM(bErodeSqaureEnable,             0,   1,   1);     // by a square (1) or a cross (0)
}
// clang-format on

}  // namespace vkr
