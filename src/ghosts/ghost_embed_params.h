#pragma once

#include "foundation/fixed_point.h"
#include "parameters/parameter_record.h"

namespace vkr {

// How ghost regions take their exposure: flow parameters.
// clang-format off
struct GhostEmbedParams {
    PARAM(nStartDeghostLevel,          0,    16,    3, "pyramid level",
          "level of the weights on which ghost regions are found");
    PARAM(nMaxGhostRegionNum,          0,   128,   32, "regions",
          "with more of them than this the ghosts stay as they are");
    PARAM(nGhostBinaryThresh,          0,   255,   64, "ghost value", "a pixel above it belongs to a ghost region");
    PARAM(nMinConnectAreaPer,          0, 16384,   50, "1/16384 of the picture",
          "area that a ghost region must exceed to count");
    PARAM(nGhostLimitPerTh,            0, 16384, 5000, "1/16384 of the picture",
          "area of all ghost regions above which the whole picture is taken from one exposure");
    PARAM(bSaturationMethod,           0,     1,    0, "choice",
          "sample by which a pixel is blown out for nSatuValueTh: 0 the smallest, 1 the largest");
    PARAM(nSatuValueTh,                0,   255,  240, "grey value",
          "a pixel above it is blown out when a region chooses its exposure");
    PARAM(nRegionEdgeWeightW,          0,    16,    0, "1/16", "share of a region's edge in its mean weight");
    PARAM(bMaxMeanWeightFill,          0,     1,    1, "flag",
          "the choice for a region starts at the exposure of the largest mean weight");
    PARAM(nMaxDecrease,                0,    10,    1, "exposures", "how much darker the choice for a region may go");
    PARAM(nGhostRegionSaturatePerTh,   0, 16384, 5700, "1/16384 of the region",
          "blown-out share that a region tolerates");
    PARAM(nGhostEdgeSaturatePerTh,     0, 16384, 3200, "1/16384 of the edge",
          "blown-out share that a region's edge tolerates");
    PARAM(DeGhostStrength,             0,   256,  256, "1/256",
          "share of the new weights in a ghost region, beside the old ones");
    PARAM_LIST(nRatio, kMaxExposures, 16, 256, "Q4",
               "exposure ratio of frame k + 1 to frame k, 0 the darkest: 16 the same light, 32 one stop",
               32, 32, 32, 32, 32, 32, 32, 32);
    PARAM(nMaxCompensateGain,        128,   160,  160, "Q7",
          "most that contrast at the edges of ghost regions is raised");
    PARAM(nGhostSmoothIter,            0,    16,    2, "rounds", "smoothing of the borders of ghost regions");
    PARAM(bUseDilatedGhost,            0,     1,    1, "flag",
          "the borders of ghost regions are smoothed outwards; without it they are not smoothed");
};
// clang-format on

}  // namespace vkr
