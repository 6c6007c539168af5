#pragma once

#include <cstdint>

#include "foundation/image.h"

namespace vkr {

// The display curve as 34 nodes: linear axis and display values, on the 8-bit and the 10-bit scale.
struct DisplayCurve {
    static constexpr int kNodes = 34;
    int32_t m_LinearX[kNodes] = {};    // last node 255
    int32_t m_LinearY[kNodes] = {};    // 8-bit display values
    int32_t m_LinearX10[kNodes] = {};  // last node 1023
    int32_t m_LinearY10[kNodes] = {};  // 10-bit display values
};

// Makes the exposures agree: every frame is rendered anew, in place, from the weighted radiance of all. pRatio: Q4
// exposure ratios of neighbours.
void ReLinearize(CImage* vFrames, const CImage& level0Weights, const int32_t* pRatio, int nExposureNum,
                 const DisplayCurve& curve);

}  // namespace vkr
