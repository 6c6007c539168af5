#pragma once

#include <cstdint>

namespace vkr {

// The edge compensation of ghost regions: which levels have coefficients. Flow parameters; ghost embedding fills the
// levels, fusion applies them.
struct EdgeCompensateParams {
    int32_t bEdgeCompensateEnable = 0;
    int32_t nMinDeghostLevel = 0;  // first and last level, inclusive
    int32_t nMaxDeghostLevel = 0;
};

}  // namespace vkr
