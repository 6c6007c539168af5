#pragma once

#include "parameters/parameter_record.h"

namespace vkr {

// Local contrast: parameters of its own section.
// clang-format off
struct LocalCurveParams {
    PARAM(bDumpDebugFile,     0,   1,  1, "flag", "debug pictures and curves are written under LocalContrastDump");
    PARAM(nWinXNum,           1,  16,  8, "blocks", "blocks of the grid across");
    PARAM(nWinYNum,           1,  16,  8, "blocks", "blocks of the grid down");
    PARAM(nLocalWeight,       0,  16,  8, "1/16", "share of a block's own histogram, against the whole picture's");
    PARAM(nCurveStep,         0,  16, 16, "1/16", "how far one burst moves the curves toward its own");
    PARAM(nSmoothMaskSize,    0,  10,  4, "rounds", "smoothing of the curves over the grid");
    PARAM(nMinBin,            1,   8,  4, "1/16 of an even share", "least of a bin of the histogram");
    PARAM(nMaxBin,            8,  32, 16, "1/16 of an even share",
          "most of a bin of the histogram, over one such share");
    PARAM(nContrastLevel,     0,  32, 16, "1/32", "strength, 32 being pure equalisation");
    PARAM(nWYUV,              0,  16, 16, "1/16",
          "share of the mapping that luma drives, against the one component by component");
    PARAM(nSaturateBoost,  -256, 256,  0, "1/256", "extra colour of the mapping that luma drives");
};
// clang-format on

}  // namespace vkr
