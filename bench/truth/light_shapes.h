#pragma once

#include <vector>

#include "truth/light_map.h"
#include "truth/truth_random.h"

namespace vkr::truth {

// A disc or a convex polygon. Lengths in pixels.
struct LightShape {
    struct Edge {
        float x, y, fDistance;  // outward normal of length 1, distance from the centre
    };

    float x, y;    // centre
    float fReach;  // nothing is painted further from it
    float fRadius;
    int nEdges;  // 0: a disc
    Edge vEdges[6];
    float vPaint[LightMap::kChannels];  // R, G, B, contrast of the texture
    bool bMultiply;                     // changes the light on what is there instead of covering it
};

// Covers a w x h map about three times over with opaque shapes, then puts lamps, openings and shadows on it. From back
// to front.
std::vector<LightShape> ScatterShapes(int w, int h, int nUnit, TruthRandom& random);

// One row of one shape, its rim blended by how much of a pixel it covers.
void PaintShapeRow(const LightShape& shape, int y, int nWidth, float* pRow);

}  // namespace vkr::truth
