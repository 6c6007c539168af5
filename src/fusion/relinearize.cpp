#include "fusion/relinearize.h"

namespace vkr {

// The frames stay as they are.
void ReLinearize(CImage* /*vFrames*/, const CImage& /*level0Weights*/, const int32_t* /*pRatio*/, int /*nExposureNum*/,
                 const DisplayCurve& /*curve*/)
{
}

}  // namespace vkr
