#pragma once

#include <cstdint>

#include "foundation/image.h"
#include "ghosts/ghost_process_filter.h"
#include "ghosts/ghost_pyramid.h"

namespace vkr {

// What two exposures of a scene do not have in common, at one level. One thread each; carries of the smoothing run as
// one block, so the bytes depend on no team.

// diff, nDim 1 and of the size of both sides: 0 .. 255, the larger of a structure difference (Laplacians, relative to
// the strength of the structure) and a brightness difference. nList 0 .. 7 is the entry of the per-level lists. False
// when there is no memory or the sides differ in size; diff is undefined then.
bool BuildDiffImage(const GhostSide& dark, const GhostSide& bright, const CGhostProcessFilter& params, int nList,
                    CImage& diff);

// ghost, nDim 1: the differences through a soft threshold, 0 below vThre[0], 64 from vThre[1] and 128 from vThre[2] on,
// straight lines between. A segment whose ends are equal, or in the wrong order, is not there. False: no memory.
bool ApplyGhostThre(const CImage& diff, const int32_t vThre[3], CImage& ghost);

// Closes gaps of up to about 4 * nRounds pixels, in place; the border of the picture cuts nothing. No rounds below 1.
// False when there is no memory; ghost is as it was then.
bool GhostClose(CImage& ghost, int nRounds);

// ghost becomes, per pixel, the larger of itself and other, which has the same size.
void TakeLarger(const CImage& other, CImage& ghost);

}  // namespace vkr
