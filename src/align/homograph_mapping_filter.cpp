#include "align/homograph_mapping_filter.h"

namespace vkr {

void CHomographMappingFilter::SetFilterName()
{
    StoreName("CHomographMappingFilter");
}

// clang-format off
void CHomographMappingFilter::RegisterParameters()
{
    //    member             min  max  default  meaning
    PARAM(bBicubicEnable,      0,   1,   1);     // kept with the parameters
    PARAM(nBoundaryOption,     0,   1,   1);     // kept with the parameters
    PARAM(nHomoGraphyOption,   0,   2,   0);     // mode of the warp, set by the filter itself
    PARAM(mPatchSize,          0, 128,   8);     // kept with the parameters
}
// clang-format on

}  // namespace vkr
