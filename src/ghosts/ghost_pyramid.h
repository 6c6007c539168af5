#pragma once

#include <cstdint>

#include "foundation/fixed_point.h"
#include "foundation/image.h"
#include "ghosts/ghost_histogram.h"
#include "primitives/pyramid_levels.h"

namespace vkr {

// One side of a comparison at one level: the picture (B, G, R) and its Laplacian, both nDim 3 and of one size. A
// Laplacian level that nobody asked for is empty.
struct GhostSide {
    const CImage& image;
    const CShortImage& edges;
};

// The levels on which an exposure is compared with its neighbour. Level 0 is half the working frame, in pixels
// (w + 1) / 2, and so on. The pictures belong to the object.
class GhostPyramid {
public:
    GhostPyramid() = default;
    ~GhostPyramid();
    GhostPyramid(const GhostPyramid&) = delete;
    GhostPyramid& operator=(const GhostPyramid&) = delete;

    // Level 0, then all others. False when there is no memory.
    bool TakeFrame(const CImage& workFrame, const PyramidParams& pyramid);
    // Level 0 as the darker exposure of a pair would look if it had been exposed like the brighter one.
    bool TakeMatched(const GhostPyramid& dark, const GhostShares& darkShares, const GhostShares& brightShares);
    // Levels 1 .. nStartLevel + 1, and the Laplacians of those levels 0 .. nStartLevel whose bit is set in nEdgeLevels:
    // the level minus the next one doubled. nStartLevel is 0 .. kMaxLevels - 2. Same bytes from any number of threads.
    bool Build(int nStartLevel, uint32_t nEdgeLevels, const PyramidParams& pyramid);

    // Levels beyond those built are empty.
    GhostSide Side(int nLevel) const { return {m_vImages[nLevel], m_vEdges[nLevel]}; }
    const CImage& Image(int nLevel) const { return m_vImages[nLevel]; }

private:
    bool BuildEdges(int nLevel, const PyramidParams& pyramid, CImage& up);

    CImage m_vImages[kMaxLevels] = {};
    CShortImage m_vEdges[kMaxLevels] = {};
};

}  // namespace vkr
