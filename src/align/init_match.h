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

// A picture with its features. A view.
struct FeaturedPicture {
    const CImage& picture;    // the match level, nDim 1, both of one size
    FeaturePoint* pFeatures;  // at level 0; nMatch is rewritten: index of the partner or -1
    int nCount;
};

// Pairs features of two pictures, coordinates at level 0, by the sum of squared differences (SSD) of the 9 x 9 patches
// around them at the match level.
//
//   first, second  the same picture may come twice
//   nOffsetX, Y    where the second picture is expected to lie, pixels of the match level
//   matches        receives the pairs in the order of the first features: x, y, fResponse of both sides
//   returns        whether there are at least nMinFeatureNum pairs; false without memory, then with none
//
// Where features of the first list choose one partner, the last of them decides the partner's nMatch. Same pairs from
// any number of threads.
bool FindInitMatchPair(const FeaturedPicture& first, const FeaturedPicture& second, const InitMatchParams& params,
                       int nOffsetX, int nOffsetY, MatchList& matches);

}  // namespace vkr
