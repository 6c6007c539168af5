#pragma once

#include <cstdint>

#include "foundation/filter.h"

namespace vkr {

// Warps a frame through a homography.
class CHomographMappingFilter : public CFilter {
public:
    void SetFilterName() override;
    void RegisterParameters() override;

    int32_t bBicubicEnable = 0;   // kept with the parameters; the warp is bilinear
    int32_t nBoundaryOption = 0;  // kept with the parameters; the warp mirrors at the border
    int32_t nHomoGraphyOption = 0;
    int32_t mPatchSize = 0;
};

}  // namespace vkr
