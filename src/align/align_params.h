#pragma once

#include "parameters/parameter_record.h"

namespace vkr {

// How alignment finds and checks what lies where: parameters of its own section.
// clang-format off
struct AlignParams {
    PARAM(bDumpDebug,              0,    1,   1, "flag", "debug pictures and texts of alignment are written");
    PARAM(bDropAlignFail,          0,    1,   0, "flag",
          "a pair of frames that can not be matched cuts the usable range of exposures");
    PARAM(nFeatureMatchLevel,      0,    8,   3, "pyramid level",
          "level on which corners are found and first matched; 0 is the frame");
    PARAM(nHistogramMatchingLevel, 0,    8,   0, "pyramid level",
          "level on which the histogram is taken that makes frames equally bright");
    PARAM(nMaxSearchX,             1,  256,  20, "pixels of the match level",
          "half width of the window of the first match");
    PARAM(nMaxSearchY,             0,  256,  20, "pixels of the match level",
          "half height of the window of the first match");
    PARAM(nInitMatchThreX,         1,    8,   2, "pixels of the match level",
          "displacement across that the dense search of the first match accepts");
    PARAM(nInitMatchThreY,         1,    8,   2, "pixels of the match level",
          "displacement down that the dense search of the first match accepts");
    PARAM(nMinFeatureNum,          8, 1024, 128, "pairs", "least number of matched corners");
    PARAM(bRefineMatchEnable,      0,    1,   1, "flag",
          "matched corners are followed from coarse to fine and checked");
    PARAM(nRefineMatchThreX,       1,   32,   4, "pixels",
          "how far across a followed corner may end from its partner's");
    PARAM(nRefineMatchThreY,       1,   32,   4, "pixels", "how far down a followed corner may end from its partner's");
    PARAM(nMatchLevel,             0,    8,   3, "pyramid levels", "over how many levels matched corners are followed");
    PARAM(nRANSACMaxIt,            1, 1000, 100, "rounds", "most samples that are tried for a homography");
    PARAM_LIST(nRANSACThre, 2, 1, 16, "pixels",
               "distance within which a pair agrees: for the fit of a sample, for the count", 4, 4);
    PARAM_LIST(nRANSACPsThre, 2, 0, 100, "percent of the pairs",
               "share that must agree: to accept a homography, to stop early", 90, 95);
    PARAM(bAlignPyramidFilter,     0,    1,   0, "flag",
          "the halving of bAlignPyramidDither carries what rounding drops");
    PARAM(bAlignPyramidDither,     0,    1,   0, "choice", "halving of the frames: 0 plain, 1 filtered with 5 taps");
};
// clang-format on

}  // namespace vkr
