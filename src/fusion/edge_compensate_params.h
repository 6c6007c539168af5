#pragma once

#include "parameters/parameter_record.h"

namespace vkr {

// The edge compensation of ghost regions: which levels have coefficients. Flow parameters; ghost embedding fills the
// levels, fusion applies them.
// clang-format off
struct EdgeCompensateParams {
    PARAM(bEdgeCompensateEnable, 0,  1, 1, "flag", "contrast is restored at the edges of ghost regions");
    PARAM(nMinDeghostLevel,      0, 16, 0, "pyramid level", "finest level of the weights that ghosts rewrite");
    PARAM(nMaxDeghostLevel,      0, 16, 4, "pyramid level",
          "coarsest level of the weights that ghosts rewrite, inclusive");
};
// clang-format on

}  // namespace vkr
