#pragma once

#include <cstdint>

#include "foundation/image.h"
#include "foundation/stage_dumps.h"
#include "foundation/work_burst.h"
#include "fusion/edge_compensate_params.h"
#include "ghosts/ghost_embed_params.h"
#include "ghosts/relinearize.h"
#include "primitives/pyramid_levels.h"

namespace vkr {

// Brings the levels that ghosts rewrite into a pyramid of nTotalLevels: nMinDeghostLevel <= nStartDeghostLevel <=
// nMaxDeghostLevel < nTotalLevels.
void LimitDeghostLevels(int nTotalLevels, GhostEmbedParams& params, EdgeCompensateParams& fusion);

// What became of the ghost map.
enum class GhostEmbedding {
    kNone,          // no region was large enough, or too many were: nothing changed
    kRegions,       // every region has its exposure
    kWholePicture,  // the ghosts cover so much that the reference exposure has all of the picture
    kFailed         // no memory, or pictures that do not fit each other
};

// The parameters it goes by. The levels in embed and edges are those that LimitDeghostLevels left.
struct EmbedRules {
    const GhostEmbedParams& embed;
    const EdgeCompensateParams& edges;
    const PyramidParams& pyramid;
    const DisplayCurve& curve;
};

// Gives every ghost region to one exposure: rewrites the weight levels and fills the coefficient levels for the
// fusion's edge compensation.
//
//   ghostMap  nDim 1, not smaller than the frames; a column and a row more are left out
//   dumps     pictures of the work under GhostDump/ and ClusterDump/
//   vWeights  kMaxLevels records, level 0 of the frames' size, nDim = nExposureNum. On kFailed those reached by then
//             are rewritten
//   vCoefs    kMaxLevels records, empty before; nMinDeghostLevel .. nMaxDeghostLevel are filled with a channel per
//             exposure, Q7, when bEdgeCompensateEnable is set and the weights were rewritten
//   pShares   null, or empty and takes which exposures the regions were given: a picture of the start level, a channel
//             per exposure, 128 where a region is its own, less around it, 0 where none reaches. Stays empty on kNone
//
// Rows are shared among the team; same bytes from any number of threads.
GhostEmbedding GhostEmbeddingIntoWeight(const CImage& ghostMap, const WorkBurst& burst, const EmbedRules& rules,
                                        const StageDumps& dumps, CImage* vWeights, CShortImage* vCoefs,
                                        CShortImage* pShares = nullptr);

}  // namespace vkr
