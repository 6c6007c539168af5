#pragma once

#include <cstdint>

#include "foundation/filter.h"
#include "foundation/image.h"

namespace vkr {

// Local contrast on an 8-bit B, G, R picture, in place: a grid of blocks, a clipped histogram equalisation per block,
// the curves smoothed over the grid and followed over time, every pixel mapped through the four curves around it. The
// curves stay in the filter from burst to burst.
class CLocalAutoCurveFilter : public CFilter {
public:
    void SetFilterName() override;
    void RegisterParameters() override;  // also sets every curve to the identity

    // image has nDim 3 and any size from 1 x 1. False when there was no memory; the picture is as it was then. Rows are
    // shared among the team, all carries start anew in every row: same bytes from any number of threads.
    bool ProcessImage(CImage& image);
};

}  // namespace vkr
