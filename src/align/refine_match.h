#pragma once

#include "align/match_list.h"
#include "foundation/image.h"

namespace vkr {

struct RefineMatchParams {
    int32_t nMatchLevel;                           // levels of the track, the coarsest is nMatchLevel - 1
    int32_t nRefineMatchThreX, nRefineMatchThreY;  // accepted distance of a track's end, pixels of level 0
    int32_t nMinFeatureNum;                        // least number of pairs
};

// Follows the stronger corner of every pair from coarse to fine into the other picture and back again. Pairs of which
// one of the two tracks ends too far off are dropped; in the others the weaker point moves to where its track ended.
//
//   pFirstLevels, pSecondLevels  nLevels levels each, nDim 1, level 0 first
//   matches                      in step; rewritten and shortened, order kept
//   returns                      whether at least nMinFeatureNum pairs are left
//
// Same result from any number of threads.
bool RefineMatchPair(const CImage* pFirstLevels, const CImage* pSecondLevels, int nLevels,
                     const RefineMatchParams& params, MatchList& matches);

}  // namespace vkr
