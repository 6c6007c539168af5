#pragma once

#include <cstdint>

#include "foundation/image.h"
#include "ghosts/ghost_dump.h"
#include "ghosts/ghost_process_filter.h"
#include "ghosts/ghost_pyramid.h"
#include "primitives/pyramid_levels.h"

namespace vkr {

// Two neighbouring exposures, all built down to nGhostPyramidStartLevel with the Laplacians of GhostEdgeLevels.
struct GhostPair {
    const GhostPyramid& dark;
    const GhostPyramid& bright;
    const GhostPyramid& matched;  // dark, as bright as bright
};

// The levels, as bits, whose Laplacians the pairs read: those of the detection, which are all that the matched pyramid
// needs, and those that fit the borders to the pictures as they are.
uint32_t GhostDetectLevels(const CGhostProcessFilter& params);
uint32_t GhostEdgeLevels(const CGhostProcessFilter& params);

// Where the two exposures disagree: ghost, nDim 1, values 0 .. 128, ends with the size of level 0. One thread; several
// pairs may run at once. False when there is no memory, ghost then as far as it got, of any size; or when a step asks
// for a level that the pyramids do not have (nMinGhostLevel coarser than the start level), ghost then empty.
bool DetectGhostPair(const GhostPair& pair, const CGhostProcessFilter& params, const PyramidParams& pyramid,
                     const GhostDumps& dumps, CImage& ghost);

}  // namespace vkr
