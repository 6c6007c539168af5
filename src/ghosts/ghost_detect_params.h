#pragma once

#include "parameters/parameter_record.h"

namespace vkr {

// How places are found where the exposures disagree: parameters of the section of ghost detection.
// clang-format off
struct GhostDetectParams {
    static constexpr int kLevelLists = 8;  // entries of the per-level lists; coarser levels take the last one

    PARAM(bDumpDebug,                    0,   1,   0, "flag",
          "debug pictures of ghost detection are written under GhostDump/");
    PARAM(nGhostPyramidStartLevel,       0,   8,   4, "pyramid level",
          "coarsest level of detection; 0 is half the frame");
    PARAM(nMinGhostLevel,                0,   8,   2, "pyramid level",
          "finest level of detection, 0 is half the frame; coarser than the start: that one alone, or no ghosts");
    PARAM_LIST(nEdgeTh, kLevelLists, 0, 255, "grey value",
               "by pyramid level: detail that is weaker counts as none", 4, 4, 4, 4, 4, 4, 4, 4);
    PARAM_LIST(nDiffEThre, kLevelLists, 1, 256, "grey value",
               "by pyramid level: regularises the difference of structure", 8, 8, 8, 8, 8, 8, 8, 8);
    PARAM_LIST(nDiffEThre2, kLevelLists, 0, 256, "difference value",
               "by pyramid level: taken from the difference of structure", 0, 0, 0, 0, 0, 0, 0, 0);
    PARAM_LIST(nDiffBrThre, kLevelLists, 1, 256, "grey value",
               "by pyramid level: dead zone of the difference of brightness", 8, 8, 8, 8, 8, 8, 8, 8);
    PARAM_LIST(nDiffBrThre2, kLevelLists, 0, 256, "difference value",
               "by pyramid level: taken from the difference of brightness", 0, 0, 0, 0, 0, 0, 0, 0);
    PARAM(bDiffHVFilterEnable,           0,   1,   1, "flag", "the terms of the ratio of differences are smoothed");
    PARAM(bDiffFinalFilterEnable,        0,   1,   1, "flag", "the difference picture is smoothed");
    PARAM(bDiffSelect,                   0,   2,   2, "choice", "kept with the parameters, nothing reads it");
    PARAM_TABLE_8(nGhostThre, 3, 0, 255, "difference value",
                  "by pyramid level: points of the soft threshold", 32, 64, 96);
    PARAM(bCheckThreEnable,              0,   1,   1, "flag", "weak ghosts are kept only beside strong ones");
    PARAM_LIST(nCheckThre, 2, 0, 255, "ghost value",
               "where a ghost begins to count, and where it is strong", 32, 120);
    PARAM(nMaxCheckThreIt,               1,  16,   4, "rounds",
          "most rounds in which strong ghosts grow into weak ones");
    PARAM(nGhostDilationIt,              0,   8,   0, "rounds", "dilation of the ghosts");
    PARAM(bRefineGhostAtMinGhostLevel,   0,   1,   1, "flag",
          "borders of ghosts are fitted to the pictures at nMinGhostLevel");
    PARAM(bRefineGhostAtFullRes,         0,   1,   1, "flag",
          "borders of ghosts are fitted to the pictures at level 0");
    PARAM(nRefineMaxItMinGhost,          0,  16,   4, "rounds", "most rounds of the fit at nMinGhostLevel");
    PARAM(nRefineMaxItFullRes,           0,  16,   4, "rounds", "most rounds of the fit at level 0");
    PARAM(nGhostBinaryThresh,            0, 128,  64, "ghost value",
          "a pixel above it is a ghost for the fit of the borders");
    PARAM(nRefineGhostEdgeTh,            1, 255,   8, "grey value",
          "detail below it lets a border give way in the fit");
    PARAM(nRefineGhostBrTh,              0, 255, 220, "grey value",
          "samples above it let a border give way in the fit");
    PARAM(bCloseBfRefine,                0,   1,   1, "flag",
          "holes of the map are closed before the borders are fitted");
    PARAM(nGhostCloseIter,               0, 128,  16, "rounds", "closing before the borders are fitted");
    PARAM(nGhostCloseIterAft,            0, 128,   4, "rounds", "closing after the borders are fitted");
    PARAM(bSaturateNoGhostEnable,        0,   1,   0, "flag", "blown-out pixels are no ghosts");
    PARAM_LIST(nGhostLimit, 2, 0, 255, "grey value",
               "luma of the brighter frame from which ghosts fade; only the second is read", 220, 220);
    PARAM(nGrayCloseItAtGhostStartLevel, 0,  32,  16, "rounds", "closing at the coarsest level of detection");
    PARAM(nGrayCloseItAtGhostOtherLevel, 0,   8,   2, "rounds", "closing at the other levels of detection");
    PARAM(bErodeDiffEnable,              0,   1,   1, "flag", "the difference picture is cleaned by erosion");
    PARAM(bErodeSqaureEnable,            0,   1,   1, "choice",
          "shape of the erosion of bErodeDiffEnable: 0 cross, 1 square");
};
// clang-format on

}  // namespace vkr
