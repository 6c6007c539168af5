#pragma once

#include <cstdint>

#include "foundation/image.h"
#include "foundation/stage_dumps.h"

namespace vkr {

// The display curve as 34 nodes: linear axis and display values, on the 8-bit and the 10-bit scale. One curve, twice;
// a new record has the one that the engine takes: nodes 0, 4, 8, 16, 24 ... 248 and a last one.
struct DisplayCurve {
    static constexpr int kNodes = 34;
    int32_t m_LinearX[kNodes] = {};    // last node 255
    int32_t m_LinearY[kNodes] = {};    // 8-bit display values
    int32_t m_LinearX10[kNodes] = {};  // last node 1023
    int32_t m_LinearY10[kNodes] = {0,   64,  128, 224, 304, 372, 424, 472, 516,  556, 600, 632,
                                   664, 696, 724, 752, 771, 790, 809, 828, 843,  858, 873, 888,
                                   902, 916, 930, 944, 957, 971, 984, 998, 1011, 1023};  // 10-bit display values

    constexpr DisplayCurve()
    {
        for (int i = 0; i < kNodes - 1; ++i) {
            m_LinearX[i] = m_LinearX10[i] = i < 2 ? 4 * i : 8 * (i - 1);
            m_LinearY[i] = m_LinearY10[i] >> 2;
        }
        m_LinearX[kNodes - 1] = m_LinearY[kNodes - 1] = 255;
        m_LinearX10[kNodes - 1] = 1023;
    }
};

// Makes the exposures agree: every frame is rendered anew, in place, from the weighted radiance of all, with the gain
// of its exposure. All in integers; quotients truncate.
//
//   vFrames        nExposureNum (1 .. 8) pictures B, G, R of one size, darkest first
//   level0Weights  of that size, nDim = nExposureNum, any sums; a pixel whose weights are all 0 stays as it is
//   pRatio         Q4 exposure ratios of neighbours, nExposureNum - 1 of them
//   dumps          pictures before and behind as BMP under ReLinearizeDump/
//
// Pictures that do not fit each other stay as they are. Same bytes from any number of threads.
void ReLinearize(CImage* vFrames, const CImage& level0Weights, const int32_t* pRatio, int nExposureNum,
                 const DisplayCurve& curve, const StageDumps& dumps);

}  // namespace vkr
