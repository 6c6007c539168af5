#pragma once

#include "align/align_random.h"
#include "align/homography_solver.h"
#include "align/match_list.h"

namespace vkr {

struct RansacParams {
    int32_t nMaxIt;                 // iterations
    int32_t nThre[2];               // pixels: inliers of the sample's fit, inliers of the count
    int32_t nPsThre[2];             // percent of the pairs: to accept (the caller's), to stop early
    int32_t nWidth[2], nHeight[2];  // sizes of both pictures at level 0
};

// The homography, from centred points (x - width / 2, y - height / 2) of the second picture to the first, that most
// pairs agree with. Returns their number; homography is written only when it is above 0. Fewer than four pairs or no
// memory: 0. Four numbers an iteration are drawn from random: the same numbers and the same pairs give the same bits.
// Prints every better homography and the number of iterations.
int Ransac(const MatchList& matches, const RansacParams& params, AlignRandom& random, CMatrix& homography);

}  // namespace vkr
