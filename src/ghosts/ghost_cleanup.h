#pragma once

#include "foundation/image.h"
#include "ghosts/ghost_dump.h"
#include "ghosts/ghost_process_filter.h"
#include "ghosts/ghost_pyramid.h"

namespace vkr {

// The two passes that make a mask with clean borders of a raw ghost picture (nDim 1, 0 .. 255), in place, each on one
// thread. Of the filter they read the parameters.

// Hysteresis: what reaches nHigh and is still there when it has been shrunk by four pixels stays, and grows back, with
// the values of ghost, through neighbours of at least nLow; all else becomes 0. At most nMaxCheckThreIt rounds of a
// forward and a backward scan. False when there is no memory; ghost is as it was then but for values below nLow.
bool CheckThre(CImage& ghost, int nLow, int nHigh, const CGhostProcessFilter& params, const GhostDumps& dumps);

// Shrinks the mask, what lies above nGhostBinaryThresh, where it ends in a flat and bright place, so that its borders
// come to lie on edges of the picture: up to nMaxIt + 1 rounds of a forward and a backward scan, none if nMaxIt is
// below 0. Before that the mask is closed, taken from blown-out places and sent through CheckThre, as the parameters
// say. dark and bright are the two exposures as they are. False when there is no memory or the sides and ghost differ
// in size; ghost is as far as it got then.
bool RefineGhost(CImage& ghost, const GhostSide& dark, const GhostSide& bright, int nMaxIt,
                 const CGhostProcessFilter& params, const GhostDumps& dumps);

}  // namespace vkr
