#include "align/feature_point_detection.h"

namespace vkr {

void CFeaturePointDetection::SetFilterName()
{
    StoreName("CFeaturePointDetection");
}

// clang-format off
void CFeaturePointDetection::RegisterParameters()
{
    //    member       min    max  default  meaning
    PARAM(nPtThre1,      2,     3,      2);  // hits needed in each of the four groups of the ring
    PARAM(nPtThre2,      8,    15,     10);  // hits needed in the whole ring
    PARAM(nThre,         0,   255,      4);  // least brightness margin of the ring test, grey values
    PARAM(nRatio,        0,   255,      8);  // 1/128: growth of the margin in dark pixels
    PARAM(nHarris_K,     1,    10,      5);  // Harris constant, 1/100
    PARAM(nHarrisThre,   1, 65536,  10000);  // least Harris response
}
// clang-format on

}  // namespace vkr
