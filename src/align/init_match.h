#pragma once

#include "align/match_list.h"
#include "foundation/image.h"

namespace vkr {

struct InitMatchParams {
    int32_t nFeatureMatchLevel;                // the pyramid level of both pictures
    int32_t nMaxSearchX, nMaxSearchY;          // half size of the search window, pixels of that level
    int32_t nInitMatchThreX, nInitMatchThreY;  // accepted displacement, pixels of that level
    int32_t nMinFeatureNum;                    // least number of pairs
};

// Pairs features of two pictures, coordinates at level 0, by the sum of squared differences (SSD) of the 9 x 9 patches
// around them at the match level.
//
//   first, second     the match level of each picture, nDim 1, one size; the same picture may come twice
//   pFirst, pSecond   the features; nMatch of both is rewritten (index of the partner or -1)
//   nOffsetX, Y       where the second picture is expected to lie, pixels of the match level
//   matches           receives the pairs in the order of pFirst: x, y, fResponse of both sides
//   returns           whether there are at least nMinFeatureNum pairs; false without memory, then with none
//
// Where features of the first list choose one partner, the last of them decides the partner's nMatch. Same pairs from
// any number of threads.
bool FindInitMatchPair(const CImage& first, const CImage& second, FeaturePoint* pFirst, int nFirst,
                       FeaturePoint* pSecond, int nSecond, const InitMatchParams& params, int nOffsetX, int nOffsetY,
                       MatchList& matches);

}  // namespace vkr
